// Ending in good order when somebody asks for it.
#pragma once

#include <signal.h>

#include <atomic>
#include <functional>
#include <thread>

namespace ZebManager {

/// While it lives, SIGINT, SIGTERM and SIGHUP do not end the process but call `stop` once, on a thread of its
/// own; SIGPIPE is an error of the write that met it. It holds for threads that are started from this one
/// later, so it has to come before the plug-in.
class StopSignals {
 public:
  explicit StopSignals(std::function<void()> stop);
  StopSignals(const StopSignals&) = delete;
  StopSignals& operator=(const StopSignals&) = delete;
  ~StopSignals();

  bool requested() const { return _requested; }

 private:
  void wait();

  const std::function<void()> _stop;
  std::atomic<bool> _requested = false;
  std::atomic<bool> _done = false;
  sigset_t _before{};
  std::thread _thread;
};

}  // namespace ZebManager
