#include <gtest/gtest.h>
#include <linux/if.h>

#include "model/Team.h"

namespace ZEB::ethernet::test {
namespace {

using Role = EthTeamMemberRoleEnum;
using Status = operationalStatus;
using Redundancy = EthTeamRedundancyStatusEnum;

TeamMember member(Status status, bool active = true, std::optional<std::uint32_t> speed = {}) {
  return {{"eth0", active, active ? Role::Active : Role::Backup, status}, speed};
}

TeamFacts team(std::vector<TeamMember> members, std::uint8_t mode = 4, bool up = true) {
  TeamFacts facts;
  facts.link.name = "bond0";
  facts.link.flags = up ? std::uint32_t{IFF_UP} : 0u;
  facts.link.bond = BondFacts{mode, {}};
  facts.members = std::move(members);
  return facts;
}

LinkFacts link(bool carrier, std::optional<std::uint8_t> state, std::optional<std::uint8_t> mii) {
  LinkFacts facts;
  facts.name = "eth0";
  facts.flags = IFF_UP;
  facts.carrier = carrier;
  facts.bondMember = BondMemberFacts{state, mii, {}};
  return facts;
}

TEST(Team, MemberRoles) {
  const auto slave = [](bool carrier, std::optional<std::uint8_t> state, std::optional<std::uint8_t> mii) {
    return teamMember(link(carrier, state, mii)).slave;
  };
  EXPECT_EQ(slave(true, 0, 0), (EthernetTeamSlave{"eth0", true, Role::Active, Status::OK}));
  EXPECT_EQ(slave(true, 1, 0), (EthernetTeamSlave{"eth0", false, Role::Backup, Status::OK}));
  EXPECT_EQ(slave(true, 1, 2), (EthernetTeamSlave{"eth0", false, Role::Failed, Status::Error}));
  EXPECT_EQ(slave(false, 0, 0), (EthernetTeamSlave{"eth0", false, Role::Failed, Status::Error}));
  EXPECT_EQ(slave(true, std::nullopt, 0), (EthernetTeamSlave{"eth0", false, Role::Unknown, Status::OK}));
  EXPECT_EQ(slave(true, 1, 3), (EthernetTeamSlave{"eth0", false, Role::Backup, Status::Degraded}));
}

TEST(Team, Status) {
  const auto ok = member(Status::OK);
  const auto failed = member(Status::Error);
  EXPECT_EQ(teamStatus(team({ok, ok}, 4, false)), Status::Dormant);
  EXPECT_EQ(teamStatus(team({ok, ok})), Status::OK);
  EXPECT_EQ(teamStatus(team({ok, failed})), Status::Degraded);
  EXPECT_EQ(teamStatus(team({failed, failed})), Status::Error);
  EXPECT_EQ(teamStatus(team({})), Status::Error);
  EXPECT_FALSE(teamStatus(TeamFacts{}));
}

TEST(Team, Redundancy) {
  const auto ok = member(Status::OK);
  const auto failed = member(Status::Error);
  EXPECT_EQ(redundancyStatus({ok, ok, ok}), Redundancy::FullyRedundant);
  EXPECT_EQ(redundancyStatus({ok}), Redundancy::FullyRedundant);
  EXPECT_EQ(redundancyStatus({ok, failed, ok}), Redundancy::DegradedRedundancy);
  EXPECT_EQ(redundancyStatus({ok, failed, failed}), Redundancy::RedundancyLost);
  EXPECT_EQ(redundancyStatus({failed, failed}), Redundancy::OverallFailure);
  EXPECT_EQ(redundancyStatus({}), Redundancy::OverallFailure);
}

TEST(Team, Speed) {
  const std::vector<TeamMember> members = {member(Status::OK, true, 1000), member(Status::OK, true, 10000),
                                           member(Status::OK, false, 25000)};
  EXPECT_EQ(teamSpeed(team(members, 4)), 11000u) << "members that carry traffic add up";
  EXPECT_EQ(teamSpeed(team(members, 3)), 10000u) << "the same goes over each";
  EXPECT_EQ(teamSpeed(team(members, 1)), 10000u) << "one of them carries, while two call themselves active";
  EXPECT_EQ(teamSpeed(team({member(Status::OK, true, 1000), member(Status::OK, false, 10000)}, 1)), 1000u);
  EXPECT_FALSE(teamSpeed(team({member(Status::OK)})));
  EXPECT_FALSE(teamSpeed(team({})));
  auto said = team(members);
  said.link.ethtool.speed = 2000;
  EXPECT_EQ(teamSpeed(said), 2000u) << "the driver knows best";
  auto unknownMode = team(members);
  unknownMode.link.bond.reset();
  EXPECT_FALSE(teamSpeed(unknownMode));
}

TEST(Team, Message) {
  EXPECT_EQ(teamMessage(team({member(Status::OK), member(Status::Error)})), "1 of 2 members up");
  EXPECT_EQ(teamMessage(team({}, 1, false)), "administratively down");
  EXPECT_EQ(teamMessage(team({})), "no members");
  EXPECT_FALSE(teamMessage(TeamFacts{}));
}

TEST(Team, CapabilitiesByMode) {
  using Codes = std::vector<std::uint16_t>;
  for (const std::uint8_t mode : std::vector<std::uint8_t>{1, 3})
    EXPECT_EQ(modeCapabilities(mode), Codes{4}) << int{mode};
  for (const std::uint8_t mode : std::vector<std::uint8_t>{0, 2, 4, 5, 6})
    EXPECT_EQ(modeCapabilities(mode), (Codes{4, 5})) << int{mode};
  EXPECT_EQ(modeCapabilities(7), Codes{});
  EXPECT_EQ(modeCapabilities(std::nullopt), Codes{});
}

TEST(Team, RoleTexts) {
  EXPECT_STREQ(roleText(Role::Active), "Active");
  EXPECT_STREQ(roleText(Role::Backup), "Backup");
  EXPECT_STREQ(roleText(Role::Failed), "Failed");
  EXPECT_STREQ(roleText(Role::Unknown), "Unknown");
  EXPECT_STREQ(roleText(static_cast<Role>(77)), "Unknown");
}

}  // namespace
}  // namespace ZEB::ethernet::test
