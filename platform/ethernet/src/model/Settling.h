#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <unordered_map>

#include "snapshot/HostSnapshot.h"

namespace ZEB::ethernet {

/// Watches, answer by answer, interfaces be switched on and join teams. A link takes a while to come up:
/// until it has, and for no longer than `time`, the interface is marked as settling. What was there when
/// watching began is as it is. Not safe to use from several threads.
class Settling {
 public:
  using Clock = std::chrono::steady_clock;

  /// With a `time` of 0 nothing settles.
  explicit Settling(std::chrono::milliseconds time, std::function<Clock::time_point()> now = Clock::now);

  /// Marks the links of an answer about every interface; what is not in it is forgotten.
  void watchAll(HostSnapshot& snapshot);
  /// Marks the links of an answer about some interfaces.
  void watchSome(HostSnapshot& snapshot);

  /// When the time of the next one is up; none while nothing settles.
  std::optional<Clock::time_point> next() const;

 private:
  struct Seen {
    bool up = false;
    std::uint32_t team = 0;  ///< interface number of the team that it is a member of
    Settles settles = Settles::No;
    bool hadCarrier = false;  ///< since it settles: that it is gone again is news
    Clock::time_point until;
    std::uint64_t answer = 0;  ///< the last that it was in
  };

  void watch(const LinkFacts& link, Clock::time_point now);
  void waitForMembers(const HostSnapshot& snapshot);
  void waitForLower(const LinkFacts& vlan);
  void mark(HostSnapshot& snapshot) const;

  const std::chrono::milliseconds _time;
  const std::function<Clock::time_point()> _now;
  std::unordered_map<std::uint32_t, Seen> _seen;  ///< by interface number
  std::uint64_t _answers = 0;                     ///< about every interface, so far
};

}  // namespace ZEB::ethernet
