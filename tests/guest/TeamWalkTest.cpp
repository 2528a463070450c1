// Bonds with VLANs and addresses, walked from the system to the gateways and back: at every object, exactly
// its neighbours.
#include <gmock/gmock.h>

#include <algorithm>

#include "GuestFixture.h"
#include "GuestServer.h"
#include "ServedModel.h"

namespace ZEB::guest {
namespace {

using nlohmann::json;
using testing::IsEmpty;
using testing::UnorderedElementsAreArray;

using Paths = std::vector<std::string>;

/// A bond of slot3a and slot3b with two VLANs, and a VLAN on lom1: addresses of both families on all, an IPv4
/// gateway through the bond and an IPv6 gateway through one of its VLANs.
constexpr std::string_view kSetUp = R"(
set -e
ip link set slot3a master bond1; ip link set slot3b master bond1
ip link set bond1 up; ip link set lom1 up
ip link add link bond1 name bond1.20 type vlan id 20; ip link add link bond1 name bond1.30 type vlan id 30
ip link add link lom1 name lom1.10 type vlan id 10
ip link set bond1.20 up; ip link set bond1.30 up; ip link set lom1.10 up
ip address add 192.0.2.1/24 dev bond1; ip address add 2001:db8::1/64 dev bond1 nodad
ip address add 198.51.100.1/25 dev bond1.20; ip address add 2001:db8:20::1/64 dev bond1.20 nodad
ip address add 203.0.113.1/24 dev lom1.10; ip address add 2001:db8:10::1/64 dev lom1.10 nodad
ip address add 198.18.0.1/15 dev lom1
for link in bond1 bond1.20 bond1.30 lom1.10 slot3a slot3b; do
  until [ $(cat /sys/class/net/$link/operstate) = up ]; do sleep 0.05; done
done
while grep -qvx up /sys/class/net/slot3?/bonding_slave/mii_status; do sleep 0.05; done
ip route add default via 192.0.2.254 dev bond1
ip -6 route add default via 2001:db8:20::fe dev bond1.20
)";

class TeamWalkTest : public GuestFixture, public testing::WithParamInterface<std::string> {
 protected:
  void makeBond() {
    guest().must("ip link add bond1 type bond miimon 100 mode " + GetParam());
    if (GetParam() == "802.3ad") {
      guest().must(R"(
        ip link set bond1 type bond lacp_rate fast
        ip -n partner link add bond1 type bond mode 802.3ad miimon 100 lacp_rate fast
        for port in slot3a slot3b; do
          ip -n partner link set $port-peer down
          ip -n partner link set $port-peer master bond1
        done
        ip -n partner link set bond1 up)");
    }
    guest().must(kSetUp, std::chrono::seconds(60));
    // Link-local addresses are there to stay once they are no longer tentative.
    ASSERT_TRUE(guest().await("! ip -6 address show tentative | grep -q inet6"));
  }

  /// What ip says of an interface's addresses, in its order.
  static Paths addressesOf(const std::string& interface) {
    Paths found;
    const json links = jsonOf("ip -j address show dev " + interface);
    for (const json& address : links.at(0).at("addr_info")) {
      found.push_back(address.at("local"));
    }
    return found;
  }

  /// The neighbours that every object has to have, worked out from what the kernel says.
  struct Inventory {
    std::map<std::string, Paths> neighbours;
    std::size_t ipEndpoints = 0;

    void tie(const std::string& one, const std::string& other) {
      neighbours[one].push_back(other);
      neighbours[other].push_back(one);
    }
  };

  static Inventory expected(ServedModel& model, const Paths& members);
  /// An interface's LAN endpoint on what carries it, its IP endpoints, and the gateway of `gatewayFamily`.
  static void expectEndpoint(Inventory& inventory, ServedModel& model, const std::string& carrier,
                             const std::string& interface, const std::string& gatewayProperty = {});
  static std::string system(ServedModel& model) {
    return model.links("ZEB_EthernetDevice").at(0)["GroupComponent"];
  }
  /// Asks at every object of the inventory but the system and the collection, which have more neighbours.
  static void expectWalk(ServedModel& model, const Inventory& inventory);
};

void TeamWalkTest::expectEndpoint(Inventory& inventory, ServedModel& model, const std::string& carrier,
                                  const std::string& interface, const std::string& gatewayProperty) {
  const std::string endpoint = model.endpoint(interface).path;
  inventory.tie(carrier, endpoint);
  inventory.tie(system(model), endpoint);
  for (const std::string& address : addressesOf(interface)) {
    const std::string property = address.find(':') == std::string::npos ? "IPv4Address" : "IPv6Address";
    std::string ip;
    for (const ServedInstance& served : model.all("ZEB_IPProtocolEndpoint")) {
      if (served[property] == address && served["Description"] == interface) ip = served.path;
    }
    ASSERT_NE(ip, "") << interface << " has " << address;
    ++inventory.ipEndpoints;
    inventory.tie(endpoint, ip);
    inventory.tie(system(model), ip);
    if (property != gatewayProperty) continue;
    // A gateway for every address of its family, all with one path.
    const auto& gateways = model.all("ZEB_EthernetRemoteServiceAccessPoint");
    const json name = "RemoteServiceAccessPoint: Gateway for " + interface;
    const auto gateway = std::ranges::find(gateways, name, [](const auto& served) { return served["Name"]; });
    ASSERT_NE(gateway, gateways.end()) << interface;
    inventory.tie(ip, gateway->path);
    inventory.tie(system(model), gateway->path);
  }
}

TeamWalkTest::Inventory TeamWalkTest::expected(ServedModel& model, const Paths& members) {
  Inventory inventory;
  const std::string collection = model.all("ZEB_EthernetCollection").at(0).path;
  const std::string team = model.all("ZEB_EthernetTeam").at(0).path;
  inventory.tie(system(model), team);
  inventory.tie(collection, team);
  for (const std::string card : {"slot3a", "slot3b", "lom1"}) {
    const ServedInstance& port = model.port(card);
    const bool isMember = std::ranges::count(members, card) != 0;
    inventory.tie(port.path, isMember ? team : collection);
    inventory.tie(system(model), port.path);
    inventory.tie(port.path, model.controller(port).path);
    for (const ServedInstance& link : model.links("ZEB_EthernetPortStatisticalData")) {
      if (link["ManagedElement"] == port.path) inventory.tie(port.path, link["Stats"]);
    }
    expectEndpoint(inventory, model, port.path, card);
  }
  expectEndpoint(inventory, model, model.port("lom1").path, "lom1.10");
  expectEndpoint(inventory, model, team, "bond1", "IPv4Address");
  expectEndpoint(inventory, model, team, "bond1.20", "IPv6Address");
  expectEndpoint(inventory, model, team, "bond1.30");
  return inventory;
}

void TeamWalkTest::expectWalk(ServedModel& model, const Inventory& inventory) {
  EXPECT_EQ(model.all("ZEB_IPProtocolEndpoint").size(), inventory.ipEndpoints);
  Paths asked;
  for (const auto& [path, ends] : inventory.neighbours) {
    const bool hasMore = path == system(model) || path == model.all("ZEB_EthernetCollection").at(0).path ||
                         path.find("ZEB_EthernetPortController") != std::string::npos ||
                         path.find("ZEB_EthernetStatistics") != std::string::npos;
    if (!hasMore) asked.push_back(path);
  }
  // Started here, the plug-in sees what there is now.
  const auto found = GuestServer(guest()).associatorNames(asked);
  for (const std::string& path : asked) {
    ASSERT_TRUE(found.contains(path)) << path;
    EXPECT_THAT(found.at(path), UnorderedElementsAreArray(inventory.neighbours.at(path))) << path;
  }
}

TEST_P(TeamWalkTest, FromTheSystemToTheGatewaysAndBack) {
  makeBond();
  {
    ServedModel model(guest());
    expectWalk(model, expected(model, {"slot3a", "slot3b"}));
    // From the system to its one team, and no other way.
    EXPECT_EQ(
        guest().must(ZEBCIM " associators --names --result-class ZEB_EthernetTeam '" + system(model) + "'"),
        model.all("ZEB_EthernetTeam").at(0).path + "\n");
  }
  guest().must("ip link set slot3b nomaster");
  {
    ServedModel model(guest());
    expectWalk(model, expected(model, {"slot3a"}));
  }
  guest().must("ip link set slot3b master bond1");
  ASSERT_TRUE(guest().await("grep -qx up /sys/class/net/slot3b/bonding_slave/mii_status"));
  {
    ServedModel model(guest());
    const Inventory whole = expected(model, {"slot3a", "slot3b"});
    EXPECT_EQ(model.links("ZEB_EthernetTeamMember").size(), 2U);
    EXPECT_EQ(model.all("ZEB_IPProtocolEndpoint").size(), whole.ipEndpoints);
  }
  guest().must("ip link del bond1");
  ServedModel model(guest());
  EXPECT_THAT(model.all("ZEB_EthernetTeam"), IsEmpty());
  EXPECT_THAT(model.links("ZEB_EthernetTeamMember"), IsEmpty());
  EXPECT_THAT(model.links("ZEB_EthernetTeamToLANEndpoint"), IsEmpty());
  EXPECT_THAT(model.links("ZEB_HostedEthernetTeam"), IsEmpty());
  EXPECT_THAT(model.all("ZEB_EthernetRemoteServiceAccessPoint"), IsEmpty());
  EXPECT_EQ(model.links("ZEB_EthernetMemberOfCollection").size(), model.all("ZEB_EthernetPort").size());
}

INSTANTIATE_TEST_SUITE_P(Modes, TeamWalkTest, testing::Values("active-backup", "802.3ad", "balance-alb"),
                         [](const auto& row) {
                           std::string name = row.param;
                           std::ranges::replace_if(
                               name, [](char c) { return !std::isalnum(c); }, '_');
                           return name;
                         });

}  // namespace
}  // namespace ZEB::guest
