#include "model/Team.h"

#include <algorithm>

#include "model/LinkStatus.h"

namespace ZEB::ethernet {
namespace {

using Role = EthTeamMemberRoleEnum;
using Mode = EthTeamModeEnum;

constexpr std::uint8_t kStateActive = 0;
constexpr std::uint8_t kStateBackup = 1;

Role memberRole(const BondMemberFacts& facts, operationalStatus status) {
  if (status == operationalStatus::Error || status == operationalStatus::Dormant) return Role::Failed;
  if (facts.state == kStateActive) return Role::Active;
  return facts.state == kStateBackup ? Role::Backup : Role::Unknown;
}

std::size_t countUp(const std::vector<TeamMember>& members) {
  return static_cast<std::size_t>(std::count_if(members.begin(), members.end(), [](const TeamMember& member) {
    return member.slave.status == operationalStatus::OK;
  }));
}

std::optional<Mode> modeOf(const TeamFacts& team) {
  if (!team.link.bond || !team.link.bond->mode) return std::nullopt;
  return static_cast<Mode>(*team.link.bond->mode);
}

}  // namespace

TeamMember teamMember(const LinkFacts& link) {
  const BondMemberFacts facts = link.bondMember.value_or(BondMemberFacts{});
  const operationalStatus status = memberStatus(link).value_or(operationalStatus::Unknown);
  const Role role = memberRole(facts, status);
  return {{link.name, role == Role::Active, role, status}, link.ethtool.speed};
}

std::optional<operationalStatus> teamStatus(const TeamFacts& team) {
  const auto up = isAdministrativelyUp(team.link);
  if (!up) return std::nullopt;
  if (!*up) return operationalStatus::Dormant;
  const std::size_t membersUp = countUp(team.members);
  if (membersUp == 0) return operationalStatus::Error;
  return membersUp == team.members.size() ? operationalStatus::OK : operationalStatus::Degraded;
}

EthTeamRedundancyStatusEnum redundancyStatus(const std::vector<TeamMember>& members) {
  const std::size_t up = countUp(members);
  if (up == 0) return EthTeamRedundancyStatusEnum::OverallFailure;
  if (up == members.size()) return EthTeamRedundancyStatusEnum::FullyRedundant;
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
  const auto up = isAdministrativelyUp(team.link);
  if (!up) return std::nullopt;
  if (!*up) return "administratively down";
  if (team.members.empty()) return "no members";
  return std::to_string(countUp(team.members)) + " of " + std::to_string(team.members.size()) + " members up";
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
