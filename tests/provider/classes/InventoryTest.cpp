#include <gmock/gmock.h>

#include <algorithm>
#include <set>

#include "ClassTest.h"
#include "Plugin.h"
#include "common/ZEBUtil.h"

// Everything that recorded hosts are served as, and every way from one thing to another.

namespace ZEB::test {
namespace {

using CmpiCpp::CmpiInstance;
using CmpiCpp::CmpiObjectPath;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

struct Golden {
  const char* name;
  const char* snapshot;
  const char* objects;
  const char* associations;

  friend void PrintTo(const Golden& golden, std::ostream* out) { *out << golden.name; }
};

/// A card of two ports in slot 3 and one of four in slot 7. eth1 has no cable, so its VLAN is in error; eth5
/// is down.
const Golden kTwoCards{"TwoCards", "two_cards.json",
                       R"(
ZEB_EthernetPortController: PortController:1, PortController:2
ZEB_EthernetPortControllerFirmwareIdentity: PortControllerFirmwareIdentity:1, PortControllerFirmwareIdentity:2
ZEB_EthernetPortControllerSoftwareIdentity: PortControllerSoftwareIdentity:1, PortControllerSoftwareIdentity:2
ZEB_EthernetControllerLocation: ControllerLocation:0503, ControllerLocation:0507
ZEB_EthernetPortControllerPhysicalPackage: PortControllerPhysicalPackage:1, PortControllerPhysicalPackage:2
ZEB_EthernetPort: Port:1, Port:2, Port:3, Port:4, Port:5, Port:6
ZEB_EthernetLANEndpoint: LANEndpoint:1, LANEndpoint:2, LANEndpoint:3, LANEndpoint:4, LANEndpoint:5, LANEndpoint:6, LANEndpoint:7, LANEndpoint:8, LANEndpoint:9
ZEB_IPProtocolEndpoint: IPProtocolEndpoint:1, IPProtocolEndpoint:2, IPProtocolEndpoint:3, IPProtocolEndpoint:4, IPProtocolEndpoint:5, IPProtocolEndpoint:6, IPProtocolEndpoint:7, IPProtocolEndpoint:8, IPProtocolEndpoint:9
ZEB_EthernetRemoteServiceAccessPoint: RemoteServiceAccessPoint:eth0, RemoteServiceAccessPoint:eth0.100, RemoteServiceAccessPoint:eth2, RemoteServiceAccessPoint:eth2, RemoteServiceAccessPoint:eth4
ZEB_EthernetStatistics: Statistics:1, Statistics:2, Statistics:3, Statistics:4, Statistics:5, Statistics:6
ZEB_EthEventSettings: EthEventSettings:0
ZEB_EthernetCollection: Collection:1
)",
                       R"(
ZEB_EthernetElementFirmwareIdentity: PortController:1 > PortControllerFirmwareIdentity:1, PortController:2 > PortControllerFirmwareIdentity:2
ZEB_EthernetElementSoftwareIdentity: PortController:1 > PortControllerSoftwareIdentity:1, PortController:2 > PortControllerSoftwareIdentity:2
ZEB_EthernetControllerPhysicalPackageEthernetControllerLocation: PortControllerPhysicalPackage:1 > ControllerLocation:0503, PortControllerPhysicalPackage:2 > ControllerLocation:0507
ZEB_EthernetControllerPhysicalPackageEthernetController: PortControllerPhysicalPackage:1 > PortController:1, PortControllerPhysicalPackage:2 > PortController:2
ZEB_EthernetPortControllerEthernetPort: PortController:1 > Port:1, PortController:1 > Port:2, PortController:2 > Port:3, PortController:2 > Port:4, PortController:2 > Port:5, PortController:2 > Port:6
ZEB_EthernetDevice: System > Port:1, System > Port:2, System > Port:3, System > Port:4, System > Port:5, System > Port:6
ZEB_EthernetPortStatisticalData: Port:1 > Statistics:1, Port:2 > Statistics:2, Port:3 > Statistics:3, Port:4 > Statistics:4, Port:5 > Statistics:5, Port:6 > Statistics:6
ZEB_EthernetLANHostedAccessPoint: System > LANEndpoint:1, System > LANEndpoint:2, System > LANEndpoint:3, System > LANEndpoint:4, System > LANEndpoint:5, System > LANEndpoint:6, System > LANEndpoint:7, System > LANEndpoint:8, System > LANEndpoint:9
ZEB_EthernetPortToLANEndpoint: Port:1 > LANEndpoint:1, Port:1 > LANEndpoint:2, Port:1 > LANEndpoint:3, Port:2 > LANEndpoint:4, Port:2 > LANEndpoint:5, Port:3 > LANEndpoint:6, Port:4 > LANEndpoint:7, Port:5 > LANEndpoint:8, Port:6 > LANEndpoint:9
ZEB_EthIPHostedAccessPoint: System > IPProtocolEndpoint:1, System > IPProtocolEndpoint:2, System > IPProtocolEndpoint:3, System > IPProtocolEndpoint:4, System > IPProtocolEndpoint:5, System > IPProtocolEndpoint:6, System > IPProtocolEndpoint:7, System > IPProtocolEndpoint:8, System > IPProtocolEndpoint:9
ZEB_IPBindsToEthernetLANEndpoint: LANEndpoint:1 > IPProtocolEndpoint:1, LANEndpoint:1 > IPProtocolEndpoint:2, LANEndpoint:1 > IPProtocolEndpoint:3, LANEndpoint:2 > IPProtocolEndpoint:4, LANEndpoint:3 > IPProtocolEndpoint:5, LANEndpoint:6 > IPProtocolEndpoint:6, LANEndpoint:6 > IPProtocolEndpoint:7, LANEndpoint:7 > IPProtocolEndpoint:8, LANEndpoint:8 > IPProtocolEndpoint:9
ZEB_EthernetRemoteAccessAvailableToIPEndpoint: RemoteServiceAccessPoint:eth0 > IPProtocolEndpoint:1, RemoteServiceAccessPoint:eth0.100 > IPProtocolEndpoint:4, RemoteServiceAccessPoint:eth2 > IPProtocolEndpoint:6, RemoteServiceAccessPoint:eth2 > IPProtocolEndpoint:7, RemoteServiceAccessPoint:eth4 > IPProtocolEndpoint:9
ZEB_EthernetRemoteServiceHostedAccessPoint: System > RemoteServiceAccessPoint:eth0, System > RemoteServiceAccessPoint:eth0.100, System > RemoteServiceAccessPoint:eth2, System > RemoteServiceAccessPoint:eth2, System > RemoteServiceAccessPoint:eth4
ZEB_EthernetGroupHostedCollection: System > Collection:1
ZEB_EthernetMemberOfCollection: Port:1 > Collection:1, Port:2 > Collection:1, Port:3 > Collection:1, Port:4 > Collection:1, Port:5 > Collection:1, Port:6 > Collection:1
)"};

/// The same cards in three teams; bond1 is degraded, and its VLAN 201 is down.
const Golden kTeams{"Teams", "teams.json",
                    R"(
ZEB_EthernetTeam: Team:1, Team:2, Team:3
ZEB_EthernetPortController: PortController:1, PortController:2
ZEB_EthernetPortControllerFirmwareIdentity: PortControllerFirmwareIdentity:1, PortControllerFirmwareIdentity:2
ZEB_EthernetPortControllerSoftwareIdentity: PortControllerSoftwareIdentity:1, PortControllerSoftwareIdentity:2
ZEB_EthernetControllerLocation: ControllerLocation:0503, ControllerLocation:0507
ZEB_EthernetPortControllerPhysicalPackage: PortControllerPhysicalPackage:1, PortControllerPhysicalPackage:2
ZEB_EthernetPort: Port:1, Port:2, Port:3, Port:4, Port:5, Port:6
ZEB_EthernetLANEndpoint: LANEndpoint:1, LANEndpoint:2, LANEndpoint:3, LANEndpoint:4, LANEndpoint:5, LANEndpoint:6, LANEndpoint:7, LANEndpoint:8, LANEndpoint:9, LANEndpoint:10, LANEndpoint:11, LANEndpoint:12
ZEB_IPProtocolEndpoint: IPProtocolEndpoint:1, IPProtocolEndpoint:2, IPProtocolEndpoint:3, IPProtocolEndpoint:4, IPProtocolEndpoint:5, IPProtocolEndpoint:6
ZEB_EthernetRemoteServiceAccessPoint: RemoteServiceAccessPoint:bond0, RemoteServiceAccessPoint:bond0.100, RemoteServiceAccessPoint:bond1
ZEB_EthernetStatistics: Statistics:1, Statistics:2, Statistics:3, Statistics:4, Statistics:5, Statistics:6
ZEB_EthEventSettings: EthEventSettings:0
ZEB_EthernetCollection: Collection:1
)",
                    R"(
ZEB_HostedEthernetTeam: System > Team:1, System > Team:2, System > Team:3
ZEB_EthernetTeamToLANEndpoint: Team:1 > LANEndpoint:1, Team:1 > LANEndpoint:2, Team:2 > LANEndpoint:3, Team:2 > LANEndpoint:4, Team:2 > LANEndpoint:5, Team:3 > LANEndpoint:6
ZEB_EthernetTeamMember: Team:1 > Port:1, Team:1 > Port:2, Team:2 > Port:3, Team:2 > Port:4, Team:3 > Port:5, Team:3 > Port:6
ZEB_EthernetElementFirmwareIdentity: PortController:1 > PortControllerFirmwareIdentity:1, PortController:2 > PortControllerFirmwareIdentity:2
ZEB_EthernetElementSoftwareIdentity: PortController:1 > PortControllerSoftwareIdentity:1, PortController:2 > PortControllerSoftwareIdentity:2
ZEB_EthernetControllerPhysicalPackageEthernetControllerLocation: PortControllerPhysicalPackage:1 > ControllerLocation:0503, PortControllerPhysicalPackage:2 > ControllerLocation:0507
ZEB_EthernetControllerPhysicalPackageEthernetController: PortControllerPhysicalPackage:1 > PortController:1, PortControllerPhysicalPackage:2 > PortController:2
ZEB_EthernetPortControllerEthernetPort: PortController:1 > Port:1, PortController:1 > Port:2, PortController:2 > Port:3, PortController:2 > Port:4, PortController:2 > Port:5, PortController:2 > Port:6
ZEB_EthernetDevice: System > Port:1, System > Port:2, System > Port:3, System > Port:4, System > Port:5, System > Port:6
ZEB_EthernetPortStatisticalData: Port:1 > Statistics:1, Port:2 > Statistics:2, Port:3 > Statistics:3, Port:4 > Statistics:4, Port:5 > Statistics:5, Port:6 > Statistics:6
ZEB_EthernetLANHostedAccessPoint: System > LANEndpoint:1, System > LANEndpoint:2, System > LANEndpoint:3, System > LANEndpoint:4, System > LANEndpoint:5, System > LANEndpoint:6, System > LANEndpoint:7, System > LANEndpoint:8, System > LANEndpoint:9, System > LANEndpoint:10, System > LANEndpoint:11, System > LANEndpoint:12
ZEB_EthernetPortToLANEndpoint: Port:1 > LANEndpoint:7, Port:2 > LANEndpoint:8, Port:3 > LANEndpoint:9, Port:4 > LANEndpoint:10, Port:5 > LANEndpoint:11, Port:6 > LANEndpoint:12
ZEB_EthIPHostedAccessPoint: System > IPProtocolEndpoint:1, System > IPProtocolEndpoint:2, System > IPProtocolEndpoint:3, System > IPProtocolEndpoint:4, System > IPProtocolEndpoint:5, System > IPProtocolEndpoint:6
ZEB_IPBindsToEthernetLANEndpoint: LANEndpoint:1 > IPProtocolEndpoint:1, LANEndpoint:1 > IPProtocolEndpoint:2, LANEndpoint:2 > IPProtocolEndpoint:3, LANEndpoint:3 > IPProtocolEndpoint:4, LANEndpoint:4 > IPProtocolEndpoint:5, LANEndpoint:6 > IPProtocolEndpoint:6
ZEB_EthernetRemoteAccessAvailableToIPEndpoint: RemoteServiceAccessPoint:bond0 > IPProtocolEndpoint:1, RemoteServiceAccessPoint:bond0.100 > IPProtocolEndpoint:3, RemoteServiceAccessPoint:bond1 > IPProtocolEndpoint:4
ZEB_EthernetRemoteServiceHostedAccessPoint: System > RemoteServiceAccessPoint:bond0, System > RemoteServiceAccessPoint:bond0.100, System > RemoteServiceAccessPoint:bond1
ZEB_EthernetGroupHostedCollection: System > Collection:1
ZEB_EthernetMemberOfCollection: Team:1 > Collection:1, Team:2 > Collection:1, Team:3 > Collection:1
)"};

/// What each object is tied to, by the short names of both.
using Neighbours = std::map<std::string, std::multiset<std::string>>;

Neighbours neighboursIn(const Inventory& associations) {
  Neighbours neighbours;
  for (const auto& [className, all] : associations) {
    for (const std::string& ends : all) {
      const auto middle = ends.find(" > ");
      const std::string first = ends.substr(0, middle);
      const std::string second = ends.substr(middle + 3);
      neighbours[first].insert(second);
      neighbours[second].insert(first);
    }
  }
  return neighbours;
}

/// The associations at each end, as class and ends.
Neighbours referencesIn(const Inventory& associations) {
  Neighbours references;
  for (const auto& [className, all] : associations) {
    for (const std::string& ends : all) {
      const auto middle = ends.find(" > ");
      references[ends.substr(0, middle)].insert(className + " " + ends);
      references[ends.substr(middle + 3)].insert(className + " " + ends);
    }
  }
  return references;
}

class InventoryTest : public ProviderTest, public testing::WithParamInterface<Golden> {
 protected:
  InventoryTest() { serve(GetParam().snapshot); }

  /// Every object that is served, and the computer system, each path once.
  std::map<std::string, CmpiObjectPath> pathsByName(Plugin& plugin) {
    std::map<std::string, CmpiObjectPath> paths{{"System", ZEBUtil::getComputerSystemPath()}};
    for (const std::string& className : objectClasses()) {
      for (const auto& path : plugin.names(className)) paths.emplace(shortName(path), path);
    }
    return paths;
  }
};

TEST_P(InventoryTest, ServesExactlyTheObjectsInOrder) {
  Plugin plugin(broker);
  EXPECT_EQ(objectsOf(plugin), inventoryOf(GetParam().objects));
}

TEST_P(InventoryTest, ServesExactlyTheAssociationsInOrder) {
  Plugin plugin(broker);
  EXPECT_EQ(associationsOf(plugin), inventoryOf(GetParam().associations));
}

TEST_P(InventoryTest, AssociationsLeadFromEitherEndToTheOther) {
  Plugin plugin(broker);
  const auto expected = neighboursIn(inventoryOf(GetParam().associations));
  for (const auto& [name, path] : pathsByName(plugin)) {
    std::multiset<std::string> found;
    for (const auto& other : plugin.associatorNames(path)) found.insert(shortName(other));
    const auto known = expected.find(name);
    EXPECT_EQ(found, known == expected.end() ? std::multiset<std::string>() : known->second) << name;
  }
}

TEST_P(InventoryTest, AssociatorsAreTheInstancesOfTheirNames) {
  Plugin plugin(broker);
  for (const auto& [name, path] : pathsByName(plugin)) {
    std::vector<std::string> names, instances;
    // The computer system is served by somebody else.
    for (const auto& other : plugin.associatorNames(path)) {
      if (shortName(other) != "System") names.push_back(shortName(other));
    }
    for (const auto& instance : plugin.associators(path)) instances.push_back(shortName(instance.path()));
    EXPECT_EQ(instances, names) << name;
  }
}

TEST_P(InventoryTest, ReferencesAreTheAssociationsOfBothEnds) {
  Plugin plugin(broker);
  const auto expected = referencesIn(inventoryOf(GetParam().associations));
  for (const auto& [name, path] : pathsByName(plugin)) {
    std::multiset<std::string> found;
    for (const auto& instance : plugin.references(path)) {
      found.insert(instance.className().str() + " " + shortEnds(instance));
    }
    const auto known = expected.find(name);
    EXPECT_EQ(found, known == expected.end() ? std::multiset<std::string>() : known->second) << name;
    EXPECT_EQ(plugin.referenceNames(path).size(), found.size()) << name;
  }
}

TEST_P(InventoryTest, EveryEndNamesAnInstanceOrTheComputerSystem) {
  Plugin plugin(broker);
  for (const std::string& className : associationClasses()) {
    for (const auto& association : plugin.instances(className)) {
      for (int end : {0, 1}) {
        const auto& path = association.properties().at(static_cast<std::size_t>(end)).value.asReference();
        if (path == ZEBUtil::getComputerSystemPath()) continue;
        EXPECT_EQ(plugin.get(path).size(), 1U) << path.str();
      }
    }
  }
}

TEST_P(InventoryTest, EveryNameLeadsToItsInstance) {
  Plugin plugin(broker);
  for (const auto& classes : {objectClasses(), associationClasses()}) {
    for (const std::string& className : classes) {
      for (const auto& path : plugin.names(className)) {
        const auto found = plugin.get(path);
        ASSERT_EQ(found.size(), 1U) << path.str();
        EXPECT_EQ(found.front().path(), path);
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Recorded, InventoryTest, testing::Values(kTwoCards, kTeams), kByName);

/// Requests with filters, on the two cards.
class FilterTest : public ProviderTest {
 protected:
  FilterTest() {
    serve("two_cards.json");
    broker.declareClass("ZEB_EthernetPortToLANEndpoint", "CIM_PortImplementsEndpoint");
    broker.declareClass("CIM_PortImplementsEndpoint", "CIM_DeviceSAPImplementation");
    broker.declareClass("ZEB_EthernetPortStatisticalData", "CIM_ElementStatisticalData");
    broker.declareClass("ZEB_EthernetLANEndpoint", "CIM_LANEndpoint");
    broker.declareClass("CIM_LANEndpoint", "CIM_ProtocolEndpoint");
    broker.declareClass("ZEB_IPProtocolEndpoint", "CIM_ProtocolEndpoint");
    broker.declareClass("ZEB_EthernetStatistics", "CIM_EthernetPortStatistics");
  }
  std::vector<std::string> associators(Plugin& plugin, const AssociationFilter& filter) {
    std::vector<std::string> found;
    const CmpiObjectPath port = plugin.names("ZEB_EthernetPort").front();
    for (const auto& path : plugin.associatorNames(port, filter)) found.push_back(shortName(path));
    return found;
  }
};

TEST_F(FilterTest, ByClassRoleAndTheirSuperclasses) {
  Plugin plugin(broker);
  const std::vector<std::string> endpoints{"LANEndpoint:1", "LANEndpoint:2", "LANEndpoint:3"};
  EXPECT_EQ(associators(plugin, {.associationClass = "ZEB_EthernetPortToLANEndpoint"}), endpoints);
  EXPECT_EQ(associators(plugin, {.associationClass = "CIM_DeviceSAPImplementation"}), endpoints);
  EXPECT_EQ(associators(plugin, {.resultClass = "ZEB_EthernetLANEndpoint"}), endpoints);
  EXPECT_EQ(associators(plugin, {.resultClass = "CIM_ProtocolEndpoint"}), endpoints);
  EXPECT_EQ(associators(plugin, {.role = "ManagedElement"}), std::vector<std::string>{"Statistics:1"});
  EXPECT_EQ(associators(plugin, {.resultRole = "Dependent"}), endpoints);
  EXPECT_EQ(associators(plugin, {.role = "Antecedent", .resultRole = "Dependent"}), endpoints);
  EXPECT_EQ(associators(plugin, {.role = "Dependent"}), std::vector<std::string>{"PortController:1"});
}

TEST_F(FilterTest, ByWhatDoesNotExistIsAnEmptyAnswer) {
  Plugin plugin(broker);
  for (const AssociationFilter& filter : {AssociationFilter{.associationClass = "CIM_NoSuchClass"},
                                          {.resultClass = "CIM_NoSuchClass"},
                                          {.role = "NoSuchRole"},
                                          {.resultRole = "NoSuchRole"}}) {
    EXPECT_THAT(associators(plugin, filter), IsEmpty());
  }
  const CmpiObjectPath port = plugin.names("ZEB_EthernetPort").front();
  EXPECT_THAT(plugin.references(port, {.associationClass = "CIM_NoSuchClass"}), IsEmpty());
  EXPECT_THAT(plugin.referenceNames(port, {.role = "NoSuchRole"}), IsEmpty());
  CmpiObjectPath nobody("root/jxv", "ZEB_EthernetPort");
  nobody.addKey("DeviceID", std::string_view("JXV:ZEB_EthernetPort:99"));
  EXPECT_THAT(plugin.associators(nobody), IsEmpty());
}

}  // namespace
}  // namespace ZEB::test
