#include "Scenario.h"

#include <algorithm>
#include <utility>

#include "GuestFixture.h"
#include "ScenarioParts.h"

namespace ZEB::guest {
namespace {

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
