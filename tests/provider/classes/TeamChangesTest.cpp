#include <gtest/gtest.h>

#include "classes/team/TeamChanges.h"
#include "support/RecordingLogSink.h"

namespace ZEB {
void PrintTo(const TeamAlert& alert, std::ostream* out) {
  *out << alert.eventId << " " << alert.message;
}
}  // namespace ZEB

namespace ZEB::test {
namespace {

using Status = operationalStatus;
using Role = EthTeamMemberRoleEnum;
using Slaves = std::vector<EthernetTeamSlave>;
using Alerts = std::vector<TeamAlert>;

struct TeamTransition {
  Status before;
  Status now;
  std::optional<TeamAlert> alert;
};

const TeamAlert kFailedAlert{1, "Ethernet Team bond0 has failed"};
const TeamAlert kLostAlert{2, "Ethernet Team bond0 has lost connectivity"};
const TeamAlert kRestoredAlert{3, "The connectivity of Ethernet Team bond0 has restored"};
const TeamAlert kActivatedAlert{20, "Ethernet Team bond0 has been activated"};
const TeamAlert kDeactivatedAlert{21, "Ethernet Team bond0 has been deactivated"};

/// Every transition between OK, Degraded, Error, Dormant and Unknown.
TEST(TeamStatusAlert, FollowsTheTable) {
  const TeamTransition transitions[] = {
      {Status::OK, Status::Degraded, kLostAlert},
      {Status::OK, Status::Error, kLostAlert},
      {Status::OK, Status::Dormant, kDeactivatedAlert},
      {Status::OK, Status::Unknown, std::nullopt},
      {Status::Degraded, Status::OK, kRestoredAlert},
      {Status::Degraded, Status::Error, kFailedAlert},
      {Status::Degraded, Status::Dormant, kDeactivatedAlert},
      {Status::Degraded, Status::Unknown, std::nullopt},
      {Status::Error, Status::OK, kRestoredAlert},
      {Status::Error, Status::Degraded, kFailedAlert},
      {Status::Error, Status::Dormant, kDeactivatedAlert},
      {Status::Error, Status::Unknown, std::nullopt},
      {Status::Dormant, Status::OK, kActivatedAlert},
      {Status::Dormant, Status::Degraded, kFailedAlert},
      {Status::Dormant, Status::Error, kFailedAlert},
      {Status::Dormant, Status::Unknown, std::nullopt},
      {Status::Unknown, Status::OK, std::nullopt},
      {Status::Unknown, Status::Degraded, kFailedAlert},
      {Status::Unknown, Status::Error, kFailedAlert},
      {Status::Unknown, Status::Dormant, kDeactivatedAlert},
  };
  for (const TeamTransition& t : transitions) {
    EXPECT_EQ(teamStatusAlert("bond0", t.before, t.now), t.alert)
        << static_cast<int>(t.before) << " to " << static_cast<int>(t.now);
  }
}

EthernetTeamSlave slave(const char* name, Status status = Status::OK, Role role = Role::Active) {
  return {name, role == Role::Active, role, status};
}

constexpr TeamAlertGates kEverything{true, true, true, true, true, true};

class TeamMemberAlerts : public testing::Test {
 protected:
  Alerts alerts(const TeamAlertGates& gates, const Slaves& before, const Slaves& now) {
    return teamMemberAlerts(recorded.logger, "bond0", gates, before, now);
  }
  RecordedLogger recorded;
};

TEST_F(TeamMemberAlerts, NothingChangedIsNoAlert) {
  const Slaves members{slave("eth0"), slave("eth1", Status::OK, Role::Backup)};
  EXPECT_EQ(alerts(kEverything, members, members), Alerts{});
  EXPECT_EQ(recorded.sink->lines(),
            (std::vector<RecordingLogSink::Line>{
                {LogLevel::Info, "Test",
                 "numOldStatusOK[2], numNewStatusOK[2]; numOldActive[1], numNewActive[1]"}}));
}

TEST_F(TeamMemberAlerts, AMemberWhoseRoleAndStatusChangeIsTwoAlertsRoleFirst) {
  TeamAlertGates gates;
  gates.memberRoleChanged = gates.memberStatusChanged = true;
  EXPECT_EQ(alerts(gates, {slave("eth0")}, {slave("eth0", Status::Error, Role::Failed)}),
            (Alerts{{9, "The role of member eth0 of Ethernet Team bond0 has changed from Active to Failed"},
                    {10, "The status of member eth0 of Ethernet Team bond0 has changed from OK to Error"}}));
}

TEST_F(TeamMemberAlerts, EachGateLetsThroughItsOwnAlertAlone) {
  const Slaves before{slave("eth0"), slave("eth1")};
  const Slaves now{slave("eth0", Status::Degraded, Role::Backup), slave("eth2")};
  struct Gate {
    bool TeamAlertGates::*gate;
    Alerts alerts;
  };
  const Gate gates[] = {
      {&TeamAlertGates::memberRoleChanged,
       {{9, "The role of member eth0 of Ethernet Team bond0 has changed from Active to Backup"}}},
      {&TeamAlertGates::memberStatusChanged,
       {{10, "The status of member eth0 of Ethernet Team bond0 has changed from OK to Degraded"}}},
      {&TeamAlertGates::memberLeft, {{8, "Member eth1 has been dropped from Ethernet Team bond0"}}},
      {&TeamAlertGates::memberJoined, {{7, "New Member eth2 has been added into Ethernet Team bond0"}}},
      {&TeamAlertGates::redundancyChanged, {{5, "The redundancy of Ethernet Team bond0 has lost"}}},
      {&TeamAlertGates::activeCountChanged,
       {{13, "Active Member Count of Ethernet Team bond0 Changed from 2 to 1"}}},
  };
  for (const Gate& each : gates) {
    TeamAlertGates only;
    only.*each.gate = true;
    EXPECT_EQ(alerts(only, before, now), each.alerts);
  }
  EXPECT_EQ(alerts({}, before, now), Alerts{});
}

TEST_F(TeamMemberAlerts, ComeInOrder) {
  EXPECT_EQ(
      alerts(kEverything, {slave("eth0"), slave("eth1")},
             {slave("eth2", Status::Error, Role::Failed), slave("eth0", Status::Degraded, Role::Backup)}),
      (Alerts{{9, "The role of member eth0 of Ethernet Team bond0 has changed from Active to Backup"},
              {10, "The status of member eth0 of Ethernet Team bond0 has changed from OK to Degraded"},
              {8, "Member eth1 has been dropped from Ethernet Team bond0"},
              {7, "New Member eth2 has been added into Ethernet Team bond0"},
              {16, "The Ethernet Team bond0 has failed"},
              {13, "Active Member Count of Ethernet Team bond0 Changed from 2 to 0"}}));
}

TEST_F(TeamMemberAlerts, ATeamOfTwoThatLosesAMemberHasLostItsRedundancy) {
  const Slaves before{slave("eth0"), slave("eth1", Status::OK, Role::Backup)};
  TeamAlertGates gates;
  gates.redundancyChanged = true;
  EXPECT_EQ(alerts(gates, before, {slave("eth0")}),
            (Alerts{{5, "The redundancy of Ethernet Team bond0 has lost"}}));
  gates.memberLeft = true;
  EXPECT_EQ(alerts(gates, before, {slave("eth0")}),
            (Alerts{{8, "Member eth1 has been dropped from Ethernet Team bond0"},
                    {5, "The redundancy of Ethernet Team bond0 has lost"}}));
}

TEST_F(TeamMemberAlerts, NamesAreComparedExactly) {
  TeamAlertGates gates;
  gates.memberJoined = gates.memberLeft = true;
  EXPECT_EQ(alerts(gates, {slave("eth0")}, {slave("ETH0")}),
            (Alerts{{8, "Member eth0 has been dropped from Ethernet Team bond0"},
                    {7, "New Member ETH0 has been added into Ethernet Team bond0"}}));
}

/// So many members that are OK, and the rest in error.
Slaves members(int ok, int all) {
  Slaves slaves;
  for (int i = 0; i < all; ++i) {
    slaves.push_back(slave(("eth" + std::to_string(i)).c_str(), i < ok ? Status::OK : Status::Error));
  }
  return slaves;
}

TEST_F(TeamMemberAlerts, RedundancyFollowsTheTable) {
  const TeamAlert increased{6, "The redundancy of Ethernet Team bond0 has increased"};
  const TeamAlert restored{15, "The redundancy of Ethernet Team bond0 has fully restored"};
  const TeamAlert decreased{4, "The redundancy of Ethernet Team bond0 has decreased"};
  const TeamAlert lost{5, "The redundancy of Ethernet Team bond0 has lost"};
  const TeamAlert failed{16, "The Ethernet Team bond0 has failed"};
  struct Row {
    Slaves before;
    Slaves now;
    Alerts alerts;
  };
  const Row rows[] = {
      {members(1, 4), members(2, 4), {increased}},
      {members(1, 2), members(2, 2), {restored}},
      {members(0, 3), members(3, 3), {restored}},
      {members(0, 2), members(1, 2), {increased}},
      {members(4, 4), members(3, 4), {decreased}},
      {members(4, 4), members(2, 2), {decreased}},
      {members(2, 2), members(1, 2), {lost}},
      {members(3, 3), members(1, 1), {lost}},
      {members(1, 1), members(0, 1), {failed}},
      {members(2, 2), {}, {failed}},
      {members(2, 2), members(2, 3), {}},
      {members(0, 2), members(0, 1), {}},
      {{}, members(1, 1), {restored}},
  };
  TeamAlertGates gates;
  gates.redundancyChanged = true;
  for (const Row& row : rows) {
    EXPECT_EQ(alerts(gates, row.before, row.now), row.alerts)
        << row.before.size() << " to " << row.now.size() << " members";
  }
}

TEST_F(TeamMemberAlerts, EveryRoleHasItsText) {
  TeamAlertGates gates;
  gates.memberRoleChanged = true;
  EXPECT_EQ(alerts(gates, {slave("a", Status::OK, Role::Backup), slave("b", Status::OK, Role::Unknown)},
                   {slave("a", Status::OK, Role::Failed), slave("b", Status::OK, Role::Active)}),
            (Alerts{{9, "The role of member a of Ethernet Team bond0 has changed from Backup to Failed"},
                    {9, "The role of member b of Ethernet Team bond0 has changed from Unknown to Active"}}));
}

}  // namespace
}  // namespace ZEB::test
