#include "common/WorkerTimer.h"

#include <algorithm>
#include <utility>

#include "common/SignalsBlocked.h"

namespace ZEB {

WorkerTimer::WorkerTimer(Timing timing, Body body)
    : _timing(timing), _regular(Clock::now() + timing.firstAfter), _thread([&] {
        const SignalsBlocked inherited;
        return std::thread([this, work = std::move(body)] { work([this] { return waitForRun(); }); });
      }()) {}

WorkerTimer::~WorkerTimer() {
  {
    const std::lock_guard lock(_mutex);
    _stop = true;
    _changed.notify_all();
  }
  // The process may be ending on the timer's own thread.
  if (_thread.get_id() == std::this_thread::get_id()) {
    _thread.detach();
  } else {
    _thread.join();
  }
}

void WorkerTimer::wake() {
  const auto now = Clock::now();
  const std::lock_guard lock(_mutex);
  if (!std::exchange(_woken, true)) _latest = now + _timing.patience;
  _asked = std::min(now + _timing.quiet, _latest);
  _changed.notify_all();
}

void WorkerTimer::wakeAt(Clock::time_point when) {
  const std::lock_guard lock(_mutex);
  _alarm = std::min(_alarm, when);
  _changed.notify_all();
}

WorkerTimer::Clock::time_point WorkerTimer::due() const {
  return std::min({_regular, _alarm, _woken ? _asked : Clock::time_point::max()});
}

bool WorkerTimer::waitForRun() {
  std::unique_lock lock(_mutex);
  // Called again, this is the end of a run.
  if (!std::exchange(_first, false)) _regular = Clock::now() + _timing.interval;
  while (!_stop && Clock::now() < due()) _changed.wait_until(lock, due());
  _woken = false;
  if (_alarm <= Clock::now()) _alarm = Clock::time_point::max();
  return !_stop;
}

}  // namespace ZEB
