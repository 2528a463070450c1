#include "monitor/RecordingWatch.h"

#include <chrono>

#include "common/SignalsBlocked.h"

namespace ZEB {
namespace {

constexpr std::chrono::milliseconds kInterval{100};
/// A file that cannot be read is not read ten times a second.
constexpr std::chrono::seconds kAfterFailure{2};

}  // namespace

RecordingWatch::RecordingWatch(std::shared_ptr<LinkWatch> linkWatch)
    : _linkWatch(std::move(linkWatch)), _thread([this] {
        const SignalsBlocked inherited;
        return std::thread([this] { run(); });
      }()) {}

RecordingWatch::~RecordingWatch() {
  {
    const std::lock_guard lock(_mutex);
    _stop = true;
  }
  _changed.notify_one();
  _thread.join();
}

void RecordingWatch::run() {
  std::unique_lock lock(_mutex);
  std::chrono::milliseconds pause = kInterval;
  while (!_changed.wait_for(lock, pause, [this] { return _stop; })) {
    lock.unlock();
    pause = _linkWatch->followRecording() ? kInterval : kAfterFailure;
    lock.lock();
  }
}

}  // namespace ZEB
