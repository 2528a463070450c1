#include "ClassTest.h"
#include "classes/port/ZEB_EthernetRemoteServiceAccessPoint.h"

namespace ZEB::test {
namespace {

class GatewayTest : public ClassTest {
 protected:
  ZEB_EthernetRemoteServiceAccessPoint make(const InterfaceRecord& record) {
    return {recorded.logger, nameSpace, record};
  }
  Table read(const InterfaceRecord& record) { return propertiesOf(make(record).makeInstance()); }
};

Table gateway(const std::string& device, const std::string& format, const std::string& info) {
  const std::string name = "string \"RemoteServiceAccessPoint: Gateway for " + device + "\"";
  return {
      {"CreationClassName", "string \"ZEB_EthernetRemoteServiceAccessPoint\""},
      {"SystemName", "string \"" + hostName() + "\""},
      {"SystemCreationClassName", "string \"ZEB_ComputerSystem\""},
      {"ElementName", name},
      {"Name", name},
      {"InfoFormat", format},
      {"AccessInfo", info},
      {"AccessContext", "uint16 2"},
  };
}

Table ipv4GatewayOf(const std::string& device) {
  return gateway(device, "uint16 3", "string \"192.168.1.1 Netmask: 255.255.255.0\"");
}

TEST_F(GatewayTest, ShowsAnIPv4RouteOfEveryKindOfInterface) {
  EXPECT_EQ(read(portOf(everyPortFacts())), ipv4GatewayOf("eth0"));
  EXPECT_EQ(read(teamOf(everyTeamFacts())), ipv4GatewayOf("bond0"));
  EXPECT_EQ(read(vlanOf(everyVlanFacts())), ipv4GatewayOf("eth0.100"));
}

TEST_F(GatewayTest, ShowsAnIPv6Route) {
  auto facts = everyTeamFacts();
  facts.gateway = route_t{"ipv6", "fe80::1", "", 64};
  EXPECT_EQ(read(teamOf(facts)), gateway("bond0", "uint16 4", "string \"fe80::1/64\""));
}

TEST_F(GatewayTest, ShowsARouteOfAnyOtherFamilyInTheIPv6Form) {
  for (const char* family : {"", "IPv4", "appletalk"}) {
    auto facts = everyPortFacts();
    facts.gateway = route_t{family, "there", "mask", 7};
    EXPECT_EQ(read(portOf(facts)), gateway("eth0", "uint16 4", "string \"there/7\"")) << family;
  }
}

TEST_F(GatewayTest, WithoutARouteSaysOnlyWhatItIs) {
  auto facts = everyPortFacts();
  facts.gateway.reset();
  EXPECT_EQ(read(portOf(facts)), edited(ipv4GatewayOf("eth0"), {{"InfoFormat", ""}, {"AccessInfo", ""}}));
}

TEST_F(GatewayTest, OfAnInterfaceWithoutANameIsOfAnUnknownPort) {
  auto port = everyPortFacts();
  port.link.name.clear();
  EXPECT_EQ(read(portOf(port)), ipv4GatewayOf("unknown port"));
  auto team = everyTeamFacts();
  team.link.name.clear();
  EXPECT_EQ(read(teamOf(team)), ipv4GatewayOf("unknown port"));
  auto vlan = everyVlanFacts();
  vlan.link.name.clear();
  EXPECT_EQ(read(vlanOf(vlan)), ipv4GatewayOf("unknown port"));
}

TEST_F(GatewayTest, IsKeyedByItsName) {
  EXPECT_EQ(keysOf(make(teamOf(everyTeamFacts())).makeObjectPath()),
            (Table{{"CreationClassName", "string \"ZEB_EthernetRemoteServiceAccessPoint\""},
                   {"SystemCreationClassName", "string \"ZEB_ComputerSystem\""},
                   {"SystemName", "string \"" + hostName() + "\""},
                   {"Name", "string \"RemoteServiceAccessPoint: Gateway for bond0\""}}));
}

TEST_F(GatewayTest, SaysThatItWasManagedAndDoesNothing) {
  auto point = make(EthernetPort());
  recorded.sink->clear();
  point.manageDynamic(false);
  EXPECT_EQ(recorded.sink->texts(), (std::vector<std::string>{"manageDynamic()"}));
  point.manageDynamic(true);
  EXPECT_EQ(recorded.sink->texts(),
            (std::vector<std::string>{"manageDynamic()", "manageDynamic()", "indications enabled"}));
}

}  // namespace
}  // namespace ZEB::test
