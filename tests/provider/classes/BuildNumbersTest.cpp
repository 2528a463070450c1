#include <gmock/gmock.h>

#include "BuildFixture.h"
#include "InstanceText.h"

// Which numbers what is built has, and what it is tied to.

namespace ZEB::test {
namespace {

using testing::ElementsAre;

TEST_F(BuildTest, NumbersGoOnFromTeamsToPortsAndTheirVlans) {
  addPort("eth0");
  host.addAddress("eth0", "10.0.0.1", 8);
  host.addVlan("eth0.5", "eth0");
  host.addAddress("eth0.5", "10.5.0.1", 16);
  addPort("eth1");
  host.addAddress("eth1", "10.0.0.2", 8);
  addPort("eth2");
  for (const char* team : {"bond0", "bond1"}) host.addTeam(team);
  host.addPort("eth3");
  host.addPort("eth4");
  host.join("eth3", "bond0");
  host.join("eth4", "bond1");
  for (const char* team : {"bond0", "bond1"}) {
    host.addAddress(team, "10.1.0.1", 8);
    host.addAddress(team, "2001:db8::1", 64);
  }
  play();
  Plugin plugin(broker);
  EXPECT_EQ(objectsOf(plugin).at("ZEB_EthernetTeam"), (Names{"Team:1", "Team:2"}));
  const auto found = associationsOf(plugin);
  EXPECT_EQ(found.at("ZEB_IPBindsToEthernetLANEndpoint"),
            (Names{"LANEndpoint:1 > IPProtocolEndpoint:1", "LANEndpoint:1 > IPProtocolEndpoint:2",
                   "LANEndpoint:2 > IPProtocolEndpoint:3", "LANEndpoint:2 > IPProtocolEndpoint:4",
                   "LANEndpoint:3 > IPProtocolEndpoint:5", "LANEndpoint:4 > IPProtocolEndpoint:6",
                   "LANEndpoint:5 > IPProtocolEndpoint:7"}));
  EXPECT_EQ(found.at("ZEB_EthernetTeamToLANEndpoint"),
            (Names{"Team:1 > LANEndpoint:1", "Team:2 > LANEndpoint:2"}));
  EXPECT_EQ(found.at("ZEB_EthernetPortToLANEndpoint"),
            (Names{"Port:1 > LANEndpoint:3", "Port:1 > LANEndpoint:4", "Port:2 > LANEndpoint:5",
                   "Port:3 > LANEndpoint:6"}));
  // Of each team the IPv4 endpoint comes first.
  const auto endpoints = plugin.instances("ZEB_IPProtocolEndpoint");
  for (const std::size_t ipv4 : {0U, 2U}) {
    EXPECT_TRUE(endpoints.at(ipv4).findProperty("IPv4Address"));
    EXPECT_TRUE(endpoints.at(ipv4 + 1).findProperty("IPv6Address"));
  }
}

TEST_F(BuildTest, PortsAreNumberedThroughAndAdaptersByThemselves) {
  host.addCardPort("eth0", 1, 0);
  host.addCardPort("eth1", 1, 1);
  host.addCardPort("eth2", 4, 0);
  play();
  Plugin plugin(broker);
  std::vector<std::string> descriptions;
  for (const auto& port : plugin.instances("ZEB_EthernetPort")) {
    descriptions.push_back(port.getProperty("Description").asString());
  }
  EXPECT_THAT(descriptions, ElementsAre("Ethernet port 1 on ethernet controller 1",
                                        "Ethernet port 2 on ethernet controller 1",
                                        "Ethernet port 1 on ethernet controller 2"));
  EXPECT_EQ(objectsOf(plugin).at("ZEB_EthernetPort"), (Names{"Port:1", "Port:2", "Port:3"}));
}

TEST_F(BuildTest, ADegradedTeamKeepsItsIPv6EndpointsAlone) {
  host.addTeam("bond0");
  for (const char* port : {"eth0", "eth1"}) {
    host.addPort(port);
    host.join(port, "bond0");
  }
  setStatus(host.link("eth1"), operationalStatus::Error);
  host.addAddress("bond0", "192.168.1.10", 24);
  host.addAddress("bond0", "192.168.1.11", 24);
  host.addAddress("bond0", "2001:db8::10", 64);
  addPort("eth2");
  host.addAddress("eth2", "10.0.0.1", 8);
  EXPECT_EQ(associations().at("ZEB_IPBindsToEthernetLANEndpoint"),
            (Names{"LANEndpoint:1 > IPProtocolEndpoint:1", "LANEndpoint:2 > IPProtocolEndpoint:2"}));
}

TEST_F(BuildTest, ATeamOrAVlanWhoseStatusIsNotKnownKeepsItsIPv6EndpointsAlone) {
  host.addTeam("bond0");
  host.addAddress("bond0", "192.168.1.10", 24);
  host.addAddress("bond0", "2001:db8::10", 64);
  host.addVlan("bond0.5", "bond0");
  host.addAddress("bond0.5", "192.168.5.10", 24);
  host.addAddress("bond0.5", "2001:db8:5::10", 64);
  for (const char* name : {"bond0", "bond0.5"}) host.link(name).flags.reset();
  EXPECT_EQ(associations().at("ZEB_IPBindsToEthernetLANEndpoint"),
            (Names{"LANEndpoint:1 > IPProtocolEndpoint:1", "LANEndpoint:2 > IPProtocolEndpoint:2"}));
}

TEST_F(BuildTest, ATeamOfThreeAddressesHasThreeGatewaysOfOneKey) {
  host.addTeam("bond0");
  host.addPort("eth0");
  host.join("eth0", "bond0");
  for (const char* address : {"10.0.0.1", "10.0.0.2", "10.0.0.3"}) host.addAddress("bond0", address, 8);
  host.addGateway("bond0", "10.0.0.254");
  play();
  Plugin plugin(broker);
  const auto gateways = plugin.names("ZEB_EthernetRemoteServiceAccessPoint");
  ASSERT_EQ(gateways.size(), 3U);
  EXPECT_EQ(gateways[0], gateways[1]);
  EXPECT_EQ(gateways[1], gateways[2]);
  EXPECT_EQ(associationsOf(plugin).at("ZEB_EthernetRemoteAccessAvailableToIPEndpoint"),
            (Names{"RemoteServiceAccessPoint:bond0 > IPProtocolEndpoint:1",
                   "RemoteServiceAccessPoint:bond0 > IPProtocolEndpoint:2",
                   "RemoteServiceAccessPoint:bond0 > IPProtocolEndpoint:3"}));
}

TEST_F(BuildTest, AVlanIsTiedToTheTeamOrThePortThatCarriesIt) {
  addPort("eth0");
  host.addVlan("eth0.7", "eth0");
  host.addTeam("bond0");
  host.addVlan("bond0.5", "bond0");
  const auto found = associations();
  EXPECT_EQ(found.at("ZEB_EthernetTeamToLANEndpoint"),
            (Names{"Team:1 > LANEndpoint:1", "Team:1 > LANEndpoint:2"}));
  EXPECT_EQ(found.at("ZEB_EthernetPortToLANEndpoint"),
            (Names{"Port:1 > LANEndpoint:3", "Port:1 > LANEndpoint:4"}));
  EXPECT_EQ(found.at("ZEB_EthernetLANHostedAccessPoint"),
            (Names{"System > LANEndpoint:1", "System > LANEndpoint:2", "System > LANEndpoint:3",
                   "System > LANEndpoint:4"}));
}

TEST_F(BuildTest, AMemberOfTheSecondTeamIsNoMemberOfTheCollection) {
  addPort("eth0");
  addPort("eth1");
  host.addTeam("bond0");
  host.addTeam("bond1");
  host.join("eth1", "bond1");
  const auto found = associations();
  EXPECT_EQ(found.at("ZEB_EthernetTeamMember"), Names{"Team:2 > Port:2"});
  EXPECT_EQ(found.at("ZEB_EthernetMemberOfCollection"),
            (Names{"Team:1 > Collection:1", "Team:2 > Collection:1", "Port:1 > Collection:1"}));
  EXPECT_FALSE(log->mentions(LogLevel::Info, "ZEB_EthernetPort:2\"..."));
  EXPECT_TRUE(log->mentions(LogLevel::Info, "ZEB_EthernetPort:1\"..."));
}

TEST_F(BuildTest, ANameInTwoTeamsIsAMemberOfTheFirst) {
  const auto firstTeam = host.addTeam("bond0").index;
  host.addTeam("bond1");
  addPort("eth0");
  host.join("eth0", "bond1");
  auto& twin = addPort("eth0");
  twin.masterIndex = firstTeam;
  twin.bondMember = ethernet::BondMemberFacts{0, 0, {}};
  EXPECT_EQ(associations().at("ZEB_EthernetTeamMember"), (Names{"Team:1 > Port:1", "Team:1 > Port:2"}));
}

TEST_F(BuildTest, AMemberThatIsNoPortIsCountedAndTiedToNothing) {
  host.addTeam("bond0");
  addPort("eth0");
  host.join("eth0", "bond0");
  auto& tap = addPort("tap0");
  tap.kind = "tun";
  tap.parentBus.reset();
  tap.parentDevice.reset();
  host.join("tap0", "bond0");
  play();
  Plugin plugin(broker);
  EXPECT_EQ(textOf(plugin.instances("ZEB_EthernetTeam").at(0).getProperty("MaxNumberSupported")), "uint32 2");
  EXPECT_EQ(associationsOf(plugin).at("ZEB_EthernetTeamMember"), Names{"Team:1 > Port:1"});
}

}  // namespace
}  // namespace ZEB::test
