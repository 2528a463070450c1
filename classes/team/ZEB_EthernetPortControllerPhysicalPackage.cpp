#include "classes/team/ZEB_EthernetPortControllerPhysicalPackage.h"

#include "classes/port/Known.h"
#include "classes/port/PropertyTable.h"

namespace ZEB {
namespace {

using P = Properties<AdapterReading>;

/// "PackageType".
enum class PackageType : std::uint16_t { Unknown = 0, Other = 1, Card = 9 };

PackageType packageType(const EthernetAdapterDataObject& adapter) {
  const auto location = known(adapter, &EthernetAdapterDataObject::getPhysLoc);
  if (!location) return PackageType::Unknown;
  // Of the slots, only a PCI Express one makes a package a card. The location counts all three as slots.
  return location->type() == PhyslocType::PciExpressSlot ? PackageType::Card : PackageType::Other;
}

std::optional<std::string> otherPackageType(const EthernetAdapterDataObject& adapter) {
  if (packageType(adapter) != PackageType::Other) return std::nullopt;
  return "Embedded Controller";
}

std::optional<std::string> caption(const EthernetAdapterDataObject& adapter) {
  const auto model = known(adapter, &EthernetAdapterDataObject::getModel);
  if (!model) return std::nullopt;
  return "Controller (" + std::to_string(adapter.ports.size()) + "-port): " + *model;
}

const PropertyRows<AdapterReading> kProperties{
    P::key("CreationClassName"),
    P::string("ElementName", constant("Ethernet Controller Package")),
    P::key("Tag"),
    P::string("Name", constant("Ethernet Controller Package")),
    P::string("Manufacturer", &EthernetAdapterDataObject::getManufacturer, orElse("")),
    P::string("Version", &EthernetAdapterDataObject::getHardwareVersion, orOmit),
    P::string(
        "Caption", [](AdapterReading& r) { return caption(r.record); }, orElse("")),
    P::string("Description", sameAs("Caption")),
    P::uint16("HealthState", constant(5)),
    P::uint16Array("OperationalStatus", constantList(2)),
    P::stringArray("StatusDescriptions", constantList("Ethernet Controller Package Status: OK")),
    P::boolean(
        "CanBeFRUed", [](AdapterReading& r) { return packageType(r.record) == PackageType::Card; }, always),
    P::uint16(
        "PackageType", [](AdapterReading& r) { return packageType(r.record); }, always),
    P::string(
        "OtherPackageType", [](AdapterReading& r) { return otherPackageType(r.record); }, orOmit),
};

}  // namespace

ZEB_EthernetPortControllerPhysicalPackage::ZEB_EthernetPortControllerPhysicalPackage(
    const Logger& logger, const std::string& nameSpace, const std::uint32_t& number,
    const AdapterRecord& adapter)
    : AdapterObject(logger, nameSpace, kClassName,
                    {{"CreationClassName", kClassName.view()}, {"Tag", instanceName(kClassName, number)}},
                    number, adapter) {}

CmpiCpp::CmpiInstance ZEB_EthernetPortControllerPhysicalPackage::makeInstance() {
  return makeInstanceOf(nullptr);
}

CmpiCpp::CmpiInstance ZEB_EthernetPortControllerPhysicalPackage::makeInstanceOf(
    CmpiCpp::CmpiPropertyList wanted) {
  return kProperties.makeInstance(makeObjectPath(), reading(), wanted);
}

}  // namespace ZEB
