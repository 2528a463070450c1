#include "cli/Deadline.h"

#include <signal.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

namespace ZebManager {

using Clock = std::chrono::steady_clock;

Deadline::Deadline(unsigned seconds, int status) : _limit(seconds), _status(status) {
  resume();
  if (seconds == 0) return;
  // Signals are for the thread that runs the command.
  sigset_t all;
  sigset_t before;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &before);
  _thread = std::thread([this] { watch(); });
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

Deadline::~Deadline() {
  {
    const std::lock_guard lock(_mutex);
    _done = true;
  }
  _changed.notify_one();
  if (_thread.joinable()) _thread.join();
}

void Deadline::suspend() {
  const std::lock_guard lock(_mutex);
  _end.reset();
  _changed.notify_one();
}

void Deadline::resume() {
  const std::lock_guard lock(_mutex);
  _end = Clock::now() + _limit;
  _changed.notify_one();
}

void Deadline::watch() {
  std::unique_lock lock(_mutex);
  while (!_done && !(_end && Clock::now() >= *_end)) {
    if (_end) {
      _changed.wait_until(lock, Clock::time_point(*_end));
    } else {
      _changed.wait(lock);
    }
  }
  if (_done) return;
  const std::string line = "zebcim: the plug-in did not answer within " + std::to_string(_limit.count()) +
                           " s; --timeout allows more\n";
  static_cast<void>(!write(STDERR_FILENO, line.data(), line.size()));
  std::_Exit(_status);
}

}  // namespace ZebManager
