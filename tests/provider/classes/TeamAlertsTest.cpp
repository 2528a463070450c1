#include <gmock/gmock.h>

#include <atomic>
#include <fstream>
#include <thread>

#include "InstanceText.h"
#include "MemoryHost.h"
#include "ProviderFixture.h"
#include "classes/team/ZEB_EthernetTeam.h"
#include "common/ZEBUtil.h"
#include "monitor/ZEB_EthEventSettings.h"

namespace ZEB::test {
namespace {

using Status = operationalStatus;
using testing::AnyOf;
using testing::ElementsAre;
using testing::IsEmpty;

/// What of an alert comes from the team.
struct Alert {
  std::string event;
  std::string message;
  std::string comment;
  friend bool operator==(const Alert&, const Alert&) = default;
  friend void PrintTo(const Alert& alert, std::ostream* out) {
    *out << alert.event << ": " << alert.message << " [" << alert.comment << "]";
  }
};

/// bond0 of eth0 and eth1 on a host that changes under it.
class TeamAlertsTest : public ProviderTest {
 protected:
  TeamAlertsTest() {
    // Every alert's description is "D" and what happened in parentheses.
    std::ofstream records(folder / "records.toml");
    for (const int event : {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 13, 15, 16, 20, 21}) {
      records << "[ZEB_EthernetIndication." << event
              << "]\nseverity = 2\nsummary = \"S\"\ndescription = \"D\"\nalert-type = 1\n"
                 "provider-name = \"P\"\nrecommended-actions = [\"look\"]\ncategory = 1\n"
                 "other-category = \"O\"\nprobable-cause = 1\nprobable-cause-description = \"C\"\n";
    }
    records.close();
    configure("ZEB_RECORDS", (folder / "records.toml").string());
    ZEBUtil::setBroker(broker.handle());
    broker.setIndicationsEnabled(true);
    host.addTeam("bond0");
    for (const char* port : {"eth0", "eth1"}) {
      host.addPort(port);
      host.join(port, "bond0");
    }
    settings = std::make_unique<ZEB_EthEventSettings>(recorded.logger, "root/jxv");
  }
  ~TeamAlertsTest() override {
    ZEBUtil::setBroker({});
    unsetenv("ZEB_RECORDS");
    Configuration::reset();
  }

  ZEB_EthernetTeam make() { return {recorded.logger, "root/jxv", 7, host.team(0)}; }

  void turn(std::initializer_list<const char*> names, bool on) {
    for (const char* name : names) {
      CmpiCpp::CmpiInstance change;
      change.addProperty(CmpiCpp::CmpiName(name), on);
      const char* list[] = {name, nullptr};
      settings->modify(change, list);
    }
  }
  void turnOnEverything() {
    turn({"ActiveAdapterCountChanged", "MemberRoleChanged", "MemberStatusChanged", "MemberJoinedTeam",
          "MemberLeftTeam", "MonitorRedundancySets"},
         true);
  }

  /// Has the team look at itself; the alerts that it sent.
  std::vector<Alert> manage(ZEB_EthernetTeam& team, bool indicationsEnabled = true) {
    const std::size_t before = broker.deliveries().size();
    FakeBroker::Call call(broker);
    bool visible = false;
    team.manageDynamic(visible, indicationsEnabled, CmpiCpp::CmpiContext(&call.context()), *settings);
    EXPECT_TRUE(visible);
    std::vector<Alert> alerts;
    const auto deliveries = broker.deliveries();
    for (std::size_t i = before; i < deliveries.size(); ++i) alerts.push_back(alertOf(deliveries[i]));
    return alerts;
  }

  Alert alertOf(const FakeBroker::Delivery& delivery) {
    const auto& indication = delivery.indication;
    EXPECT_EQ(delivery.nameSpace, "root/jxv");
    EXPECT_EQ(textOf(indication.getProperty("EventSubCategory")), "uint16 12");
    EXPECT_EQ(textOf(indication.getProperty("HWPartNumber")), "string \"N/A\"");
    EXPECT_EQ(indication.findProperty("HWPhysicalLocation"), nullptr);
    EXPECT_EQ(indication.getProperty("AlertingManagedElement").asString(),
              "//" + hostName() + "/root/jxv:ZEB_EthernetTeam.InstanceID=\"JXV:ZEB_EthernetTeam:7\"");
    const auto* comment = indication.findProperty("UserComment");
    const std::string description = indication.getProperty("Description").asString();
    return {indication.getProperty("EventID").asString(), description.substr(2, description.size() - 3),
            comment ? comment->asString() : ""};
  }

  MemoryHost host;
  RecordedLogger recorded;
  std::unique_ptr<ZEB_EthEventSettings> settings;
};

TEST_F(TeamAlertsTest, DegradedAfterOkHasLostConnectivityOnceAndIsRememberedAsInError) {
  turn({"MonitorRedundancySets"}, false);
  auto team = make();
  setStatus(host.link("eth1"), Status::Error);
  EXPECT_THAT(manage(team),
              ElementsAre(Alert{"2", "Ethernet Team bond0 has lost connectivity", "1 of 2 members up"}));
  EXPECT_EQ(team.lastStatus(), Status::Error);
  EXPECT_THAT(manage(team), IsEmpty());
  EXPECT_EQ(team.lastStatus(), Status::Error);
  EXPECT_EQ(textOf(team.makeInstance().getProperty("GroupOperationalStatus")), "uint16[] {6}");
}

TEST_F(TeamAlertsTest, OkAfterErrorHasItsConnectivityRestored) {
  turn({"MonitorRedundancySets"}, false);
  setStatus(host.link("eth0"), Status::Error);
  setStatus(host.link("eth1"), Status::Error);
  auto team = make();
  setStatus(host.link("eth0"), Status::OK);
  setStatus(host.link("eth1"), Status::OK);
  EXPECT_THAT(manage(team), ElementsAre(Alert{"3", "The connectivity of Ethernet Team bond0 has restored",
                                              "2 of 2 members up"}));
}

TEST_F(TeamAlertsTest, TakenDownAndUpAgainIsDeactivatedAndActivated) {
  auto team = make();
  setStatus(host.link("bond0"), Status::Dormant);
  EXPECT_THAT(manage(team),
              ElementsAre(Alert{"21", "Ethernet Team bond0 has been deactivated", "administratively down"}));
  setStatus(host.link("bond0"), Status::OK);
  EXPECT_THAT(manage(team),
              ElementsAre(Alert{"20", "Ethernet Team bond0 has been activated", "2 of 2 members up"}));
}

TEST_F(TeamAlertsTest, ThatLosesOneOfTwoMembersSaysSoBeforeItsRedundancy) {
  turn({"MemberLeftTeam"}, true);
  auto team = make();
  host.link("eth1").masterIndex.reset();
  EXPECT_THAT(manage(team),
              ElementsAre(Alert{"8", "Member eth1 has been dropped from Ethernet Team bond0", ""},
                          Alert{"5", "The redundancy of Ethernet Team bond0 has lost", ""}));
  host.join("eth1", "bond0");
  turn({"MemberJoinedTeam"}, true);
  EXPECT_THAT(manage(team),
              ElementsAre(Alert{"7", "New Member eth1 has been added into Ethernet Team bond0", ""},
                          Alert{"15", "The redundancy of Ethernet Team bond0 has fully restored", ""}));
}

TEST_F(TeamAlertsTest, EverythingAtOnceComesInOrderWithTheMessageOfTheStatus) {
  turnOnEverything();
  auto team = make();
  setStatus(host.link("eth0"), Status::Error);
  host.link("eth1").masterIndex.reset();
  host.addPort("eth2");
  host.join("eth2", "bond0");
  setStatus(host.link("eth2"), Status::Error);
  const char* comment = "0 of 2 members up";
  EXPECT_THAT(
      manage(team),
      ElementsAre(
          Alert{"2", "Ethernet Team bond0 has lost connectivity", comment},
          Alert{"9", "The role of member eth0 of Ethernet Team bond0 has changed from Active to Failed",
                comment},
          Alert{"10", "The status of member eth0 of Ethernet Team bond0 has changed from OK to Error",
                comment},
          Alert{"8", "Member eth1 has been dropped from Ethernet Team bond0", comment},
          Alert{"7", "New Member eth2 has been added into Ethernet Team bond0", comment},
          Alert{"16", "The Ethernet Team bond0 has failed", comment},
          Alert{"13", "Active Member Count of Ethernet Team bond0 Changed from 2 to 0", comment}));
}

TEST_F(TeamAlertsTest, EachSettingLetsThroughItsOwnAlerts) {
  struct Gate {
    const char* setting;
    const char* event;
  };
  for (const Gate gate : {Gate{"MemberRoleChanged", "9"}, Gate{"MemberStatusChanged", "10"},
                          Gate{"MemberLeftTeam", "8"}, Gate{"MemberJoinedTeam", "7"},
                          Gate{"MonitorRedundancySets", "5"}, Gate{"ActiveAdapterCountChanged", "13"}}) {
    turn({"MonitorRedundancySets"}, false);
    turn({gate.setting}, true);
    MemoryHost fresh;
    fresh.addTeam("bond0");
    for (const char* port : {"eth0", "eth1", "eth2", "eth3"}) fresh.addPort(port);
    for (const char* port : {"eth0", "eth1", "eth2"}) fresh.join(port, "bond0");
    ZEB_EthernetTeam team(recorded.logger, "root/jxv", 7, fresh.team(0));
    setStatus(fresh.link("eth0"), Status::Error);
    fresh.link("eth1").masterIndex.reset();
    fresh.join("eth3", "bond0");
    setStatus(fresh.link("eth3"), Status::Error);
    const auto alerts = manage(team);
    ASSERT_EQ(alerts.size(), 2U) << gate.setting;
    EXPECT_EQ(alerts[0].event, "2");
    EXPECT_EQ(alerts[1].event, gate.event);
    turn({gate.setting}, false);
  }
}

TEST_F(TeamAlertsTest, WithIndicationsDisabledNothingIsSentNowOrLater) {
  turnOnEverything();
  auto team = make();
  setStatus(host.link("eth0"), Status::Error);
  host.link("eth1").masterIndex.reset();
  EXPECT_THAT(manage(team, false), IsEmpty());
  EXPECT_EQ(team.lastStatus(), Status::Error);
  EXPECT_THAT(manage(team), IsEmpty());
}

TEST_F(TeamAlertsTest, AStatusThatCannotBeReadLeavesTheOneThatIsRemembered) {
  auto team = make();
  host.link("bond0").flags.reset();
  EXPECT_THAT(manage(team), IsEmpty());
  EXPECT_EQ(team.lastStatus(), Status::OK);
}

TEST_F(TeamAlertsTest, GoesOnAfterARefusedDelivery) {
  turnOnEverything();
  auto team = make();
  host.link("eth1").masterIndex.reset();
  broker.answerDeliveries(CMPI_RC_ERR_FAILED);
  EXPECT_THAT(manage(team), IsEmpty());
  const auto refused = recorded.sink->texts();
  EXPECT_EQ(std::ranges::count_if(
                refused, [](const auto& text) { return text.starts_with("indication send failure: "); }),
            3);
  broker.answerDeliveries(CMPI_RC_OK);
  EXPECT_THAT(manage(team), IsEmpty());
}

TEST_F(TeamAlertsTest, LogsEveryLook) {
  auto team = make();
  recorded.sink->clear();
  manage(team);
  EXPECT_THAT(recorded.sink->texts(),
              ElementsAre("ZEB_EthernetTeam::manageDynamic()", "indicationsEnabled: 1",
                          "numOldStatusOK[2], numNewStatusOK[2]; numOldActive[2], numNewActive[2]"));
  recorded.sink->clear();
  manage(team, false);
  EXPECT_THAT(recorded.sink->texts(),
              ElementsAre("ZEB_EthernetTeam::manageDynamic()", "indicationsEnabled: 0"));
}

TEST_F(TeamAlertsTest, InstancesMayBeMadeBesideItAndNeverMixTwoReadings) {
  turn({"MonitorRedundancySets"}, false);
  auto team = make();
  std::atomic made = 0;
  std::jthread reader([&](const std::stop_token& stop) {
    while (!stop.stop_requested()) {
      const auto instance = team.makeInstance();
      const auto text = [&](const char* name) { return textOf(instance.getProperty(name)); };
      EXPECT_THAT(std::pair(text("GroupOperationalStatus"), text("RedundancyStatus")),
                  AnyOf(std::pair("uint16[] {2}", "uint16 2"), std::pair("uint16[] {6}", "uint16 5")));
      ++made;
    }
  });
  for (int round = 0; round < 50 || made < 100; ++round) {
    host.change([&] {
      for (const char* port : {"eth0", "eth1"}) {
        setStatus(host.link(port), round % 2 == 0 ? Status::Error : Status::OK);
      }
    });
    EXPECT_EQ(manage(team).size(), 1U);
  }
}

}  // namespace
}  // namespace ZEB::test
