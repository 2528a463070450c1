// The schema itself: that it reads, and that keys and superclasses of the served classes are those
// that clients and the plug-in count on. Every expected value is written out here by hand.
#include <gmock/gmock.h>

#include "ServedSchema.h"

namespace ZebManager {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAreArray;

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
    const auto& given = schema().find("ZEB_EthEventSettings")->property(name)->defaultValues;
    ASSERT_TRUE(given) << name;
    EXPECT_THAT(*given, ElementsAre(value)) << name;
  }
  const auto& included = schema().find("ZEB_EthernetMemberOfCollection")->property("Included")->defaultValues;
  ASSERT_TRUE(included);
  EXPECT_THAT(*included, ElementsAre("true"));
}

TEST(Schema, SettingsThatClientsMayChangeAreWritable) {
  std::vector<std::string> writable;
  for (const PropertyDef& property : schema().find("ZEB_EthEventSettings")->properties) {
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
  const ClassDef& port = *schema().find("ZEB_EthernetPort");
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
