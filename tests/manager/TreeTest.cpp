// The tree of recorded hosts, against what their snapshots say.
#include <nlohmann/json.hpp>

#include "RealCommand.h"

namespace ZebManager {
namespace {

using Json = nlohmann::json;
using testing::HasSubstr;
using testing::Not;

class TreeCommand : public RealCommand {
 protected:
  std::string tree(const std::string& host, const std::vector<std::string>& extra = {}) const {
    const Outcome outcome = zebcim({"tree", "--source", snapshotFile(host)}, extra);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    return outcome.out;
  }
  Json json(const std::string& host) const {
    const Outcome outcome = zebcim({"tree", "--json", "--source", snapshotFile(host)});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    return Json::parse(outcome.out);
  }
};

// The second card's fourth port is switched off, which is no fault; IPv4 addresses of interfaces without a
// link are not in use. The gateway with the lowest metric counts, whatever its table.
TEST_F(TreeCommand, ShowsCardsPortsVlansAndAddresses) {
  EXPECT_EQ(tree("two_cards"), hostName() + R"(
├─ I350 Gigabit Network Connection  Degraded  PCI Express slot 3  driver igb 6.1.0  firmware 1.63, 0x800009fa
│  ├─ eth0  OK       link up       1 Gbit/s full duplex  00:1b:21:00:00:01
│  │  ├─ 192.168.1.10/24           Static           gateway 192.168.1.254
│  │  ├─ 2001:db8:1::10/64         Static
│  │  ├─ fe80::21b:21ff:fe00:1/64  Static
│  │  ├─ VLAN 100  eth0.100    OK     link up
│  │  │  └─ 172.16.100.10/24          Static           gateway 172.16.100.1
│  │  └─ VLAN 5    eth0.100.5  OK     link up
│  │     └─ 172.16.5.10/24            Static
│  └─ eth1  Error    no link                             00:1b:21:00:00:02
│     └─ VLAN 200  eth1.200    Error  no link
└─ I350 Gigabit Network Connection  OK        PCI Express slot 7  driver igb 6.1.0  firmware 1.63, 0x800009fa
   ├─ eth2  OK       link up       1 Gbit/s full duplex  00:1b:21:00:00:03
   │  ├─ 10.0.0.10/16              DHCP             gateway 10.0.0.1
   │  └─ 10.0.0.11/16              DHCP             gateway 10.0.0.1
   ├─ eth3  OK       link up       1 Gbit/s full duplex  00:1b:21:00:00:04
   │  └─ 169.254.7.7/16            IPv4 Link Local
   ├─ eth4  OK       link up       1 Gbit/s full duplex  00:1b:21:00:00:05
   │  └─ 2001:db8:3::6/64          IPv6AutoConfig   gateway fe80::1
   └─ eth5  Dormant  switched off                        00:1b:21:00:00:06
)");
}

TEST_F(TreeCommand, ShowsTeamsWithTheirMembersVlansAndAddresses) {
  EXPECT_EQ(tree("teams"), hostName() + R"(
├─ I350 Gigabit Network Connection  OK        PCI Express slot 3  driver igb 6.1.0  firmware 1.63, 0x800009fa
│  ├─ eth0  OK     link up  1 Gbit/s full duplex  00:1b:21:00:00:01  in bond0, Active
│  └─ eth1  OK     link up  1 Gbit/s full duplex  00:1b:21:00:00:02  in bond0, Backup
├─ I350 Gigabit Network Connection  Degraded  PCI Express slot 7  driver igb 6.1.0  firmware 1.63, 0x800009fa
│  ├─ eth2  OK     link up  1 Gbit/s full duplex  00:1b:21:00:00:03  in bond1, Active
│  ├─ eth3  Error  no link                        00:1b:21:00:00:04  in bond1, Failed
│  ├─ eth4  OK     link up  1 Gbit/s full duplex  00:1b:21:00:00:05  in bond2, Active
│  └─ eth5  OK     link up  1 Gbit/s full duplex  00:1b:21:00:00:06  in bond2, Active
├─ team bond0  OK        active-backup  Fully Redundant  1 Gbit/s  00:1b:21:00:00:01
│  ├─ member eth0  Active  OK     link up
│  ├─ member eth1  Backup  OK     link up
│  ├─ 192.168.1.10/24    Static  gateway 192.168.1.1
│  ├─ 2001:db8::10/64    Static
│  └─ VLAN 100  bond0.100  OK       link up
│     └─ 172.16.100.10/24   Static  gateway 172.16.100.1
├─ team bond1  Degraded  802.3ad        Redundancy Lost  1 Gbit/s  00:1b:21:00:00:03
│  ├─ member eth2  Active  OK     link up
│  ├─ member eth3  Failed  Error  no link
│  ├─ 2001:db8:1::11/64  DHCP    gateway fe80::1
│  ├─ VLAN 200  bond1.200  OK       link up
│  │  └─ 172.16.200.10/24   Static
│  └─ VLAN 201  bond1.201  Dormant  switched off
└─ team bond2  OK        balance-alb    Fully Redundant  2 Gbit/s  00:1b:21:00:00:05
   ├─ member eth4  Active  OK     link up
   ├─ member eth5  Active  OK     link up
   └─ 10.9.0.12/16       Static
)");
}

TEST_F(TreeCommand, ShowsASinglePort) {
  EXPECT_EQ(tree("one_port"), hostName() + R"(
└─ Gigabit Server Adapter  OK  PCI Express slot 3  driver e1000e 3.8.7  firmware 2.1-0
   └─ eth0  OK  link up  1 Gbit/s full duplex  00:1b:21:00:00:5e
      ├─ 192.168.1.10/24            Static  gateway 192.168.1.1
      ├─ 2001:db8::10/64            Static
      └─ fe80::21b:21ff:fe00:5e/64  Static
)");
}

TEST_F(TreeCommand, ShowsWhatIsPrintedOnTheBoard) {
  EXPECT_EQ(tree("on_board"), hostName() + R"(
├─ Ethernet Connection I217-LM      OK       Onboard LAN 1      driver e1000e  firmware 0.13-4
│  └─ eno1  OK       link up       1 Gbit/s full duplex  00:1b:21:00:01:01
└─ I210 Gigabit Network Connection  Dormant  Embedded device 2  driver igb     firmware 3.16
   └─ eno2  Dormant  switched off                        00:1b:21:00:01:02
)");
}

TEST_F(TreeCommand, ShowsAPortOfWhichNothingIsKnown) {
  EXPECT_EQ(tree("bare_port"), hostName() + R"(
└─ Ethernet Controller 1  Unknown
   └─ port  Unknown
)");
}

TEST_F(TreeCommand, SaysThatThereIsNothing) {
  EXPECT_EQ(tree("empty"), hostName() + ": no Ethernet adapters\n");
}

TEST_F(TreeCommand, DrawsWithAsciiWhereTheLocaleHasNoBoxes) {
  EXPECT_EQ(tree("one_port", {"LC_ALL=C"}), hostName() + R"(
`- Gigabit Server Adapter  OK  PCI Express slot 3  driver e1000e 3.8.7  firmware 2.1-0
   `- eth0  OK  link up  1 Gbit/s full duplex  00:1b:21:00:00:5e
      |- 192.168.1.10/24            Static  gateway 192.168.1.1
      |- 2001:db8::10/64            Static
      `- fe80::21b:21ff:fe00:5e/64  Static
)");
}

TEST_F(TreeCommand, IsPlainWhereNoTerminalIs) {
  EXPECT_THAT(tree("teams"), Not(HasSubstr("\x1b")));
}

TEST_F(TreeCommand, IsColouredByStatusOnATerminal) {
  const std::string command = ZEB_CIM " tree --source " + snapshotFile("teams") +
                              " --plugin " ZEB_REAL_PLUGIN " --schema " ZEB_SCHEMA_FILE;
  const Outcome outcome = run("/usr/bin/script", {"-qec", command, "/dev/null"}, environment());
  EXPECT_EQ(outcome.status, 0);
  for (const char* status : {"\x1b[32mOK\x1b[0m", "\x1b[33mDegraded\x1b[0m", "\x1b[31mError\x1b[0m"}) {
    EXPECT_THAT(outcome.out, HasSubstr(status));
  }
}

TEST_F(TreeCommand, NestsAsJson) {
  const Json document = json("two_cards");
  EXPECT_EQ(document["host"], hostName());
  ASSERT_EQ(document["cards"].size(), 2U);
  EXPECT_EQ(document["teams"], Json::array());
  const Json& card = document["cards"][0];
  EXPECT_EQ(card["location"], "PCI Express slot 3");
  EXPECT_EQ(card["manufacturer"], "Intel Corporation");
  EXPECT_EQ(card["driver"], Json::parse(R"({"name": "igb", "version": "6.1.0"})"));
  EXPECT_EQ(card["firmware"], "1.63, 0x800009fa");
  ASSERT_EQ(card["ports"].size(), 2U);
  const Json& port = card["ports"][0];
  EXPECT_EQ(port["name"], "eth0");
  EXPECT_EQ(port["status"], Json::parse(R"({"code": 2, "text": "OK"})"));
  EXPECT_EQ(port["speed"], 1'000'000'000);
  EXPECT_EQ(port["fullDuplex"], true);
  EXPECT_EQ(port["mtu"], 1500);
  EXPECT_EQ(port["team"], nullptr);
  EXPECT_EQ(port["addresses"][0], Json::parse(R"({"address": "192.168.1.10", "prefixLength": 24,
      "mask": "255.255.255.0", "origin": "Static", "gateway": "192.168.1.254"})"));
  ASSERT_EQ(port["vlans"].size(), 2U);
  EXPECT_EQ(port["vlans"][1]["id"], 5);
  EXPECT_EQ(port["vlans"][1]["name"], "eth0.100.5");
  EXPECT_EQ(card["ports"][1]["speed"], nullptr);
}

TEST_F(TreeCommand, JsonTellsRolesAndBothStatusesOfMembers) {
  const Json team = json("teams")["teams"][1];
  EXPECT_EQ(team["name"], "bond1");
  EXPECT_EQ(team["mode"], "802.3ad");
  EXPECT_EQ(team["redundancy"], "Redundancy Lost");
  EXPECT_EQ(team["members"], Json::parse(R"([
      {"port": "eth2", "role": "Active", "portStatus": {"code": 2, "text": "OK"},
       "memberStatus": {"code": 3, "text": "Degraded"}},
      {"port": "eth3", "role": "Failed", "portStatus": {"code": 6, "text": "Error"},
       "memberStatus": {"code": 3, "text": "Degraded"}}])"));
}

TEST_F(TreeCommand, WithNothingToShowJsonHasEmptyLists) {
  EXPECT_EQ(json("empty"), (Json{{"host", hostName()}, {"cards", Json::array()}, {"teams", Json::array()}}));
}

TEST_F(TreeCommand, WrongUsageShowsTheUsage) {
  const Outcome outcome = zebcim({"tree", "eth0"});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.out, "");
  EXPECT_THAT(outcome.err, HasSubstr("Usage: "));
}

}  // namespace
}  // namespace ZebManager
