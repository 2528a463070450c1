// The schema itself: that it reads, and that keys, types and superclasses of the served classes are those
// that clients and the plug-in count on. Every expected value is written out here by hand.
#include <gmock/gmock.h>

#include "schema/ClassRepository.h"

namespace ZebManager {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAreArray;

constexpr CMPIType kUint16s = CMPI_uint16 | CMPI_ARRAY;
constexpr CMPIType kStrings = CMPI_string | CMPI_ARRAY;

const ClassRepository& schema() {
  static const ClassRepository repository = ClassRepository::fromFile(ZEB_SCHEMA_FILE);
  return repository;
}

std::vector<const ClassDef*> ownClasses() {
  std::vector<const ClassDef*> own;
  for (const auto& def : schema().classes()) {
    if (def->name.starts_with("ZEB_")) own.push_back(def.get());
  }
  return own;
}

struct ExpectedClass {
  const char* name;
  const char* superclass;
  std::vector<std::string> keys;
};

class ServedClass : public testing::TestWithParam<ExpectedClass> {};

TEST_P(ServedClass, HasItsSuperclassAndExactlyItsKeys) {
  const ExpectedClass& expected = GetParam();
  const ClassDef* def = schema().find(expected.name);
  ASSERT_NE(def, nullptr);
  EXPECT_EQ(def->name, expected.name);
  EXPECT_FALSE(def->abstract);
  EXPECT_FALSE(def->description.empty());
  ASSERT_NE(def->superclass, nullptr);
  EXPECT_EQ(def->superclass->name, expected.superclass);
  std::vector<std::string> keys;
  for (const PropertyDef* key : def->keys()) keys.push_back(key->name);
  EXPECT_THAT(keys, UnorderedElementsAreArray(expected.keys));
}

const std::vector<std::string> kDeviceKeys = {"CreationClassName", "SystemCreationClassName", "SystemName",
                                              "DeviceID"};
const std::vector<std::string> kAccessKeys = {"CreationClassName", "SystemCreationClassName", "SystemName",
                                              "Name"};
const std::vector<std::string> kDependency = {"Antecedent", "Dependent"};

INSTANTIATE_TEST_SUITE_P(
    All, ServedClass,
    testing::Values(
        ExpectedClass{"ZEB_ComputerSystem", "CIM_ComputerSystem", {"CreationClassName", "Name"}},
        ExpectedClass{"ZEB_AutoStart", "CIM_ManagedElement", {"ProviderName"}},
        ExpectedClass{"ZEB_AutoStartEthernetPort", "ZEB_AutoStart", {"ProviderName"}},
        ExpectedClass{"ZEB_EthernetPort", "CIM_EthernetPort", kDeviceKeys},
        ExpectedClass{"ZEB_EthernetStatistics", "CIM_EthernetPortStatistics", {"InstanceID"}},
        ExpectedClass{"ZEB_EthernetLANEndpoint", "CIM_LANEndpoint", kAccessKeys},
        ExpectedClass{"ZEB_IPProtocolEndpoint", "CIM_IPProtocolEndpoint", kAccessKeys},
        ExpectedClass{"ZEB_EthernetRemoteServiceAccessPoint", "CIM_RemoteServiceAccessPoint", kAccessKeys},
        ExpectedClass{"ZEB_EthernetPortController", "CIM_PortController", kDeviceKeys},
        ExpectedClass{
            "ZEB_EthernetPortControllerPhysicalPackage", "CIM_PhysicalPackage", {"CreationClassName", "Tag"}},
        ExpectedClass{"ZEB_EthernetControllerLocation", "CIM_Location", {"Name", "PhysicalPosition"}},
        ExpectedClass{"ZEB_EthernetPortControllerSoftwareIdentity", "CIM_SoftwareIdentity", {"InstanceID"}},
        ExpectedClass{"ZEB_EthernetPortControllerFirmwareIdentity", "CIM_SoftwareIdentity", {"InstanceID"}},
        ExpectedClass{"ZEB_EthernetTeam", "CIM_RedundancySet", {"InstanceID"}},
        ExpectedClass{"ZEB_EthernetCollection", "CIM_SystemSpecificCollection", {"InstanceID"}},
        ExpectedClass{"ZEB_EthEventSettings", "CIM_SettingData", {"InstanceId"}},
        ExpectedClass{"ZEB_EthernetTeamMember", "CIM_MemberOfCollection", {"Collection", "Member"}},
        ExpectedClass{"ZEB_EthernetPortToLANEndpoint", "CIM_PortImplementsEndpoint", kDependency},
        ExpectedClass{"ZEB_EthernetLANHostedAccessPoint", "CIM_HostedAccessPoint", kDependency},
        ExpectedClass{"ZEB_IPBindsToEthernetLANEndpoint", "CIM_BindsToLANEndpoint", kDependency},
        ExpectedClass{"ZEB_EthIPHostedAccessPoint", "CIM_HostedAccessPoint", kDependency},
        ExpectedClass{"ZEB_EthernetRemoteAccessAvailableToIPEndpoint", "CIM_RemoteAccessAvailableToElement",
                      kDependency},
        ExpectedClass{"ZEB_EthernetRemoteServiceHostedAccessPoint", "CIM_HostedAccessPoint", kDependency},
        ExpectedClass{
            "ZEB_EthernetPortStatisticalData", "CIM_ElementStatisticalData", {"ManagedElement", "Stats"}},
        ExpectedClass{"ZEB_EthernetLANEndpointStatisticalData",
                      "CIM_ElementStatisticalData",
                      {"ManagedElement", "Stats"}},
        ExpectedClass{"ZEB_EthernetPortControllerEthernetPort", "CIM_ControlledBy", kDependency},
        ExpectedClass{"ZEB_EthernetControllerPhysicalPackageEthernetController", "CIM_Realizes", kDependency},
        ExpectedClass{"ZEB_EthernetControllerPhysicalPackageEthernetControllerLocation",
                      "CIM_PhysicalElementLocation",
                      {"Element", "PhysicalLocation"}},
        ExpectedClass{"ZEB_EthernetDevice", "CIM_SystemDevice", {"GroupComponent", "PartComponent"}},
        ExpectedClass{"ZEB_EthernetElementFirmwareIdentity", "CIM_ElementSoftwareIdentity", kDependency},
        ExpectedClass{"ZEB_EthernetElementSoftwareIdentity", "CIM_ElementSoftwareIdentity", kDependency},
        ExpectedClass{"ZEB_EthernetTeamToLANEndpoint", "CIM_ConcreteDependency", kDependency},
        ExpectedClass{
            "ZEB_HostedEthernetTeam", "CIM_OwningCollectionElement", {"OwningElement", "OwnedElement"}},
        ExpectedClass{"ZEB_EthernetMemberOfCollection", "CIM_MemberOfCollection", {"Member", "Collection"}},
        ExpectedClass{"ZEB_EthernetGroupHostedCollection", "CIM_HostedCollection", kDependency},
        ExpectedClass{"ZEB_EthernetIndication", "CIM_AlertIndication", {}}),
    [](const auto& tested) { return std::string(tested.param.name); });

TEST(Schema, EveryClassOfItsOwnStandsOnThePublicSchema) {
  for (const ClassDef* def : ownClasses()) {
    const ClassDef* root = def;
    while (root->superclass) root = root->superclass;
    EXPECT_TRUE(root->name.starts_with("CIM_")) << def->name;
  }
}

TEST(Schema, ClassesThatAreServedHaveInstancesAndSuperclassesHaveNone) {
  EXPECT_THAT(schema().instantiable(*schema().find("CIM_NetworkPort")),
              ElementsAre(schema().find("ZEB_EthernetPort")));
  EXPECT_THAT(schema().instantiable(*schema().find("ZEB_AutoStart")),
              ElementsAre(schema().find("ZEB_AutoStart"), schema().find("ZEB_AutoStartEthernetPort")));
  EXPECT_THAT(schema().instantiable(*schema().find("CIM_Indication")), ElementsAre());
}

struct SystemEnd {
  const char* className;
  const char* role;
};

// A site's object manager may have a class of its own for the server.
TEST(Schema, TheServerAtTheEndOfAnAssociationMayBeOfAnyClassForOne) {
  for (const SystemEnd& end : {SystemEnd{"ZEB_EthernetDevice", "GroupComponent"},
                               {"ZEB_EthernetLANHostedAccessPoint", "Antecedent"},
                               {"ZEB_EthIPHostedAccessPoint", "Antecedent"},
                               {"ZEB_EthernetRemoteServiceHostedAccessPoint", "Antecedent"},
                               {"ZEB_HostedEthernetTeam", "OwningElement"},
                               {"ZEB_EthernetGroupHostedCollection", "Antecedent"}}) {
    const PropertyDef* const role = schema().find(end.className)->property(end.role);
    ASSERT_NE(role, nullptr) << end.className;
    EXPECT_EQ(role->referenceClass, "CIM_ComputerSystem") << end.className;
  }
}

struct ExpectedProperty {
  const char* className;
  const char* name;
  CMPIType type;
};

class ServedProperty : public testing::TestWithParam<ExpectedProperty> {};

TEST_P(ServedProperty, HasItsType) {
  const PropertyDef* property = schema().find(GetParam().className)->property(GetParam().name);
  ASSERT_NE(property, nullptr);
  EXPECT_EQ(typeName(property->type), typeName(GetParam().type));
  EXPECT_EQ(property->name, GetParam().name);
}

constexpr const char* kPort = "ZEB_EthernetPort";
constexpr const char* kTeam = "ZEB_EthernetTeam";
constexpr const char* kIp = "ZEB_IPProtocolEndpoint";
constexpr const char* kGateway = "ZEB_EthernetRemoteServiceAccessPoint";
constexpr const char* kCounters = "ZEB_EthernetStatistics";
constexpr const char* kPackage = "ZEB_EthernetPortControllerPhysicalPackage";
constexpr const char* kPlace = "ZEB_EthernetControllerLocation";
constexpr const char* kFirmware = "ZEB_EthernetPortControllerFirmwareIdentity";
constexpr const char* kSettings = "ZEB_EthEventSettings";

INSTANTIATE_TEST_SUITE_P(
    All, ServedProperty,
    testing::Values(
        ExpectedProperty{kPort, "CreationClassName", CMPI_string},
        ExpectedProperty{kPort, "SystemName", CMPI_string},
        ExpectedProperty{kPort, "SystemCreationClassName", CMPI_string},
        ExpectedProperty{kPort, "DeviceID", CMPI_string}, ExpectedProperty{kPort, "Caption", CMPI_string},
        ExpectedProperty{kPort, "ElementName", CMPI_string},
        ExpectedProperty{kPort, "TimeOfLastStateChange", CMPI_dateTime},
        ExpectedProperty{kPort, "PermanentAddress", CMPI_string},
        ExpectedProperty{kPort, "Name", CMPI_string}, ExpectedProperty{kPort, "PortType", CMPI_uint16},
        ExpectedProperty{kPort, "LinkTechnology", CMPI_uint16},
        ExpectedProperty{kPort, "PortNumber", CMPI_uint16},
        ExpectedProperty{kPort, "VirtualPortNumber", CMPI_uint16},
        ExpectedProperty{kPort, "Description", CMPI_string}, ExpectedProperty{kPort, "MaxSpeed", CMPI_uint64},
        ExpectedProperty{kPort, "Speed", CMPI_uint64},
        ExpectedProperty{kPort, "SupportedMaximumTransmissionUnit", CMPI_uint64},
        ExpectedProperty{kPort, "ActiveMaximumTransmissionUnit", CMPI_uint64},
        ExpectedProperty{kPort, "FullDuplex", CMPI_boolean},
        ExpectedProperty{kPort, "AutoSense", CMPI_boolean},
        ExpectedProperty{kPort, "RequestedState", CMPI_uint16},
        ExpectedProperty{kPort, "EnabledState", CMPI_uint16},
        ExpectedProperty{kPort, "Capabilities", kUint16s},
        ExpectedProperty{kPort, "CapabilityDescriptions", kStrings},
        ExpectedProperty{kPort, "EnabledCapabilities", kUint16s},
        ExpectedProperty{kPort, "NetworkAddresses", kStrings},
        ExpectedProperty{kPort, "HealthState", CMPI_uint16},
        ExpectedProperty{kPort, "OperationalStatus", kUint16s},
        ExpectedProperty{kPort, "StatusDescriptions", kStrings},
        ExpectedProperty{"ZEB_EthernetLANEndpoint", "MACAddress", CMPI_string},
        ExpectedProperty{"ZEB_EthernetLANEndpoint", "ProtocolIFType", CMPI_uint16},
        ExpectedProperty{"ZEB_EthernetLANEndpoint", "VLANId", CMPI_uint16},
        ExpectedProperty{"ZEB_EthernetLANEndpoint", "VLANName", CMPI_string},
        ExpectedProperty{kIp, "AddressOrigin", CMPI_uint16}, ExpectedProperty{kIp, "NameFormat", CMPI_string},
        ExpectedProperty{kIp, "IPv4Address", CMPI_string}, ExpectedProperty{kIp, "SubnetMask", CMPI_string},
        ExpectedProperty{kIp, "ProtocolIFType", CMPI_uint16},
        ExpectedProperty{kIp, "IPv6Address", CMPI_string},
        ExpectedProperty{kIp, "IPv6AddressType", CMPI_uint16},
        ExpectedProperty{kIp, "IPv6SubnetPrefixLength", CMPI_uint16},
        ExpectedProperty{kIp, "PrefixLength", CMPI_uint8},
        ExpectedProperty{kGateway, "InfoFormat", CMPI_uint16},
        ExpectedProperty{kGateway, "AccessInfo", CMPI_string},
        ExpectedProperty{kGateway, "AccessContext", CMPI_uint16}),
    [](const auto& tested) { return std::string(tested.param.className) + "_" + tested.param.name; });

INSTANTIATE_TEST_SUITE_P(
    More, ServedProperty,
    testing::Values(
        ExpectedProperty{kCounters, "StatisticTime", CMPI_dateTime},
        ExpectedProperty{kCounters, "SampleInterval", CMPI_dateTime},
        ExpectedProperty{kCounters, "BytesTransmitted", CMPI_uint64},
        ExpectedProperty{kCounters, "PacketsReceived", CMPI_uint64},
        ExpectedProperty{kCounters, "AlignmentErrors", CMPI_uint32},
        ExpectedProperty{kCounters, "InternalMACReceiveErrors", CMPI_uint32},
        ExpectedProperty{"ZEB_EthernetPortController", "ControllerType", CMPI_uint16},
        ExpectedProperty{"ZEB_EthernetPortController", "ControllerVersion", CMPI_uint16},
        ExpectedProperty{kPackage, "Manufacturer", CMPI_string},
        ExpectedProperty{kPackage, "Version", CMPI_string},
        ExpectedProperty{kPackage, "CanBeFRUed", CMPI_boolean},
        ExpectedProperty{kPackage, "PackageType", CMPI_uint16},
        ExpectedProperty{kPackage, "OtherPackageType", CMPI_string},
        ExpectedProperty{kPlace, "ElementLocationTagDesc", CMPI_uint16},
        ExpectedProperty{kPlace, "ElementLocationTag", CMPI_string},
        ExpectedProperty{kPlace, "LocationInfoDesc", kUint16s},
        ExpectedProperty{kPlace, "LocationInformation", kStrings},
        ExpectedProperty{kFirmware, "ClassificationDescriptions", kStrings},
        ExpectedProperty{kFirmware, "Classifications", kUint16s},
        ExpectedProperty{kFirmware, "VersionString", CMPI_string},
        ExpectedProperty{kFirmware, "IdentityInfoType", kStrings},
        ExpectedProperty{kFirmware, "IdentityInfoValue", kStrings},
        ExpectedProperty{kTeam, "LoadBalanceAlgorithm", CMPI_uint16},
        ExpectedProperty{kTeam, "OtherLoadBalanceAlgorithm", CMPI_string},
        ExpectedProperty{kTeam, "TypeOfSet", kUint16s},
        ExpectedProperty{kTeam, "MaxNumberSupported", CMPI_uint32},
        ExpectedProperty{kTeam, "MinNumberNeeded", CMPI_uint32},
        ExpectedProperty{kTeam, "RedundancyStatus", CMPI_uint16},
        ExpectedProperty{kTeam, "GroupOperationalStatus", kUint16s},
        ExpectedProperty{kTeam, "ActiveMaximumTransmissionUnit", CMPI_uint64},
        ExpectedProperty{kTeam, "Speed", CMPI_uint64}, ExpectedProperty{kTeam, "TeamCapabilities", kUint16s},
        ExpectedProperty{kTeam, "TeamEnabledCapabilities", kUint16s},
        ExpectedProperty{kTeam, "TeamOperatingMode", kUint16s},
        ExpectedProperty{kTeam, "TeamCurrentOperatingMode", kUint16s},
        ExpectedProperty{"ZEB_EthernetTeamMember", "MemberOperationalStatus", kUint16s},
        ExpectedProperty{"ZEB_EthernetTeamMember", "MemberStatusDescriptions", kStrings},
        ExpectedProperty{"ZEB_EthernetTeamMember", "Role", CMPI_uint16},
        ExpectedProperty{"ZEB_EthernetCollection", "GroupOperationalStatus", kUint16s},
        ExpectedProperty{"ZEB_EthernetCollection", "GroupStatusDescriptions", kStrings},
        ExpectedProperty{"ZEB_EthernetMemberOfCollection", "Included", CMPI_boolean},
        ExpectedProperty{kSettings, "PollInterval", CMPI_uint32},
        ExpectedProperty{kSettings, "MonitorPorts", CMPI_boolean},
        ExpectedProperty{"ZEB_IPBindsToEthernetLANEndpoint", "FrameType", CMPI_uint16},
        ExpectedProperty{"ZEB_EthernetRemoteAccessAvailableToIPEndpoint", "IsDefault", CMPI_boolean},
        ExpectedProperty{"ZEB_EthernetRemoteAccessAvailableToIPEndpoint", "OrderOfAccess", CMPI_uint16},
        ExpectedProperty{"ZEB_EthernetElementSoftwareIdentity", "ElementSoftwareStatus", kUint16s},
        ExpectedProperty{"ZEB_AutoStart", "WorkerMethodNameSpace", CMPI_string},
        ExpectedProperty{"ZEB_AutoStart", "WorkerPollInterval", CMPI_uint16},
        ExpectedProperty{"ZEB_AutoStart", "WorkerPollIntervalStagger", CMPI_uint16}),
    [](const auto& tested) { return std::string(tested.param.className) + "_" + tested.param.name; });

// Object managers fill these in where a client sends nothing, or what they cannot take: nothing may fall
// silent by it.
TEST(Schema, WhatClientsMayChangeHasTheDefaultThatThePlugInStartsWith) {
  const std::vector<std::pair<const char*, const char*>> expected = {
      {"PollInterval", "200"},          {"FloodThreshold", "10"},
      {"MaxFloodLevel", "100"},         {"ActiveAdapterCountChanged", "false"},
      {"MemberRoleChanged", "false"},   {"MemberStatusChanged", "false"},
      {"MemberJoinedTeam", "false"},    {"MemberLeftTeam", "false"},
      {"InterfaceAvailable", "false"},  {"InterfaceUnAvailable", "false"},
      {"MonitorPorts", "true"},         {"MonitorLANEndpoints", "false"},
      {"MonitorRedundancySets", "true"}};
  for (const auto& [name, value] : expected) {
    const auto& given = schema().find(kSettings)->property(name)->defaultValues;
    ASSERT_TRUE(given) << name;
    EXPECT_THAT(*given, ElementsAre(value)) << name;
  }
  const auto& included = schema().find("ZEB_EthernetMemberOfCollection")->property("Included")->defaultValues;
  ASSERT_TRUE(included);
  EXPECT_THAT(*included, ElementsAre("true"));
}

TEST(Schema, SettingsThatClientsMayChangeAreWritable) {
  std::vector<std::string> writable;
  for (const PropertyDef& property : schema().find(kSettings)->properties) {
    if (property.writable) writable.push_back(property.name);
  }
  EXPECT_THAT(writable,
              ElementsAre("PollInterval", "FloodThreshold", "MaxFloodLevel", "ActiveAdapterCountChanged",
                          "MemberRoleChanged", "MemberStatusChanged", "MemberJoinedTeam", "MemberLeftTeam",
                          "InterfaceAvailable", "InterfaceUnAvailable", "MonitorPorts", "MonitorLANEndpoints",
                          "MonitorRedundancySets"));
  EXPECT_TRUE(schema().find("ZEB_EthernetMemberOfCollection")->property("Included")->writable);
}

TEST(Schema, TheWorkerMethodReturnsANumber) {
  const MethodDef* method = schema().find("ZEB_AutoStartEthernetPort")->method("PerformWork");
  ASSERT_NE(method, nullptr);
  EXPECT_EQ(method->type, CMPI_uint32);
  EXPECT_TRUE(method->parameters.empty());
  EXPECT_EQ(schema().find("ZEB_AutoStart")->method("PerformWork"), nullptr);
  EXPECT_EQ(method->valueText(0), "Completed");
  EXPECT_EQ(method->valueText(4), "Events Failed");
}

TEST(Schema, DescribesEverythingOfItsOwn) {
  const auto expectText = [](const std::string& what, const std::string& description) {
    EXPECT_GT(description.size(), 5U) << what;
  };
  for (const ClassDef* def : ownClasses()) {
    expectText(def->name, def->description);
    for (const PropertyDef& property : def->properties) {
      const PropertyDef* inherited = def->superclass->property(property.name);
      const bool narrowed = inherited && inherited->referenceClass != property.referenceClass;
      const bool own = property.origin == def || narrowed;
      if (own) expectText(def->name + "." + property.name, property.description);
    }
    for (const MethodDef& method : def->methods) {
      expectText(def->name + "." + method.name, method.description);
    }
  }
}

TEST(Schema, ValueMapsComeFromThePublicSchema) {
  const ClassDef& port = *schema().find(kPort);
  EXPECT_EQ(port.property("OperationalStatus")->valueText(15), "Dormant");
  EXPECT_EQ(port.property("PortType")->valueText(55), "10GBaseT");
  EXPECT_EQ(port.property("PortType")->valueText(16000), "Vendor Reserved");
  EXPECT_EQ(port.property("RequestedState")->valueText(12), "Not Applicable");
}

TEST(Schema, EveryReferenceNarrowsTheOneThatItOverrides) {
  for (const auto& def : schema().classes()) {
    if (!def->superclass) continue;
    for (const PropertyDef& property : def->properties) {
      const PropertyDef* inherited = def->superclass->property(property.name);
      if (property.type != CMPI_ref || !inherited) continue;
      EXPECT_TRUE(schema().isA(property.referenceClass, inherited->referenceClass))
          << def->name << "." << property.name;
    }
  }
}

TEST(Schema, ClassesWithoutAUseAreLeftOut) {
  auto repository = ClassRepository::fromText(
      "[Abstract] class Base { [Key] string Name; }; [Abstract] class Unused : Base { }; class Used : Base { "
      "};"
      "[Abstract] class End { [Key] string Name; }; [Association] class Link { [Key] Used REF One; [Key] End "
      "REF "
      "Other; };",
      "test.mof");
  repository.leaveOutUnused();
  EXPECT_EQ(repository.find("Unused"), nullptr);
  for (const char* const name : {"Base", "Used", "End", "Link"})
    EXPECT_NE(repository.find(name), nullptr) << name;
  EXPECT_EQ(repository.classes().size(), 4U);
  EXPECT_EQ(repository.find("Base")->subclasses.size(), 1U);
}

}  // namespace
}  // namespace ZebManager
