// An alert that lasts, as an Alertmanager knows it.
#pragma once

#include <compare>
#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace ZebManager {

/// Milliseconds of the time of day since the epoch.
using DayTime = std::int64_t;

/// What an alert is told from others by. A port has no team, a team no interface, a member both.
struct AlertIdentity {
  std::string name;  ///< one of `alertNames()`
  std::string interface;
  std::string team;

  auto operator<=>(const AlertIdentity&) const = default;
};

struct OpenAlert {
  AlertIdentity identity;
  std::map<std::string, std::string> annotations = {};
  DayTime starts = 0;
  std::optional<DayTime> ends = std::nullopt;  ///< since when it is over
  std::uint64_t changed = 0;                   ///< revision of the table
};

/// What becomes of one: it opens, or is over.
struct AlertChange {
  AlertIdentity
      identity;  ///< when it is over, an empty interface with a team stands for the team's members too
  bool opens = false;
  std::map<std::string, std::string> annotations = {};
  DayTime time = 0;
};

}  // namespace ZebManager
