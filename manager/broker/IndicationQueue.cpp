#include "broker/IndicationQueue.h"

#include "values/Values.h"

namespace ZebManager {
namespace {

constexpr std::size_t kMostWaiting = 100'000;

}  // namespace

void IndicationQueue::open() {
  const std::lock_guard lock(_mutex);
  _open = true;
}

void IndicationQueue::close() {
  const std::lock_guard lock(_mutex);
  _open = false;
  _waiting.clear();
}

void IndicationQueue::shut() {
  const std::lock_guard lock(_mutex);
  _shut = true;
  _woken = true;
  _changed.notify_all();
}

bool IndicationQueue::isOver() const {
  const std::lock_guard lock(_mutex);
  return _shut && _waiting.empty();
}

bool IndicationQueue::deliver(const Instance& indication) {
  auto delivered = std::make_unique<DeliveredIndication>();
  delivered->instance =
      makeHandle<Instance>(delivered->arena, copyInstance(delivered->arena, indication.body()));
  delivered->arrival = std::chrono::system_clock::now();
  const std::lock_guard lock(_mutex);
  if (_shut) return false;
  if (!_open) {
    if (_reported) _reported();
    return true;
  }
  if (_waiting.size() >= kMostWaiting) return false;
  if (_reported) delivered->reported = _reported();
  _waiting.push_back(std::move(delivered));
  _changed.notify_one();
  return true;
}

std::unique_ptr<DeliveredIndication> IndicationQueue::next(std::chrono::milliseconds patience) {
  std::unique_lock lock(_mutex);
  _changed.wait_for(lock, patience, [this] { return !_waiting.empty() || _woken; });
  _woken = false;
  if (_waiting.empty()) return nullptr;
  auto first = std::move(_waiting.front());
  _waiting.pop_front();
  return first;
}

void IndicationQueue::wake() {
  const std::lock_guard lock(_mutex);
  _woken = true;
  _changed.notify_all();
}

}  // namespace ZebManager
