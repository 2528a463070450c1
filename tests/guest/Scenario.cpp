#include "Scenario.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "GuestFixture.h"

namespace ZEB::guest {
namespace {

using nlohmann::json;
using Action = std::function<void(Guest&)>;
using Check = std::function<void(ServedModel&)>;

constexpr int kOk = 2, kDegraded = 3, kError = 6, kDormant = 15;
constexpr auto kLinkUp = "link up, 1000 Mbit/s full duplex";
constexpr auto kNoLink = "no link";
constexpr auto kSwitchedOff = "administratively down";

Action runs(std::string script) {
  return [script](Guest& guest) { guest.must(script); };
}
Action pulls(std::string card) {
  return [card](Guest& guest) { guest.setLink(card, false); };
}
Action putsBack(std::string card) {
  return [card](Guest& guest) { guest.setLink(card, true); };
}

Check port(std::string card, int status) {
  return [=](ServedModel& model) {
    EXPECT_EQ(model.port(card)["OperationalStatus"], json::array({status})) << card;
  };
}
/// A new process asks, so that a team that is degraded from its first look stays degraded.
Check team(int status) {
  return [=](ServedModel& model) {
    EXPECT_EQ(model.all("ZEB_EthernetTeam").at(0)["GroupOperationalStatus"], json::array({status}));
  };
}
Check number(std::string className, std::size_t count) {
  return [=](ServedModel& model) { EXPECT_EQ(model.all(className).size(), count) << className; };
}
/// In the order in which they are served.
Check addresses(std::vector<std::string> wanted) {
  return [=](ServedModel& model) {
    std::vector<std::string> found;
    for (const ServedInstance& endpoint : model.all("ZEB_IPProtocolEndpoint")) {
      const std::string property = endpoint.has("IPv4Address") ? "IPv4Address" : "IPv6Address";
      // Those that the kernel makes for itself are not asked for.
      const std::string address = endpoint[property];
      if (!address.starts_with("fe80:") && endpoint["Description"] == "slot4") found.push_back(address);
    }
    EXPECT_EQ(found, wanted);
  };
}

std::string bondOf(const std::string& mode, const std::vector<std::string>& members) {
  std::string script = "set -e\nip link add bond1 type bond miimon 100 mode " + mode + "\n";
  for (const std::string& member : members) script += "ip link set " + member + " master bond1\n";
  return script + "ip link set bond1 up\n";
}
/// The first is active.
std::string backupOf(const std::vector<std::string>& members) {
  const std::string& first = members.front();
  return bondOf("active-backup", members) + "until grep -qx up /sys/class/net/" + first +
         "/bonding_slave/mii_status; do sleep 0.05; done\nip link set bond1 type bond active_slave " + first +
         "\n";
}

ExpectedAlert memberRole(const std::string& member, const std::string& from, const std::string& to,
                         const std::string& comment) {
  return {9, "bond1", comment,
          "The role of member " + member + " of Ethernet Team bond1 has changed from " + from + " to " + to};
}
ExpectedAlert memberStatus(const std::string& member, const std::string& from, const std::string& to,
                           const std::string& comment) {
  return {
      10, "bond1", comment,
      "The status of member " + member + " of Ethernet Team bond1 has changed from " + from + " to " + to};
}
ExpectedAlert joined(const std::string& member, const std::string& comment) {
  return {7, "bond1", comment, "New Member " + member + " has been added into Ethernet Team bond1"};
}
ExpectedAlert dropped(const std::string& member, const std::string& comment) {
  return {8, "bond1", comment, "Member " + member + " has been dropped from Ethernet Team bond1"};
}
ExpectedAlert activeCount(int from, int to, const std::string& comment) {
  return {13, "bond1", comment,
          "Active Member Count of Ethernet Team bond1 Changed from " + std::to_string(from) + " to " +
              std::to_string(to)};
}

/// An alert of the team whose text has nothing but the team's name in it.
ExpectedAlert ofTeam(int event, const std::string& comment) {
  static const std::map<int, std::string> texts = {
      {1, "Ethernet Team bond1 has failed"},
      {2, "Ethernet Team bond1 has lost connectivity"},
      {3, "The connectivity of Ethernet Team bond1 has restored"},
      {4, "The redundancy of Ethernet Team bond1 has decreased"},
      {5, "The redundancy of Ethernet Team bond1 has lost"},
      {6, "The redundancy of Ethernet Team bond1 has increased"},
      {11, "New Ethernet Team bond1 is detected"},
      {12, "The Ethernet Team bond1 is no longer available"},
      {15, "The redundancy of Ethernet Team bond1 has fully restored"},
      {16, "The Ethernet Team bond1 has failed"},
      {20, "Ethernet Team bond1 has been activated"},
      {21, "Ethernet Team bond1 has been deactivated"},
  };
  return {event, "bond1", comment, texts.at(event)};
}

Scenario cablePulled() {
  return {"CablePulledAndPutBack",
          "ip link set slot3b up",
          {"slot3b"},
          "",
          {{pulls("slot3b"), {{2, "slot3b", kNoLink}}, {port("slot3b", kError)}},
           {putsBack("slot3b"), {{3, "slot3b", kLinkUp}}, {port("slot3b", kOk)}}}};
}

Scenario interfaceDown() {
  return {"InterfaceDownAndUp",
          "ip link set slot4 up",
          {"slot4"},
          "",
          {{runs("ip link set slot4 down"), {{21, "slot4", kSwitchedOff}}, {port("slot4", kDormant)}},
           {runs("ip link set slot4 up"), {{20, "slot4", kLinkUp}}, {port("slot4", kOk)}}}};
}

Scenario upWithoutCable() {
  return {"InterfaceUpWithoutACable",
          "",
          {},
          "",
          {{pulls("slot3a"), {}, {port("slot3a", kDormant)}},
           {runs("ip link set slot3a up"), {{1, "slot3a", kNoLink}}, {port("slot3a", kError)}},
           {putsBack("slot3a"), {{3, "slot3a", kLinkUp}}, {port("slot3a", kOk)}}}};
}

/// The alert about the status comes with the team's message, and so do those that follow it in that look.
Scenario memberLost() {
  constexpr auto kOne = "1 of 2 members up";
  constexpr auto kBoth = "2 of 2 members up";
  return {"BondMemberLostAndRegained",
          backupOf({"slot3a", "slot3b"}),
          {"slot3a", "slot3b"},
          kEverything,
          {{pulls("slot3b"),
            {{2, "slot3b", kNoLink},
             ofTeam(2, kOne),
             memberRole("slot3b", "Backup", "Failed", kOne),
             memberStatus("slot3b", "OK", "Error", kOne),
             ofTeam(5, kOne)},
            {port("slot3b", kError), team(kDegraded)}},
           {putsBack("slot3b"),
            {{3, "slot3b", kLinkUp},
             ofTeam(3, kBoth),
             memberRole("slot3b", "Failed", "Backup", kBoth),
             memberStatus("slot3b", "Error", "OK", kBoth),
             ofTeam(15, kBoth)},
            {port("slot3b", kOk), team(kOk)}}}};
}

/// What is on by default, for a bond of any mode and for the member that carries the traffic.
Scenario redundancyLost(const std::string& name, const std::string& setUp) {
  return {name,
          setUp,
          {"slot3a", "slot3b"},
          "",
          {{pulls("slot3a"),
            {{2, "slot3a", kNoLink}, ofTeam(2, "1 of 2 members up"), ofTeam(5, "1 of 2 members up")},
            {port("slot3a", kError), team(kDegraded)}},
           {putsBack("slot3a"),
            {{3, "slot3a", kLinkUp}, ofTeam(3, "2 of 2 members up"), ofTeam(15, "2 of 2 members up")},
            {port("slot3a", kOk), team(kOk)}}}};
}

/// Degraded counts as an error for a team that was well, so its status is reported once.
Scenario threeMembers() {
  return {"BondOfThreeLosesAllAndRegainsThem",
          backupOf({"slot3a", "slot3b", "lom1"}),
          {"slot3a", "slot3b", "lom1"},
          "",
          {{pulls("slot3a"),
            {{2, "slot3a", kNoLink}, ofTeam(2, "2 of 3 members up"), ofTeam(4, "2 of 3 members up")},
            {team(kDegraded)}},
           {pulls("slot3b"), {{2, "slot3b", kNoLink}, ofTeam(5, "")}},
           {pulls("lom1"), {{2, "lom1", kNoLink}, ofTeam(16, "")}, {team(kError)}},
           {putsBack("lom1"), {{3, "lom1", kLinkUp}, ofTeam(6, "")}},
           {putsBack("slot3b"), {{3, "slot3b", kLinkUp}, ofTeam(6, "")}},
           {putsBack("slot3a"),
            {{3, "slot3a", kLinkUp}, ofTeam(3, "3 of 3 members up"), ofTeam(15, "3 of 3 members up")},
            {team(kOk)}}}};
}

/// A port that leaves a bond is switched off by it.
Scenario emptied() {
  constexpr auto kNone = "no members";
  return {"BondEmptied",
          backupOf({"slot3a", "slot3b"}),
          {"slot3a", "slot3b"},
          kEverything,
          {{runs("ip link set slot3b nomaster"),
            {{21, "slot3b", kSwitchedOff}, dropped("slot3b", ""), ofTeam(5, "")},
            {port("slot3b", kDormant), team(kOk)}},
           {runs("ip link set slot3a nomaster"),
            {{21, "slot3a", kSwitchedOff},
             ofTeam(2, kNone),
             dropped("slot3a", kNone),
             ofTeam(16, kNone),
             activeCount(1, 0, kNone)},
            {port("slot3a", kDormant), team(kError)}}}};
}

Scenario memberAdded() {
  return {"BondMemberAddedAndRemoved",
          backupOf({"slot3a"}),
          {"slot3a"},
          kEverything,
          {{runs("ip link set slot4 master bond1"),
            {{20, "slot4", kLinkUp}, joined("slot4", ""), ofTeam(15, "")},
            {port("slot4", kOk), team(kOk)}},
           {runs("ip link set slot4 nomaster"),
            {{21, "slot4", kSwitchedOff}, dropped("slot4", ""), ofTeam(5, "")},
            {port("slot4", kDormant), team(kOk)}}}};
}

Scenario teamCreated() {
  return {"TeamCreatedAndDeleted",
          "",
          {},
          kEverything,
          {{runs("ip link add bond1 type bond miimon 100 mode active-backup"),
            {ofTeam(11, "")},
            {number("ZEB_EthernetTeam", 1), team(kDormant)}},
           {runs("ip link set bond1 up"), {ofTeam(1, "no members")}, {team(kError)}},
           {runs("ip link del bond1"), {ofTeam(12, "")}, {number("ZEB_EthernetTeam", 0)}}}};
}

Scenario teamDown() {
  return {"TeamDownAndUp",
          backupOf({"slot3a", "slot3b"}),
          {"slot3a", "slot3b"},
          "",
          {{runs("ip link set bond1 down"), {ofTeam(21, kSwitchedOff)}, {team(kDormant)}},
           {runs("ip link set bond1 up"), {ofTeam(20, "2 of 2 members up")}, {team(kOk)}}}};
}

Scenario cardPlugged() {
  const auto plug = [](Guest& guest) { guest.plug({.name = "late", .model = kE1000e, .slot = kFreeSlot}); };
  return {"CardPluggedAndRemoved",
          "",
          {},
          kEverything,
          {{plug, {}, {number("ZEB_EthernetPort", 10), port("late", kDormant)}},
           {[](Guest& guest) { guest.unplug("late"); }, {}, {number("ZEB_EthernetPort", 9)}}}};
}

Scenario addressesChanged() {
  return {"AddressesChanged",
          "ip link set slot4 up",
          {"slot4"},
          kEverything,
          {{runs("set -e\nip address add 192.0.2.4/24 dev slot4\n"
                 "ip address add 2001:db8::4/64 dev slot4 nodad"),
            {},
            {addresses({"192.0.2.4", "2001:db8::4"})}},
           {runs("ip address del 192.0.2.4/24 dev slot4"), {}, {addresses({"2001:db8::4"})}}}};
}

Scenario repeatedMessage() {
  return {"LinkMessagesThatSayNothingNew",
          "ip link set slot4 up",
          {"slot4"},
          kEverything,
          {{runs("set -e\nfor size in {1300..1320}; do ip link set slot4 mtu $size; done\n"
                 "ip link set slot4 promisc on; ip link set slot4 up; ip link set slot4 promisc off"),
            {},
            {port("slot4", kOk)}}}};
}

/// The first steps of `scenario` with one setting off, and without the alerts of which `isOff` says that they
/// are.
Scenario without(const std::string& setting, Scenario scenario, std::size_t steps,
                 const std::function<bool(const ExpectedAlert&)>& isOff) {
  scenario.name = setting;
  scenario.settings += " " + setting + "=false";
  scenario.steps.resize(steps);
  for (Step& step : scenario.steps) {
    std::erase_if(step.alerts, isOff);
    step.served.clear();
  }
  return scenario;
}

std::function<bool(const ExpectedAlert&)> events(std::vector<int> events) {
  return [=](const ExpectedAlert& alert) { return std::ranges::count(events, alert.event) != 0; };
}

bool isOfPort(const ExpectedAlert& alert) {
  return alert.about != "bond1";
}

}  // namespace

std::vector<Scenario> scenarios() {
  const std::string lacp =
      "set -e\nip -n partner link add bond1 type bond mode 802.3ad miimon 100 lacp_rate fast\n"
      "for port in slot3a slot3b; do\n"
      "  ip -n partner link set $port-peer down\n  ip -n partner link set $port-peer master bond1\ndone\n"
      "ip -n partner link set bond1 up\n";
  return {cablePulled(),
          interfaceDown(),
          upWithoutCable(),
          memberLost(),
          redundancyLost("ActiveBackupLosesItsActiveMember", backupOf({"slot3a", "slot3b"})),
          redundancyLost("AggregationLosesAMember", lacp + bondOf("802.3ad", {"slot3a", "slot3b"})),
          redundancyLost("LoadBalancingLosesAMember", bondOf("balance-alb", {"slot3a", "slot3b"})),
          threeMembers(),
          emptied(),
          memberAdded(),
          teamCreated(),
          teamDown(),
          cardPlugged(),
          addressesChanged(),
          repeatedMessage()};
}

std::vector<Scenario> switchedOffScenarios() {
  Scenario filtered{"FilterOfAPort",
                    "ip link set slot3b up; ip link set slot4 up",
                    {"slot3b", "slot4"},
                    kEverything,
                    {{pulls("slot3b"), {}, {port("slot3b", kError)}},
                     {runs("ip link set slot4 down"), {{21, "slot4", kSwitchedOff}}}},
                    "slot3b"};
  return {without("MonitorPorts", memberLost(), 1, isOfPort),
          without("MonitorRedundancySets", memberLost(), 2, events({4, 5, 6, 15, 16})),
          without("MemberRoleChanged", memberLost(), 1, events({9})),
          without("MemberStatusChanged", memberLost(), 1, events({10})),
          without("MemberLeftTeam", emptied(), 1, events({8})),
          without("ActiveAdapterCountChanged", emptied(), 2, events({13})),
          without("MemberJoinedTeam", memberAdded(), 1, events({7})),
          without("InterfaceAvailable", teamCreated(), 1, events({11})),
          without("InterfaceUnAvailable", teamCreated(), 3, events({12})),
          std::move(filtered)};
}

}  // namespace ZEB::guest
