#include "classes/team/ZEB_EthernetPortController.h"

#include <charconv>

#include "classes/port/Known.h"
#include "classes/port/PropertyTable.h"

namespace ZEB {
namespace {

using P = Properties<AdapterReading>;

std::optional<EthPortLinkEnum> firstPortLink(const EthernetAdapterDataObject& adapter) {
  return known(adapter.portAt(0), &EthernetPort::getPortLinkType);
}

/// The hardware version, if it is a decimal number.
std::optional<std::uint16_t> versionNumber(const EthernetAdapterDataObject& adapter) {
  const std::string text = known(adapter, &EthernetAdapterDataObject::getHardwareVersion).value_or("");
  const char* end = text.data() + text.size();
  std::uint16_t version = 0;
  const auto [stop, error] = std::from_chars(text.data(), end, version);
  return error == std::errc() && stop == end ? std::optional(version) : std::nullopt;
}

// "HealthState" and "StatusDescriptions" do not follow the status: clients know them as they are.
const PropertyRows<AdapterReading> kProperties{
    P::systemScopedKeys("DeviceID"),
    P::string(
        "Name", [](AdapterReading& r) { return "Ethernet Controller " + std::to_string(r.number); }, always),
    P::string("Caption", sameAs("Name")),
    P::string("Description", sameAs("Name")),
    P::string("ElementName", sameAs("Name")),
    P::uint16(
        "ControllerType", [](AdapterReading& r) { return firstPortLink(r.record); }, orElse(0)),
    P::uint16(
        "ControllerVersion", [](AdapterReading& r) { return versionNumber(r.record); }, orOmit),
    P::uint16("HealthState", constant(5)),
    P::stringArray("StatusDescriptions", constantList("Ethernet Controller Status: OK")),
    P::uint16Array("OperationalStatus", &EthernetAdapterDataObject::getAdapterStatus, orElse(0)),
};

}  // namespace

ZEB_EthernetPortController::ZEB_EthernetPortController(const Logger& logger, const std::string& nameSpace,
                                                       const std::uint32_t& number,
                                                       const AdapterRecord& adapter)
    : AdapterObject(logger, nameSpace, kClassName,
                    systemScopedKeys(kClassName, "DeviceID", instanceName(kClassName, number)), number,
                    adapter) {}

CmpiCpp::CmpiInstance ZEB_EthernetPortController::makeInstance() {
  return makeInstanceOf(nullptr);
}

CmpiCpp::CmpiInstance ZEB_EthernetPortController::makeInstanceOf(CmpiCpp::CmpiPropertyList wanted) {
  return kProperties.makeInstance(makeObjectPath(), reading(), wanted);
}

}  // namespace ZEB
