#include "model/Team.h"

#include <algorithm>

#include "model/LinkStatus.h"

namespace ZEB::ethernet {
namespace {

using Role = EthTeamMemberRoleEnum;
using Mode = EthTeamModeEnum;

constexpr std::uint8_t kStateActive = 0;
constexpr std::uint8_t kStateBackup = 1;

Role memberRole(const BondMemberFacts& facts, operationalStatus status, bool joining) {
  const bool failed = status == operationalStatus::Error || status == operationalStatus::Dormant;
  if (failed && !joining) return Role::Failed;
  if (facts.state == kStateActive) return Role::Active;
  return facts.state == kStateBackup ? Role::Backup : Role::Unknown;
}

struct Count {
  std::size_t members = 0;
  std::size_t up = 0;
};

/// Members that have come count once they have their link; while the team itself settles, so do all others.
Count count(const std::vector<TeamMember>& members, Settles team) {
  Count count;
  for (const TeamMember& member : members) {
    if (member.slave.joining || (team != Settles::No && member.settles != Settles::No)) continue;
    ++count.members;
    count.up += member.slave.status == operationalStatus::OK;
  }
  return count;
}

std::optional<Mode> modeOf(const TeamFacts& team) {
  if (!team.link.bond || !team.link.bond->mode) return std::nullopt;
  return static_cast<Mode>(*team.link.bond->mode);
}

}  // namespace

TeamMember teamMember(const LinkFacts& link) {
  const BondMemberFacts facts = link.bondMember.value_or(BondMemberFacts{});
  const bool joining = link.settles == Settles::Joined;
  const operationalStatus status = memberStatus(link).value_or(operationalStatus::Unknown);
  const Role role = memberRole(facts, status, joining);
  return {.slave = {link.name, role == Role::Active && !joining, role, status, joining},
          .speed = link.ethtool.speed,
          .portStatus = portStatus(link),
          .settles = link.settles,
          .bonding = facts};
}

std::optional<operationalStatus> teamStatus(const TeamFacts& team) {
  const auto switchedOn = isAdministrativelyUp(team.link);
  if (!switchedOn) return std::nullopt;
  if (!*switchedOn) return operationalStatus::Dormant;
  const auto [members, up] = count(team.members, team.link.settles);
  if (members == 0 && team.link.settles != Settles::No) return operationalStatus::Dormant;
  if (up == 0) return operationalStatus::Error;
  return up == members ? operationalStatus::OK : operationalStatus::Degraded;
}

EthTeamRedundancyStatusEnum redundancyStatus(const std::vector<TeamMember>& members, Settles team) {
  const auto [counting, up] = count(members, team);
  if (up == 0) return EthTeamRedundancyStatusEnum::OverallFailure;
  if (up == counting) return EthTeamRedundancyStatusEnum::FullyRedundant;
  return up == 1 ? EthTeamRedundancyStatusEnum::RedundancyLost
                 : EthTeamRedundancyStatusEnum::DegradedRedundancy;
}

std::optional<std::uint32_t> teamSpeed(const TeamFacts& team) {
  if (team.link.ethtool.speed) return team.link.ethtool.speed;
  const auto mode = modeOf(team);
  if (!mode) return std::nullopt;
  const bool single = *mode == Mode::ActiveBackup || *mode == Mode::Broadcast;
  std::optional<std::uint32_t> total;
  for (const TeamMember& member : team.members) {
    if (!member.slave.active || !member.speed) continue;
    total = single ? std::max(total.value_or(0), *member.speed) : total.value_or(0) + *member.speed;
  }
  return total;
}

std::optional<std::string> teamMessage(const TeamFacts& team) {
  const auto switchedOn = isAdministrativelyUp(team.link);
  if (!switchedOn) return std::nullopt;
  if (!*switchedOn) return "administratively down";
  if (team.members.empty()) return "no members";
  const std::size_t up = count(team.members, Settles::No).up;
  return std::to_string(up) + " of " + std::to_string(team.members.size()) + " members up";
}

std::vector<std::uint16_t> modeCapabilities(std::optional<std::uint8_t> mode) {
  constexpr auto kFailOver = static_cast<std::uint16_t>(EthCapabilityEnum::FailOver);
  constexpr auto kLoadBalancing = static_cast<std::uint16_t>(EthCapabilityEnum::LoadBalancing);
  if (!mode || *mode > static_cast<std::uint8_t>(Mode::BalanceAlb)) return {};
  const auto known = static_cast<Mode>(*mode);
  if (known == Mode::ActiveBackup || known == Mode::Broadcast) return {kFailOver};
  return {kFailOver, kLoadBalancing};
}

const char* roleText(EthTeamMemberRoleEnum role) {
  switch (role) {
    case Role::Active:
      return "Active";
    case Role::Backup:
      return "Backup";
    case Role::Failed:
      return "Failed";
    default:
      return "Unknown";
  }
}

}  // namespace ZEB::ethernet
