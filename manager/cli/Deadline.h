// A limit on the time that the plug-in may take.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>

namespace ZebManager {

/// Ends the process with one line and a status when the time is up before the object goes: a call that does
/// not return cannot be taken back, and nothing has been printed yet. Zero seconds: no limit.
class Deadline {
 public:
  explicit Deadline(unsigned seconds, int status = 1);
  Deadline(const Deadline&) = delete;
  Deadline& operator=(const Deadline&) = delete;
  ~Deadline();

  /// Takes the limit away while nothing is asked of the plug-in, and sets it anew.
  void suspend();
  void resume();

 private:
  void watch();

  const std::chrono::seconds _limit;
  const int _status;
  std::mutex _mutex;
  std::condition_variable _changed;
  std::optional<std::chrono::steady_clock::time_point> _end;
  bool _done = false;
  std::thread _thread;
};

}  // namespace ZebManager
