// A limit on the time that the plug-in may take.
#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace ZebHost {

/// Ends the process with one line and status 1 when the time is up before the object goes: a call that does
/// not return cannot be taken back, and nothing has been printed yet. Zero seconds: no limit.
class Deadline {
 public:
  explicit Deadline(unsigned seconds);
  Deadline(const Deadline&) = delete;
  Deadline& operator=(const Deadline&) = delete;
  ~Deadline();

 private:
  void watch(unsigned seconds);

  std::mutex _mutex;
  std::condition_variable _over;
  bool _done = false;
  std::thread _thread;
};

}  // namespace ZebHost
