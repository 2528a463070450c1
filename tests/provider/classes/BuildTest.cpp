#include <gmock/gmock.h>

#include <fstream>

#include "DataLibrary.h"
#include "InstanceText.h"
#include "MemoryHost.h"
#include "Plugin.h"
#include "recorded/SnapshotWriter.h"

// What is built of a host, in which order and with which numbers, and what is not.

namespace ZEB::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

class BuildTest : public ProviderTest {
 protected:
  /// A port that has a network address, and with it a LAN endpoint.
  ethernet::LinkFacts& addPort(const std::string& name) {
    auto& link = host.addPort(name);
    link.address = ethernet::parseHardwareAddress("00:1a:2b:3c:4d:5e");
    return link;
  }
  void play() {
    const auto file = folder / "host.json";
    std::ofstream(file) << ethernet::writeSnapshot(host.snapshot());
    serve(file.string());
  }
  Inventory objects() {
    play();
    Plugin plugin(broker);
    return objectsOf(plugin);
  }
  Inventory associations() {
    play();
    Plugin plugin(broker);
    return associationsOf(plugin);
  }
  /// The classes of everything that is built, in the order of building.
  std::vector<std::string> built() {
    play();
    log->clear();
    Plugin plugin(broker);
    std::vector<std::string> classes;
    for (const auto& line : log->lines()) {
      // What was made before the build began is no part of it.
      if (line.text == "_cmpiManagedInstanceFactory") classes.clear();
      const auto colon = line.source.find(':');
      if (line.text == "cxtor()" && colon != std::string::npos) {
        classes.push_back(line.source.substr(colon + 1));
      }
    }
    return classes;
  }

  MemoryHost host;
};

using Names = std::vector<std::string>;

const Names kAdapterClasses{
    "ZEB_EthernetPortController",
    "ZEB_EthernetPortControllerFirmwareIdentity",
    "ZEB_EthernetElementFirmwareIdentity",
    "ZEB_EthernetPortControllerSoftwareIdentity",
    "ZEB_EthernetElementSoftwareIdentity",
    "ZEB_EthernetControllerLocation",
    "ZEB_EthernetPortControllerPhysicalPackage",
    "ZEB_EthernetControllerPhysicalPackageEthernetControllerLocation",
    "ZEB_EthernetControllerPhysicalPackageEthernetController",
};
const Names kIPEndpointClasses{"ZEB_IPProtocolEndpoint", "ZEB_IPBindsToEthernetLANEndpoint",
                               "ZEB_EthIPHostedAccessPoint"};
const Names kGatewayClasses{"ZEB_EthernetRemoteServiceAccessPoint",
                            "ZEB_EthernetRemoteAccessAvailableToIPEndpoint",
                            "ZEB_EthernetRemoteServiceHostedAccessPoint"};

Names joined(std::initializer_list<Names> parts) {
  Names all;
  for (const Names& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

TEST_F(BuildTest, APortIsBuiltInOrder) {
  addPort("eth0").statistics.emplace();
  host.addAddress("eth0", "192.168.1.10", 24);
  host.addAddress("eth0", "2001:db8::10", 64);
  host.addGateway("eth0", "192.168.1.1");
  host.addVlan("eth0.5", "eth0");
  const Names lanEndpoint{"ZEB_EthernetLANEndpoint", "ZEB_EthernetLANHostedAccessPoint",
                          "ZEB_EthernetPortToLANEndpoint"};
  EXPECT_EQ(built(),
            joined({kAdapterClasses,
                    {"ZEB_EthernetPort", "ZEB_EthernetPortControllerEthernetPort"},
                    lanEndpoint,
                    kIPEndpointClasses,
                    kGatewayClasses,
                    kIPEndpointClasses,
                    lanEndpoint,  // the VLAN's
                    {"ZEB_EthernetDevice", "ZEB_EthernetStatistics", "ZEB_EthernetPortStatisticalData"},
                    {"ZEB_EthEventSettings", "ZEB_EthernetCollection", "ZEB_EthernetGroupHostedCollection",
                     "ZEB_EthernetMemberOfCollection"}}));
}

TEST_F(BuildTest, ATeamIsBuiltInOrderAndBeforeEveryPort) {
  addPort("eth0");
  addPort("eth1");
  host.addTeam("bond0");
  host.join("eth0", "bond0");
  host.addAddress("bond0", "192.168.1.10", 24);
  host.addAddress("bond0", "2001:db8::10", 64);
  host.addGateway("bond0", "fe80::1");
  host.addVlan("bond0.5", "bond0");
  host.addAddress("bond0.5", "10.0.0.5", 8);
  host.addGateway("bond0.5", "10.0.0.1");
  const Names lanEndpoint{"ZEB_EthernetLANEndpoint", "ZEB_EthernetLANHostedAccessPoint",
                          "ZEB_EthernetTeamToLANEndpoint"};
  const Names port{"ZEB_EthernetPort",
                   "ZEB_EthernetPortControllerEthernetPort",
                   "ZEB_EthernetLANEndpoint",
                   "ZEB_EthernetLANHostedAccessPoint",
                   "ZEB_EthernetPortToLANEndpoint",
                   "ZEB_EthernetDevice"};
  EXPECT_EQ(built(), joined({{"ZEB_EthernetTeam", "ZEB_HostedEthernetTeam"},
                             lanEndpoint,
                             kIPEndpointClasses,
                             kIPEndpointClasses,
                             kGatewayClasses,
                             lanEndpoint,
                             kIPEndpointClasses,
                             kGatewayClasses,
                             kAdapterClasses,
                             port,
                             kAdapterClasses,
                             port,
                             {"ZEB_EthEventSettings", "ZEB_EthernetCollection",
                              "ZEB_EthernetGroupHostedCollection", "ZEB_EthernetMemberOfCollection",
                              "ZEB_EthernetTeamMember", "ZEB_EthernetMemberOfCollection"}}));
}

TEST_F(BuildTest, APortThatIsDownKeepsItsIPv6EndpointsAlone) {
  setStatus(addPort("eth0"), operationalStatus::Dormant);
  host.addAddress("eth0", "192.168.1.10", 24);
  host.addAddress("eth0", "2001:db8::10", 64);
  host.addAddress("eth0", "2001:db8::11", 64);
  host.addGateway("eth0", "192.168.1.1");
  const auto found = objects();
  EXPECT_EQ(found.at("ZEB_IPProtocolEndpoint"), (Names{"IPProtocolEndpoint:1", "IPProtocolEndpoint:2"}));
  EXPECT_FALSE(found.contains("ZEB_EthernetRemoteServiceAccessPoint"));
}

TEST_F(BuildTest, APortWhoseStateIsNotKnownKeepsItsIPv6EndpointsAlone) {
  addPort("eth0").flags.reset();
  host.addAddress("eth0", "192.168.1.10", 24);
  host.addAddress("eth0", "2001:db8::10", 64);
  host.addGateway("eth0", "fe80::1");
  const auto found = associations();
  EXPECT_EQ(found.at("ZEB_IPBindsToEthernetLANEndpoint"), Names{"LANEndpoint:1 > IPProtocolEndpoint:1"});
  EXPECT_EQ(found.at("ZEB_EthernetRemoteAccessAvailableToIPEndpoint"),
            Names{"RemoteServiceAccessPoint:eth0 > IPProtocolEndpoint:1"});
}

TEST_F(BuildTest, APortWithoutACableKeepsItsIPv4Endpoints) {
  setStatus(addPort("eth0"), operationalStatus::Error);
  host.addAddress("eth0", "192.168.1.10", 24);
  EXPECT_EQ(objects().at("ZEB_IPProtocolEndpoint"), Names{"IPProtocolEndpoint:1"});
}

TEST_F(BuildTest, TwoAddressesOfTheGatewaysFamilyMeanTwoGateways) {
  addPort("eth0");
  host.addAddress("eth0", "192.168.1.10", 24);
  host.addAddress("eth0", "192.168.1.11", 24);
  host.addAddress("eth0", "2001:db8::10", 64);
  host.addGateway("eth0", "192.168.1.1");
  const auto found = associations();
  EXPECT_EQ(found.at("ZEB_EthernetRemoteAccessAvailableToIPEndpoint"),
            (Names{"RemoteServiceAccessPoint:eth0 > IPProtocolEndpoint:1",
                   "RemoteServiceAccessPoint:eth0 > IPProtocolEndpoint:2"}));
  EXPECT_EQ(found.at("ZEB_EthernetRemoteServiceHostedAccessPoint"),
            (Names{"System > RemoteServiceAccessPoint:eth0", "System > RemoteServiceAccessPoint:eth0"}));
  EXPECT_EQ(found.at("ZEB_EthIPHostedAccessPoint"),
            (Names{"System > IPProtocolEndpoint:1", "System > IPProtocolEndpoint:2",
                   "System > IPProtocolEndpoint:3"}));
}

TEST_F(BuildTest, EachAddressIsTheOneOfItsPlace) {
  addPort("eth0");
  host.addAddress("eth0", "192.168.1.10", 24);
  host.addAddress("eth0", "2001:db8::10", 64);
  host.addAddress("eth0", "192.168.1.11", 24);
  play();
  Plugin plugin(broker);
  const auto endpoints = plugin.instances("ZEB_IPProtocolEndpoint");
  ASSERT_EQ(endpoints.size(), 3U);
  EXPECT_EQ(textOf(endpoints[0].getProperty("IPv4Address")), "string \"192.168.1.10\"");
  EXPECT_EQ(textOf(endpoints[1].getProperty("IPv4Address")), "string \"192.168.1.11\"");
  EXPECT_EQ(textOf(endpoints[2].getProperty("IPv6Address")), "string \"2001:db8::10\"");
}

TEST_F(BuildTest, APortWithoutANetworkAddressHasNoEndpoints) {
  auto& port = host.addPort("eth0");
  port.statistics.emplace();
  host.addAddress("eth0", "192.168.1.10", 24);
  host.addGateway("eth0", "192.168.1.1");
  const auto found = objects();
  EXPECT_EQ(found.at("ZEB_EthernetPort"), Names{"Port:1"});
  EXPECT_EQ(found.at("ZEB_EthernetStatistics"), Names{"Statistics:1"});
  for (const char* none :
       {"ZEB_EthernetLANEndpoint", "ZEB_IPProtocolEndpoint", "ZEB_EthernetRemoteServiceAccessPoint"}) {
    EXPECT_FALSE(found.contains(none)) << none;
  }
  const auto ties = associations();
  EXPECT_EQ(ties.at("ZEB_EthernetPortControllerEthernetPort"), Names{"PortController:1 > Port:1"});
  EXPECT_EQ(ties.at("ZEB_EthernetDevice"), Names{"System > Port:1"});
  EXPECT_EQ(ties.at("ZEB_EthernetPortStatisticalData"), Names{"Port:1 > Statistics:1"});
}

TEST_F(BuildTest, EachNetworkAddressHasALANEndpointWithItsOwnCopies) {
  DataLibrary library;
  library.networkAddressRepeats = 2;
  addPort("eth0");
  host.addAddress("eth0", "192.168.1.10", 24);
  host.addGateway("eth0", "192.168.1.1");
  const auto found = associations();
  EXPECT_EQ(found.at("ZEB_EthernetPortToLANEndpoint"),
            (Names{"Port:1 > LANEndpoint:1", "Port:1 > LANEndpoint:2"}));
  EXPECT_EQ(found.at("ZEB_IPBindsToEthernetLANEndpoint"),
            (Names{"LANEndpoint:1 > IPProtocolEndpoint:1", "LANEndpoint:2 > IPProtocolEndpoint:2"}));
  EXPECT_EQ(found.at("ZEB_EthernetRemoteAccessAvailableToIPEndpoint"),
            (Names{"RemoteServiceAccessPoint:eth0 > IPProtocolEndpoint:1",
                   "RemoteServiceAccessPoint:eth0 > IPProtocolEndpoint:2"}));
}

TEST_F(BuildTest, APortWithoutCountersHasNoStatistics) {
  addPort("eth0");
  EXPECT_FALSE(objects().contains("ZEB_EthernetStatistics"));
  EXPECT_FALSE(associations().contains("ZEB_EthernetPortStatisticalData"));
}

TEST_F(BuildTest, WithoutAdaptersAndTeamsNothingIsBuilt) {
  EXPECT_THAT(built(), IsEmpty());
  EXPECT_TRUE(log->has(LogLevel::Error, "failed to _ethMRA::getFirstData()"));
  EXPECT_FALSE(log->mentions(LogLevel::Error, "_ethTeamMRA"));
}

TEST_F(BuildTest, WithATeamAloneThereIsACollection) {
  host.addTeam("bond0");
  const auto found = associations();
  EXPECT_EQ(found.at("ZEB_EthernetMemberOfCollection"), Names{"Team:1 > Collection:1"});
  EXPECT_EQ(found.at("ZEB_EthernetGroupHostedCollection"), Names{"System > Collection:1"});
}

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

TEST_F(BuildTest, TheSecondBuildStoresNoKeyAnew) {
  addPort("eth0");
  objects();
  EXPECT_TRUE(
      log->has(LogLevel::Info, "store key for //" + hostName() +
                                   "/root/jxv:ZEB_EthernetPort.CreationClassName=\"ZEB_EthernetPort\","
                                   "SystemCreationClassName=\"ZEB_ComputerSystem\",SystemName=\"" +
                                   hostName() + "\",DeviceID=\"JXV:ZEB_EthernetPort:1\"..."));
  log->clear();
  objects();
  EXPECT_FALSE(log->mentions(LogLevel::Info, "store key for "));
}

TEST_F(BuildTest, ATeamListThatFailsHalfWayKeepsWhatWasBuilt) {
  for (const char* team : {"bond0", "bond1", "bond2"}) host.addTeam(team);
  addPort("eth0");
  DataLibrary library;
  library.teamsUntilFailure = 1;
  const auto found = objects();
  EXPECT_EQ(found.at("ZEB_EthernetTeam"), (Names{"Team:1", "Team:2"}));
  EXPECT_EQ(found.at("ZEB_EthernetPort"), Names{"Port:1"});
  EXPECT_TRUE(log->has(LogLevel::Error, "failed to _ethTeamMRA::getNextData()"));
}

TEST_F(BuildTest, AnAdapterListThatFailsHalfWayKeepsWhatWasBuilt) {
  for (const char* port : {"eth0", "eth1", "eth2"}) addPort(port);
  DataLibrary library;
  library.adaptersUntilFailure = 1;
  const auto found = objects();
  EXPECT_EQ(found.at("ZEB_EthernetPort"), (Names{"Port:1", "Port:2"}));
  EXPECT_TRUE(found.contains("ZEB_EthernetCollection"));
  EXPECT_TRUE(log->has(LogLevel::Error, "failed to _ethMRA::getNextData()"));
}

TEST_F(BuildTest, AListThatEndsIsNoFailure) {
  addPort("eth0");
  host.addTeam("bond0");
  objects();
  EXPECT_FALSE(log->mentions(LogLevel::Error, "failed to "));
}

}  // namespace
}  // namespace ZEB::test
