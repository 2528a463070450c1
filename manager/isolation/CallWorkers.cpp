#include "isolation/CallWorkers.h"

namespace ZebManager {

CallWorkers::~CallWorkers() {
  {
    const std::lock_guard lock(_mutex);
    _closed = true;
  }
  _changed.notify_all();
  for (std::thread& thread : _threads) thread.join();
}

void CallWorkers::add(Frame message) {
  const std::lock_guard lock(_mutex);
  _waiting.push_back(std::move(message));
  if (_waiting.size() > _idle) _threads.emplace_back([this] { run(); });
  _changed.notify_one();
}

void CallWorkers::run() {
  std::unique_lock lock(_mutex);
  for (;;) {
    ++_idle;
    _changed.wait(lock, [this] { return _closed || !_waiting.empty(); });
    --_idle;
    if (_waiting.empty()) return;
    const Frame message = std::move(_waiting.front());
    _waiting.pop_front();
    lock.unlock();
    _sender.send(answerTo(message));
    lock.lock();
  }
}

Frame CallWorkers::answerTo(const Frame& message) {
  try {
    std::string answer = _provider.perform(message.body);
    if (answer.size() <= kLongestBody) return {Frame::Kind::Answer, message.number, std::move(answer)};
    return {Frame::Kind::Refusal, message.number,
            "an answer of " + std::to_string(answer.size()) + " bytes, at most " +
                std::to_string(kLongestBody) + " are allowed"};
  } catch (const std::exception& error) {
    return {Frame::Kind::Refusal, message.number, error.what()};
  }
}

}  // namespace ZebManager
