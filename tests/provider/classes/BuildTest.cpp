#include <gmock/gmock.h>

#include "BuildFixture.h"
#include "DataLibrary.h"
#include "InstanceText.h"

// What is built of a host, in which order, and what is not.

namespace ZEB::test {
namespace {

using testing::IsEmpty;

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

}  // namespace
}  // namespace ZEB::test
