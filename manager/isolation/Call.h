// A message on its way to its answer.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <string>

#include "isolation/ProviderSupervisor.h"

namespace ZebManager {

using Clock = std::chrono::steady_clock;

/// Behind the reason why there is no answer to what may change something.
inline constexpr char kUnknownEffect[] = "; whether it has taken effect is not known";

/// One thread waits for the answer; everything else belongs to the supervisor's thread.
class Call {
 public:
  using Answer = ProviderSupervisor::Answer;

  Call(std::string_view text, bool mayRepeat) : message(text), repeatable(mayRepeat) {}

  const std::string message;
  const bool repeatable;
  const Clock::time_point arrival = Clock::now();

  std::uint64_t number = 0;
  unsigned moves = 0;    ///< times that it was sent to a further process, the one before being blocked
  bool blamed = false;   ///< it was the oldest in a process that was blocked
  bool suspect = false;  ///< a process ended under it
  bool timedOut = false;
  bool sent = false;  ///< to a process

  bool live() const { return !_closed; }

  /// What a process did before it ended, or does yet, nobody knows: a client must not take it for undone.
  void answer(Answer::Outcome outcome, std::string body) {
    if (_closed) return;
    _closed = true;
    timedOut = outcome == Answer::Outcome::TimedOut;
    if (outcome != Answer::Outcome::Done && sent && !repeatable) body += kUnknownEffect;
    const std::lock_guard lock(_mutex);
    _answer = Answer{outcome, std::move(body)};
    _answered.notify_one();
  }

  Answer wait() {
    std::unique_lock lock(_mutex);
    _answered.wait(lock, [this] { return _answer.has_value(); });
    return std::move(*_answer);
  }

 private:
  bool _closed = false;
  std::mutex _mutex;
  std::condition_variable _answered;
  std::optional<Answer> _answer;
};

}  // namespace ZebManager
