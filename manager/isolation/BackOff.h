// When a process that keeps dying may be started again.
#pragma once

#include <algorithm>
#include <chrono>

namespace ZebManager {

/// The first replacement comes at once, further ones a little later, and each one in a row that did nothing
/// useful makes the next come twice as late. A process that lasted makes up for those before.
class BackOff {
 public:
  using Clock = std::chrono::steady_clock;

  BackOff(std::chrono::milliseconds first, std::chrono::milliseconds longest)
      : _first(first), _longest(longest) {}

  /// How a process spent its life.
  enum class Life { InVain, Useful, Lasting };

  void ended(Life life, Clock::time_point now) {
    if (life == Life::Lasting) _delay = std::chrono::milliseconds(0);
    _notBefore = now + _delay;
    _delay = life == Life::InVain ? std::clamp(_delay * 2, _first, _longest) : _first;
    _inVain = life == Life::InVain ? _inVain + 1 : 0;
  }

  Clock::time_point notBefore() const { return _notBefore; }
  /// Two in a row did nothing useful: one is what a call makes of its process that always ends it.
  bool hopeless() const { return _inVain > 1; }

 private:
  const std::chrono::milliseconds _first;
  const std::chrono::milliseconds _longest;
  std::chrono::milliseconds _delay{0};
  Clock::time_point _notBefore{};
  unsigned _inVain = 0;
};

}  // namespace ZebManager
