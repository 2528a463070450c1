#include <gmock/gmock.h>

#include "SnapshotBuilder.h"
#include "model/LinkStatus.h"
#include "model/Model.h"
#include "model/Settling.h"
#include "model/Team.h"

// A link that takes its time after a port was switched on, or after it joined a team, is no fault yet.

namespace ZEB::ethernet::test {
namespace {

using namespace std::chrono_literals;
using Status = operationalStatus;

class SettlingTest : public testing::Test {
 protected:
  /// What an answer comes to.
  std::shared_ptr<const Model> look() {
    HostSnapshot answer = host;
    settling.watchAll(answer);
    return buildModel(std::move(answer), false);
  }
  Status port(std::uint32_t index) { return *portStatus(look()->ports.at(index)->link); }
  TeamFacts team() { return *look()->teams.at(0).facts; }

  LinkFacts& link(const std::string& name) { return *std::ranges::find(host.links, name, &LinkFacts::name); }
  static void switchOff(LinkFacts& link) {
    carrier(link, false);
    link.flags = 0;
  }
  /// Up, and the link is not there yet.
  static void switchOn(LinkFacts& link) { carrier(link, false); }
  static void join(LinkFacts& link, std::uint32_t team) {
    link.masterIndex = team;
    link.bondMember = BondMemberFacts{1, link.carrier == true ? 0 : 2, {}};
  }

  HostSnapshot host;
  Settling::Clock::time_point now{1000s};
  Settling settling{6s, [this] { return now; }};
};

TEST_F(SettlingTest, APortThatWasWithoutLinkFromTheStartIsInError) {
  host.links = {pciPort(2, "eth0", "0000:01:00.0")};
  carrier(host.links[0], false);
  EXPECT_EQ(port(2), Status::Error);
  EXPECT_EQ(settling.next(), std::nullopt);
}

TEST_F(SettlingTest, APortThatIsSwitchedOnIsDormantUntilItHasItsLink) {
  host.links = {pciPort(2, "eth0", "0000:01:00.0")};
  switchOff(link("eth0"));
  EXPECT_EQ(port(2), Status::Dormant);
  switchOn(link("eth0"));
  EXPECT_EQ(port(2), Status::Dormant);
  EXPECT_EQ(settling.next(), now + 6s);
  now += 3s;
  EXPECT_EQ(port(2), Status::Dormant);
  carrier(link("eth0"), true);
  EXPECT_EQ(port(2), Status::OK);
  EXPECT_EQ(settling.next(), std::nullopt);
  carrier(link("eth0"), false);
  EXPECT_EQ(port(2), Status::Error) << "a cable that is pulled is one at once";
}

TEST_F(SettlingTest, APortWithoutLinkIsInErrorWhenItsTimeIsUp) {
  host.links = {pciPort(2, "eth0", "0000:01:00.0")};
  switchOff(link("eth0"));
  look();
  switchOn(link("eth0"));
  look();
  now += 5999ms;
  EXPECT_EQ(port(2), Status::Dormant);
  now += 1ms;
  EXPECT_EQ(port(2), Status::Error);
  EXPECT_EQ(settling.next(), std::nullopt);
}

TEST_F(SettlingTest, APortThatIsSwitchedOffAgainDoesNotSettle) {
  host.links = {pciPort(2, "eth0", "0000:01:00.0")};
  switchOff(link("eth0"));
  look();
  switchOn(link("eth0"));
  look();
  switchOff(link("eth0"));
  EXPECT_EQ(port(2), Status::Dormant);
  EXPECT_EQ(settling.next(), std::nullopt);
  now += 5s;
  switchOn(link("eth0"));
  look();
  EXPECT_EQ(settling.next(), now + 6s) << "its time begins anew";
}

TEST_F(SettlingTest, APortThatComesSettles) {
  look();
  host.links = {pciPort(2, "eth0", "0000:01:00.0")};
  switchOn(link("eth0"));
  EXPECT_EQ(port(2), Status::Dormant);
}

TEST_F(SettlingTest, APortThatComesBackSettlesAnew) {
  host.links = {pciPort(2, "eth0", "0000:01:00.0")};
  EXPECT_EQ(port(2), Status::OK);
  host.links.clear();
  look();
  host.links = {pciPort(2, "eth0", "0000:01:00.0")};
  switchOn(link("eth0"));
  EXPECT_EQ(port(2), Status::Dormant);
}

TEST_F(SettlingTest, TheNextIsTheFirstWhoseTimeIsUp) {
  host.links = {pciPort(2, "eth0", "0000:01:00.0"), pciPort(3, "eth1", "0000:02:00.0")};
  for (LinkFacts& each : host.links) switchOff(each);
  look();
  const auto began = now;
  switchOn(link("eth0"));
  look();
  now += 2s;
  switchOn(link("eth1"));
  look();
  EXPECT_EQ(settling.next(), began + 6s);
  now += 4s;
  look();
  EXPECT_EQ(settling.next(), began + 8s);
}

TEST_F(SettlingTest, ATimeOfZeroIsNotAtAll) {
  Settling none(0s, [this] { return now; });
  host.links = {pciPort(2, "eth0", "0000:01:00.0")};
  switchOff(link("eth0"));
  HostSnapshot answer = host;
  none.watchAll(answer);
  switchOn(link("eth0"));
  answer = host;
  none.watchAll(answer);
  EXPECT_EQ(portStatus(answer.links[0]), Status::Error);
}

TEST_F(SettlingTest, AnAnswerAboutOneInterfaceSettlesItToo) {
  host.links = {pciPort(2, "eth0", "0000:01:00.0"), pciPort(3, "eth1", "0000:02:00.0")};
  switchOff(link("eth0"));
  look();
  switchOn(link("eth0"));
  HostSnapshot one;
  one.links = {link("eth0")};
  settling.watchSome(one);
  EXPECT_EQ(portStatus(one.links[0]), Status::Dormant);
  now += 6s;
  one.links = {link("eth0")};
  settling.watchSome(one);
  EXPECT_EQ(portStatus(one.links[0]), Status::Error);
}

TEST_F(SettlingTest, AVlanSettlesWithWhatIsUnderIt) {
  host.links = {pciPort(2, "eth0", "0000:01:00.0"), vlanLink(20, "eth0.7", 2, 7)};
  switchOff(link("eth0"));
  carrier(link("eth0.7"), false);
  link("eth0.7").operState = IF_OPER_LOWERLAYERDOWN;
  EXPECT_EQ(vlanStatus(look()->vlans.at(20)->link), Status::Error);
  switchOn(link("eth0"));
  EXPECT_EQ(vlanStatus(look()->vlans.at(20)->link), Status::Dormant);
  now += 6s;
  EXPECT_EQ(vlanStatus(look()->vlans.at(20)->link), Status::Error);
}

TEST_F(SettlingTest, ATeamThatIsMadeIsDormantUntilItsFirstMemberIsUp) {
  host.links = {pciPort(2, "eth0", "0000:01:00.0")};
  look();
  host.links.push_back(bondLink(10, "bond0"));
  carrier(link("bond0"), false);
  EXPECT_EQ(teamStatus(team()), Status::Dormant) << "it has no members yet";
  now += 4s;
  switchOn(link("eth0"));
  join(link("eth0"), 10);
  EXPECT_EQ(teamStatus(team()), Status::Dormant);
  now += 4s;
  EXPECT_EQ(teamStatus(team()), Status::Dormant) << "it has the time that its member has";
  carrier(link("eth0"), true);
  link("eth0").bondMember->miiStatus = 0;
  carrier(link("bond0"), true);
  EXPECT_EQ(teamStatus(team()), Status::OK);
}

TEST_F(SettlingTest, ATeamThatGetsNoMemberIsInErrorWhenItsTimeIsUp) {
  look();
  host.links = {bondLink(10, "bond0")};
  carrier(link("bond0"), false);
  EXPECT_EQ(teamStatus(team()), Status::Dormant);
  now += 6s;
  EXPECT_EQ(teamStatus(team()), Status::Error);
}

TEST_F(SettlingTest, ATeamWhoseFirstMemberSettlesWithoutLinkIsInError) {
  look();
  host.links = {pciPort(2, "eth0", "0000:01:00.0"), bondLink(10, "bond0")};
  switchOn(link("eth0"));
  join(link("eth0"), 10);
  carrier(link("bond0"), false);
  EXPECT_EQ(teamStatus(team()), Status::Dormant);
  now += 6s;
  EXPECT_EQ(teamStatus(team()), Status::Error);
  EXPECT_EQ(port(2), Status::Error);
}

TEST_F(SettlingTest, AMemberThatJoinsDoesNotCountUntilItIsUp) {
  host.links = {memberOf(pciPort(2, "eth0", "0000:01:00.0"), 10), pciPort(3, "eth1", "0000:02:00.0"),
                bondLink(10, "bond0")};
  EXPECT_EQ(teamStatus(team()), Status::OK);
  switchOn(link("eth1"));
  join(link("eth1"), 10);
  const TeamFacts joining = team();
  EXPECT_EQ(teamStatus(joining), Status::OK);
  EXPECT_EQ(redundancyStatus(joining.members), EthTeamRedundancyStatusEnum::FullyRedundant);
  ASSERT_EQ(joining.members.size(), 2u);
  EXPECT_TRUE(joining.members[1].slave.joining);
  EXPECT_FALSE(joining.members[1].slave.active);
  EXPECT_EQ(joining.members[1].slave.role, EthTeamMemberRoleEnum::Backup);
  EXPECT_EQ(joining.members[1].slave.status, Status::Dormant);
  EXPECT_EQ(port(3), Status::Dormant);
  // The carrier comes before bonding has looked at it.
  carrier(link("eth1"), true);
  EXPECT_TRUE(team().members[1].slave.joining);
  EXPECT_EQ(port(3), Status::OK);
  link("eth1").bondMember->miiStatus = 0;
  EXPECT_FALSE(team().members[1].slave.joining);
  EXPECT_EQ(team().members[1].slave.status, Status::OK);
}

TEST_F(SettlingTest, ACableIsPulledWhileBondingStillWaits) {
  host.links = {pciPort(3, "eth1", "0000:02:00.0"), bondLink(10, "bond0")};
  look();
  switchOn(link("eth1"));
  join(link("eth1"), 10);
  look();
  carrier(link("eth1"), true);
  link("eth1").bondMember->miiStatus = 3;
  EXPECT_EQ(port(3), Status::OK);
  carrier(link("eth1"), false);
  EXPECT_EQ(port(3), Status::Error) << "told at once";
}

TEST_F(SettlingTest, AMemberThatJoinsWithoutLinkCountsWhenItsTimeIsUp) {
  host.links = {memberOf(pciPort(2, "eth0", "0000:01:00.0"), 10), pciPort(3, "eth1", "0000:02:00.0"),
                bondLink(10, "bond0")};
  look();
  switchOn(link("eth1"));
  join(link("eth1"), 10);
  look();
  now += 6s;
  const TeamFacts late = team();
  EXPECT_EQ(teamStatus(late), Status::Degraded);
  EXPECT_FALSE(late.members[1].slave.joining);
  EXPECT_EQ(late.members[1].slave.status, Status::Error);
  EXPECT_EQ(late.members[1].slave.role, EthTeamMemberRoleEnum::Failed);
}

TEST_F(SettlingTest, AMemberThatIsSwitchedOnAgainCountsAsTheOneThatItWas) {
  host.links = {memberOf(pciPort(2, "eth0", "0000:01:00.0"), 10),
                memberOf(pciPort(3, "eth1", "0000:02:00.0"), 10, 1), bondLink(10, "bond0")};
  switchOff(link("eth1"));
  EXPECT_EQ(teamStatus(team()), Status::Degraded);
  switchOn(link("eth1"));
  const TeamFacts again = team();
  EXPECT_EQ(teamStatus(again), Status::Degraded);
  EXPECT_FALSE(again.members[1].slave.joining);
  EXPECT_EQ(again.members[1].slave.status, Status::Dormant);
  EXPECT_EQ(again.members[1].slave.role, EthTeamMemberRoleEnum::Failed);
}

}  // namespace
}  // namespace ZEB::ethernet::test
