// Which indication opens what, and which ends it.
#include <gmock/gmock.h>

#include "alertmanager/AlertKinds.h"
#include "alertmanager/AlertmanagerSettings.h"
#include "alertmanager/AlertsText.h"
#include "broker/Broker.h"
#include "cimxml/AnswerReader.h"
#include "schema/ClassRepository.h"

namespace ZebManager {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::string property(const std::string& name, const std::string& type, const std::string& value) {
  return "<PROPERTY NAME=\"" + name + "\" TYPE=\"" + type + "\"><VALUE>" + value + "</VALUE></PROPERTY>";
}

/// What an indication does: "+Name interface/team" or "-…".
std::vector<std::string> effectOf(const std::string& event, bool ofPort, const std::string& detail) {
  static const ClassRepository classes = ClassRepository::fromFile(ZEB_SCHEMA_FILE);
  const std::string element =
      "<INSTANCE CLASSNAME=\"ZEB_EthernetIndication\">" + property("EventID", "string", event) +
      property("EventSubCategory", "uint16", ofPort ? "11" : "12") +
      property("Description", "string", "Of a team. (" + detail + ")") + "</INSTANCE>";
  Arena arena;
  const PropertyView view(*readInstanceElement(element, arena, classes, kNameSpace));
  std::vector<std::string> effect;
  for (const AlertChange& change : changesOf(view, "eth7", 5)) {
    EXPECT_EQ(change.time, 5);
    effect.push_back((change.opens ? "+" : "-") + change.identity.name + " " + change.identity.interface +
                     "/" + change.identity.team);
  }
  return effect;
}

TEST(AlertKinds, FollowTheLinkOfAPort) {
  for (const char* const event : {"1", "2"})
    EXPECT_THAT(effectOf(event, true, "Ethernet port 1"), ElementsAre("+ZebConnectivityLost eth7/")) << event;
  for (const char* const event : {"3", "20", "21"})
    EXPECT_THAT(effectOf(event, true, "Ethernet port 1"), ElementsAre("-ZebConnectivityLost eth7/")) << event;
}

TEST(AlertKinds, FollowATeam) {
  EXPECT_THAT(effectOf("1", false, "Ethernet Team bond0 has failed"),
              ElementsAre("+ZebConnectivityLost /bond0"));
  EXPECT_THAT(effectOf("2", false, "Ethernet Team bond0 has lost connectivity"),
              ElementsAre("+ZebConnectivityLost /bond0"));
  EXPECT_THAT(effectOf("3", false, "The connectivity of Ethernet Team bond0 has restored"),
              ElementsAre("-ZebConnectivityLost /bond0"));
  EXPECT_THAT(effectOf("5", false, "The redundancy of Ethernet Team bond0 has lost"),
              ElementsAre("-ZebTeamFailed /bond0", "+ZebRedundancyLost /bond0"));
  EXPECT_THAT(effectOf("6", false, "The redundancy of Ethernet Team bond0 has increased"),
              ElementsAre("-ZebTeamFailed /bond0"));
  EXPECT_THAT(effectOf("15", false, "The redundancy of Ethernet Team bond0 has fully restored"),
              ElementsAre("-ZebTeamFailed /bond0", "-ZebRedundancyLost /bond0"));
  EXPECT_THAT(effectOf("16", false, "The Ethernet Team bond0 has failed"),
              ElementsAre("+ZebTeamFailed /bond0", "+ZebRedundancyLost /bond0"));
  EXPECT_THAT(effectOf("11", false, "New Ethernet Team bond0 is detected"),
              ElementsAre("-ZebInterfaceGone /bond0"));
  EXPECT_THAT(effectOf("12", false, "The Ethernet Team bond0 is no longer available"),
              ElementsAre("-ZebConnectivityLost /bond0", "-ZebTeamFailed /bond0", "-ZebRedundancyLost /bond0",
                          "-ZebMemberFailed /bond0", "+ZebInterfaceGone /bond0"));
}

TEST(AlertKinds, FollowAMember) {
  const auto changed = [](const char* from, const char* to) {
    return effectOf("10", false,
                    std::string("The status of member eth1 of Ethernet Team bond0 has changed from ") + from +
                        " to " + to);
  };
  EXPECT_THAT(changed("OK", "Error"), ElementsAre("+ZebMemberFailed eth1/bond0"));
  EXPECT_THAT(changed("OK", "Dormant"), ElementsAre("+ZebMemberFailed eth1/bond0"));
  EXPECT_THAT(changed("Error", "OK"), ElementsAre("-ZebMemberFailed eth1/bond0"));
  EXPECT_THAT(effectOf("8", false, "Member eth1 has been dropped from Ethernet Team bond0"),
              ElementsAre("-ZebMemberFailed eth1/bond0"));
}

TEST(AlertKinds, MakeNothingOfWhatIsNoState) {
  for (const char* const event : {"4", "7", "9", "13", "100", "201", "77", ""}) {
    EXPECT_FALSE(concernsAlertmanager(event)) << event;
    EXPECT_THAT(effectOf(event, false, "Ethernet Team bond0"), IsEmpty()) << event;
  }
}

TEST(AlertKinds, MakeNothingOfATextWithoutATeam) {
  EXPECT_THAT(effectOf("5", false, "nobody"), IsEmpty());
}

constexpr DayTime kNow = 100'000'000;

OpenAlert alert(const std::string& name, const std::string& interface, const std::string& team) {
  return {.identity = {name, interface, team}, .starts = kNow};
}

Tree machine(std::uint64_t portStatus, std::uint64_t teamStatus, std::uint64_t redundancy,
             std::uint64_t role) {
  Tree tree;
  TreePort port;
  port.name = "eth0";
  port.status.code = portStatus;
  TreeTeam team;
  team.name = "bond0";
  team.status.code = teamStatus;
  team.redundancyCode = redundancy;
  team.members = {
      {.path = {}, .port = "eth0", .role = "", .roleCode = role, .portStatus = {}, .memberStatus = {}}};
  TreeCard card;
  card.ports.push_back(port);
  tree.cards.push_back(card);
  tree.teams.push_back(team);
  return tree;
}

TEST(AlertsOfAMachine, LastWhileItIsIll) {
  const Tree ill = machine(6, 3, 5, 3);
  EXPECT_FALSE(isOver(alert("ZebConnectivityLost", "eth0", ""), ill, kNow));
  EXPECT_FALSE(isOver(alert("ZebConnectivityLost", "", "bond0"), ill, kNow));
  EXPECT_FALSE(isOver(alert("ZebTeamFailed", "", "bond0"), ill, kNow));
  EXPECT_FALSE(isOver(alert("ZebRedundancyLost", "", "bond0"), ill, kNow));
  EXPECT_FALSE(isOver(alert("ZebMemberFailed", "eth0", "bond0"), ill, kNow));
  EXPECT_FALSE(isOver(alert("ZebInterfaceGone", "", "bond9"), ill, kNow));
}

TEST(AlertsOfAMachine, AreOverWhenItIsWell) {
  const Tree well = machine(2, 2, 2, 1);
  EXPECT_TRUE(isOver(alert("ZebConnectivityLost", "eth0", ""), well, kNow));
  EXPECT_TRUE(isOver(alert("ZebConnectivityLost", "", "bond0"), well, kNow));
  EXPECT_TRUE(isOver(alert("ZebTeamFailed", "", "bond0"), well, kNow));
  EXPECT_TRUE(isOver(alert("ZebRedundancyLost", "", "bond0"), well, kNow));
  EXPECT_TRUE(isOver(alert("ZebMemberFailed", "eth0", "bond0"), well, kNow));
  EXPECT_TRUE(isOver(alert("ZebInterfaceGone", "", "bond0"), well, kNow));
}

TEST(AlertsOfAMachine, OfAPortWithoutANameGoByItsPath) {
  Tree ill = machine(6, 2, 2, 1);
  ill.cards[0].ports[0].name = "";
  ill.cards[0].ports[0].path = "root/jxv:ZEB_EthernetPort.DeviceID=1";
  EXPECT_FALSE(isOver(alert("ZebConnectivityLost", "root/jxv:ZEB_EthernetPort.DeviceID=1", ""), ill, kNow));
}

TEST(AlertsOfAMachine, AreOverWhenItIsSwitchedOff) {
  EXPECT_TRUE(isOver(alert("ZebConnectivityLost", "eth0", ""), machine(15, 2, 2, 1), kNow));
}

TEST(AlertsOfAMachine, GoOnWhenItDoesNotSay) {
  Tree silent = machine(2, 2, 2, 0);
  silent.cards[0].ports[0].status.code.reset();
  silent.teams[0].status.code.reset();
  silent.teams[0].redundancyCode.reset();
  EXPECT_FALSE(isOver(alert("ZebConnectivityLost", "eth0", ""), silent, kNow));
  EXPECT_FALSE(isOver(alert("ZebConnectivityLost", "", "bond0"), silent, kNow));
  EXPECT_FALSE(isOver(alert("ZebTeamFailed", "", "bond0"), silent, kNow));
  EXPECT_FALSE(isOver(alert("ZebMemberFailed", "eth0", "bond0"), silent, kNow));
}

TEST(AlertsOfAMachine, AreOverWhenWhatTheyAreAboutIsGone) {
  const Tree other;
  EXPECT_TRUE(isOver(alert("ZebConnectivityLost", "eth0", ""), other, kNow));
  EXPECT_TRUE(isOver(alert("ZebRedundancyLost", "", "bond0"), other, kNow));
  EXPECT_TRUE(isOver(alert("ZebMemberFailed", "eth0", "bond0"), other, kNow));
}

TEST(AlertsOfAMachine, OfAnInterfaceThatDoesNotComeBackEndAfterADay) {
  constexpr DayTime kDay = 86'400'000;
  EXPECT_FALSE(isOver(alert("ZebInterfaceGone", "", "bond9"), Tree(), kNow + kDay));
  EXPECT_TRUE(isOver(alert("ZebInterfaceGone", "", "bond9"), Tree(), kNow + kDay + 1));
}

TEST(AlertsText, SaysWhatAnAlertmanagerWantsToKnow) {
  const OpenAlert open{.identity = {"ZebMemberFailed", "eth1", "bond0"},
                       .annotations = {{"summary", "It \"failed\""}},
                       .starts = 1'700'000'000'123};
  EXPECT_EQ(
      alertsText(std::vector{open}, {{"instance", "a"}, {"site", "b"}}, 1'700'000'060'000, 1'700'000'300'000),
      R"([{"annotations":{"summary":"It \"failed\""},"endsAt":"2023-11-14T22:18:20.000Z",)"
      R"("labels":{"alertname":"ZebMemberFailed","instance":"a","interface":"eth1",)"
      R"("severity":"warning","site":"b","team":"bond0"},"startsAt":"2023-11-14T22:13:20.123Z"}])");
}

TEST(AlertsText, HasNoTimesThatAreStillToCome) {
  OpenAlert alert{.identity = {"ZebTeamFailed", "", "bond0"}, .starts = 1'700'000'060'000};
  const auto text = [&] { return alertsText(std::vector{alert}, {}, 1'700'000'000'000, 1'700'000'240'000); };
  EXPECT_THAT(text(), HasSubstr(R"("startsAt":"2023-11-14T22:13:20.000Z")"));
  EXPECT_THAT(text(), HasSubstr(R"("endsAt":"2023-11-14T22:17:20.000Z")"));
  alert.ends = 1'700'000'090'000;
  EXPECT_THAT(text(), HasSubstr(R"("startsAt":"2023-11-14T22:13:20.000Z")"));
  EXPECT_THAT(text(), HasSubstr(R"("endsAt":"2023-11-14T22:13:20.000Z")"));
}

TEST(AlertsText, IsValidForBytesThatAreNone) {
  const OpenAlert alert{.identity = {"ZebTeamFailed", "", "bond\xff"}};
  EXPECT_THAT(alertsText(std::vector{alert}, {}, 1, 2), HasSubstr("bond\xEF\xBF\xBD"));
}

TEST(LabelsOfASite, HaveNamesThatPrometheusTakes) {
  std::pair<std::string, std::string> label;
  EXPECT_TRUE(readLabel("site=Fra 1=a", label));
  EXPECT_EQ(label, (std::pair<std::string, std::string>("site", "Fra 1=a")));
  EXPECT_TRUE(readLabel("instance=web1:5989", label));
  for (const char* const bad : {"site", "site=", "=x", "1a=x", "a-b=x", "alertname=x", "team=x"})
    EXPECT_FALSE(readLabel(bad, label)) << bad;
}

}  // namespace
}  // namespace ZebManager
