// That properties of the served classes have the types that clients and the plug-in count on. Every expected
// value is written out here by hand.
#include <gmock/gmock.h>

#include "ServedSchema.h"

namespace ZebManager {
namespace {

constexpr CMPIType kUint16s = CMPI_uint16 | CMPI_ARRAY;
constexpr CMPIType kStrings = CMPI_string | CMPI_ARRAY;

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

}  // namespace
}  // namespace ZebManager
