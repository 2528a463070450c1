#include "classes/team/ZEB_EthernetPortControllerFirmwareIdentity.h"

#include <cstdio>

#include "classes/port/PropertyTable.h"
#include "classes/team/Software.h"

namespace ZEB {
namespace {

using P = Properties<AdapterReading>;

/// "Classifications".
constexpr std::uint16_t kFirmware = 10;

std::optional<std::string> details(const EthernetAdapterDataObject& adapter) {
  const auto model = known(adapter, &EthernetAdapterDataObject::getModel);
  return model ? std::optional("Ethernet Port Controller Firmware details for " + *model) : std::nullopt;
}

/// "14e4:1657"; an id that is not known is 0.
std::string pciId(const EthernetAdapterDataObject& adapter) {
  char text[2 * sizeof "ffffffff"];
  std::snprintf(text, sizeof text, "%x:%x",
                known(adapter, &EthernetAdapterDataObject::getVendorId).value_or(0),
                known(adapter, &EthernetAdapterDataObject::getDeviceId).value_or(0));
  return text;
}

const PropertyRows<AdapterReading> kProperties{
    P::string("Caption", constant("Ethernet Port Controller Firmware")),
    P::stringArray("ClassificationDescriptions", constantList("Ethernet Port Controller Firmware")),
    P::uint16Array("Classifications", constantList(kFirmware)),
    P::string(
        "Name", [](AdapterReading& r) { return details(r.record); }, orOmit),
    P::string("Description", sameAs("Name")),
    P::key("InstanceID"),
    P::string(
        "ElementName", [](AdapterReading& r) { return pciId(r.record); }, always),
    P::stringArray("IdentityInfoType", constantList("CIM:SoftwareFamily", "JXV:SoftwareCategory")),
    P::stringArray(
        "IdentityInfoValue",
        [](AdapterReading& r) {
          return std::vector<std::string>{softwareFamily(r.record), "NIC"};
        },
        always),
    // Once more: it keeps its place and its value.
    P::uint16Array("Classifications", constantList(kFirmware)),
    P::string("Manufacturer", &EthernetAdapterDataObject::getManufacturer, orOmit),
    P::string("VersionString", &EthernetAdapterDataObject::getFirmwareVersion, orOmit),
};

}  // namespace

ZEB_EthernetPortControllerFirmwareIdentity::ZEB_EthernetPortControllerFirmwareIdentity(
    const Logger& logger, const std::string& nameSpace, const std::uint32_t& number,
    const AdapterRecord& adapter)
    : AdapterObject(logger, nameSpace, kClassName, {{"InstanceID", instanceName(kClassName, number)}}, number,
                    adapter) {}

CmpiCpp::CmpiInstance ZEB_EthernetPortControllerFirmwareIdentity::makeInstance() {
  return makeInstanceOf(nullptr);
}

CmpiCpp::CmpiInstance ZEB_EthernetPortControllerFirmwareIdentity::makeInstanceOf(
    CmpiCpp::CmpiPropertyList wanted) {
  return kProperties.makeInstance(makeObjectPath(), reading(), wanted);
}

}  // namespace ZEB
