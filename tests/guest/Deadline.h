#pragma once

#include <algorithm>
#include <chrono>
#include <limits>

namespace ZEB::guest {

/// A point in time that nothing waits beyond.
class Deadline {
 public:
  explicit Deadline(std::chrono::milliseconds fromNow) : end_(Clock::now() + fromNow) {}

  bool passed() const { return Clock::now() >= end_; }
  /// What is left, as poll(2) takes it.
  int milliseconds() const {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end_ - Clock::now()).count();
    return static_cast<int>(std::clamp<decltype(left)>(left, 0, std::numeric_limits<int>::max()));
  }

 private:
  using Clock = std::chrono::steady_clock;
  Clock::time_point end_;
};

}  // namespace ZEB::guest
