#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "model/Facts.h"

namespace ZEB::ethernet {

TeamMember teamMember(const LinkFacts& link);

/// Dormant when down and while it settles, else OK, Degraded or Error as all, some or none of the members are
/// OK.
std::optional<operationalStatus> teamStatus(const TeamFacts& team);

EthTeamRedundancyStatusEnum redundancyStatus(const std::vector<TeamMember>& members,
                                             Settles team = Settles::No);

/// Mbit/s: what the bonding driver says, else what the members that carry traffic add up to; one of them
/// where the mode sends over one, or the same over all.
std::optional<std::uint32_t> teamSpeed(const TeamFacts& team);

std::optional<std::string> teamMessage(const TeamFacts& team);

/// What a mode does for its members; nothing for an unknown one.
std::vector<std::uint16_t> modeCapabilities(std::optional<std::uint8_t> mode);

const char* roleText(EthTeamMemberRoleEnum role);

}  // namespace ZEB::ethernet
