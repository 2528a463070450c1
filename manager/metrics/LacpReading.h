// What LACP says of teams, in plain values.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ZebManager {

/// A team that speaks it. What is not known is none.
struct LacpTeamReading {
  std::string device;
  std::optional<std::uint64_t> aggregator;  ///< that carries its traffic
  std::optional<std::uint64_t> ports;       ///< of that
  std::optional<std::uint64_t> actorKey, partnerKey;
  std::string partner;  ///< empty where nobody at the other end speaks it
};

struct LacpMemberReading {
  std::string team;
  std::string device;
  std::optional<std::uint64_t> aggregator;
  std::optional<std::uint64_t> actorState, partnerState;  ///< as bits
};

struct LacpReading {
  std::vector<LacpTeamReading> teams;
  std::vector<LacpMemberReading> members;
};

/// Of the text that the plug-in makes of it; nothing for what is none.
LacpReading readLacp(std::string_view text);

}  // namespace ZebManager
