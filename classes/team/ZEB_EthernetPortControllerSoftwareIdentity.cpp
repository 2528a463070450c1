#include "classes/team/ZEB_EthernetPortControllerSoftwareIdentity.h"

#include "classes/port/PropertyTable.h"
#include "classes/team/Software.h"

namespace ZEB {
namespace {

using P = Properties<AdapterReading>;

/// "Classifications".
constexpr std::uint16_t kDriver = 2;

std::optional<std::string> description(const EthernetAdapterDataObject& adapter) {
  const auto model = known(adapter, &EthernetAdapterDataObject::getModel);
  return model ? std::optional(*model + " Device Driver") : std::nullopt;
}

const PropertyRows<AdapterReading> kProperties{
    P::string("Caption", constant("Ethernet Port Controller Driver")),
    P::string("ElementName", constant("Ethernet Port Controller Driver")),
    P::stringArray("ClassificationDescriptions", constantList("Ethernet Port Controller Driver")),
    P::uint16Array("Classifications", constantList(kDriver)),
    P::string("Name", &EthernetAdapterDataObject::getDriverName, orOmit),
    P::string(
        "Description", [](AdapterReading& r) { return description(r.record); }, orOmit),
    P::key("InstanceID"),
    P::string("Manufacturer", &EthernetAdapterDataObject::getManufacturer, orOmit),
    P::string("VersionString", &EthernetAdapterDataObject::getDriverVersion, orOmit),
    P::stringArray("IdentityInfoType", constantList("CIM:SoftwareFamily", "JXV:SoftwareCategory")),
    P::stringArray(
        "IdentityInfoValue",
        [](AdapterReading& r) {
          return std::vector<std::string>{softwareFamily(r.record), "Network"};
        },
        always),
};

}  // namespace

ZEB_EthernetPortControllerSoftwareIdentity::ZEB_EthernetPortControllerSoftwareIdentity(
    const Logger& logger, const std::string& nameSpace, const std::uint32_t& number,
    const AdapterRecord& adapter)
    : AdapterObject(logger, nameSpace, kClassName, {{"InstanceID", instanceName(kClassName, number)}}, number,
                    adapter) {}

CmpiCpp::CmpiInstance ZEB_EthernetPortControllerSoftwareIdentity::makeInstance() {
  return makeInstanceOf(nullptr);
}

CmpiCpp::CmpiInstance ZEB_EthernetPortControllerSoftwareIdentity::makeInstanceOf(
    CmpiCpp::CmpiPropertyList wanted) {
  return kProperties.makeInstance(makeObjectPath(), reading(), wanted);
}

}  // namespace ZEB
