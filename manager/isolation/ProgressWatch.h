// Whether a process gets on, told by its pulses.
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "isolation/Pulse.h"

namespace ZebManager {

/// Slow is not stuck: a call that computes, or would if the machine let it, gets on however long it takes.
/// What asks for a pulse decides from when on it is worth to know.
class ProgressWatch {
 public:
  using Clock = std::chrono::steady_clock;
  using Milliseconds = std::chrono::milliseconds;

  /// `patience`: for a process in which nothing moves; `silence`: for one that does not tell.
  ProgressWatch(Milliseconds patience, Milliseconds silence) : _patience(patience), _silence(silence) {}

  bool wantsPulse(Clock::time_point now) const;
  void asked(Clock::time_point now) { _asked = now; }
  void note(const Pulse& pulse, Clock::time_point now);

  /// Does not tell how it is.
  bool isSilent(Clock::time_point now) const;
  /// Why nothing of it can be expected; empty when it gets on.
  std::string trouble(Clock::time_point now) const;
  /// The call has been asleep for the whole patience, whatever others do.
  bool isAsleep(std::uint64_t call, Clock::time_point now) const;

 private:
  struct Seen {
    Clock::time_point awake;  ///< when last, or when it was first seen
    std::uint64_t processorTime = 0;
  };

  const Milliseconds _patience;
  const Milliseconds _silence;
  std::optional<Clock::time_point> _asked;  // and not told yet
  Clock::time_point _told;
  std::optional<Clock::time_point> _quietSince;
  unsigned _quietPulses = 0;
  std::map<std::uint64_t, Seen> _calls;
};

}  // namespace ZebManager
