#include "isolation/SinkThread.h"

namespace ZebManager {

SinkThread::SinkThread(ProviderSupervisor::Sink sink, std::function<void(std::uint64_t)> taken,
                       std::function<void(const std::string&)> log)
    : _sink(std::move(sink)), _taken(std::move(taken)), _log(std::move(log)), _thread([this] { run(); }) {}

SinkThread::~SinkThread() {
  {
    const std::lock_guard lock(_mutex);
    _closed = true;
  }
  _changed.notify_one();
  _thread.join();
}

void SinkThread::add(std::uint64_t process, std::vector<std::string> filterNames, std::string element) {
  const std::lock_guard lock(_mutex);
  _waiting.push_back({process, std::move(filterNames), std::move(element)});
  _changed.notify_one();
}

void SinkThread::run() {
  std::unique_lock lock(_mutex);
  for (;;) {
    _changed.wait(lock, [this] { return _closed || !_waiting.empty(); });
    if (_waiting.empty()) return;
    Item item = std::move(_waiting.front());
    _waiting.pop_front();
    lock.unlock();
    handOver(std::move(item));
    lock.lock();
  }
}

void SinkThread::handOver(Item item) {
  try {
    if (_sink) _sink(item.filterNames, std::move(item.element));
  } catch (const std::exception& error) {
    if (_log) _log(std::string("an indication is lost: ") + error.what());
  }
  _taken(item.process);
}

}  // namespace ZebManager
