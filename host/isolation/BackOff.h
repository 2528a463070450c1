// When a process that keeps dying may be started again.
#pragma once

#include <algorithm>
#include <chrono>

namespace ZebHost {

/// The first replacement comes at once, each further one in a row of useless processes twice as late as the
/// one before.
class BackOff {
 public:
  using Clock = std::chrono::steady_clock;

  BackOff(std::chrono::milliseconds first, std::chrono::milliseconds longest)
      : _first(first), _longest(longest) {}

  /// A process ended. `useful`: it had done something before.
  void ended(bool useful, Clock::time_point now) {
    if (useful) _delay = std::chrono::milliseconds(0);
    _notBefore = now + _delay;
    _delay = std::clamp(_delay * 2, _first, _longest);
  }

  Clock::time_point notBefore() const { return _notBefore; }

 private:
  const std::chrono::milliseconds _first;
  const std::chrono::milliseconds _longest;
  std::chrono::milliseconds _delay{0};
  Clock::time_point _notBefore{};
};

}  // namespace ZebHost
