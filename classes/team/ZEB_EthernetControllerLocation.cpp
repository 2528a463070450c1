#include "classes/team/ZEB_EthernetControllerLocation.h"

#include "classes/port/Known.h"
#include "classes/port/PropertyTable.h"
#include "classes/team/LocationInfo.h"

namespace ZEB {
namespace {

/// What the kind of a place decides.
struct PlaceKind {
  const char* prefix;
  const char* tag;
  std::optional<std::uint16_t> tagKind;  ///< "ElementLocationTagDesc"
};

constexpr PlaceKind kSlot{"Ethernet Controller in ", "PCISLOT", 23};
constexpr PlaceKind kEmbedded{"", "EMBEDDED ETHERNET", 18};
constexpr PlaceKind kElsewhere{"", "UNKNOWN PHYSICAL LOCATION", std::nullopt};
constexpr PlaceKind kNotKnown{"", "UNKNOWN-", std::nullopt};  ///< the tag goes on with the adapter's number

const PlaceKind& placeKind(const std::optional<physloc_t>& location) {
  if (!location) return kNotKnown;
  switch (location->type()) {
    case PhyslocType::PciSlot:
    case PhyslocType::PciXSlot:
    case PhyslocType::PciExpressSlot:
      return kSlot;
    case PhyslocType::Embedded:
      return kEmbedded;
    default:
      return kElsewhere;
  }
}

std::optional<physloc_t> locationOf(const EthernetAdapterDataObject& adapter) {
  return known(adapter, &EthernetAdapterDataObject::getPhysLoc);
}

std::string locationTag(std::uint32_t number, const EthernetAdapterDataObject& adapter) {
  const PlaceKind& kind = placeKind(locationOf(adapter));
  return &kind == &kNotKnown ? kind.tag + std::to_string(number) : kind.tag;
}

std::string position(std::uint32_t number, const EthernetAdapterDataObject& adapter) {
  return known(adapter, &EthernetAdapterDataObject::getPhysLocStr)
      .value_or("unknown-" + std::to_string(number));
}

/// "4 port controller: Gigabit Adapter", named after the last port.
std::string elementName(const EthernetAdapterDataObject& adapter) {
  const auto count = known(adapter, &EthernetAdapterDataObject::getNumberOfPorts);
  const EthernetPort lastPort = adapter.portAt(count.value_or(1) - 1);
  return (count ? std::to_string(*count) + " port controller: " : std::string()) +
         known(lastPort, &EthernetPort::getPortPciProductStr).value_or("");
}

struct Reading {
  std::uint32_t number;
  const EthernetAdapterDataObject& record;
  std::optional<physloc_t> location;
  std::optional<LocationInfo> info;

  const PlaceKind& kind() const { return placeKind(location); }
  std::string hardwareLocation() const {
    return ZEBPhysloc::physlocToHWLocation(location.value_or(BMC_physloc_NULL));
  }
  /// A part of the place that is there when its parts are known.
  template <class Function>
  auto ifInfo(Function function) const {
    return info ? std::optional(function()) : std::nullopt;
  }
};

using P = Properties<Reading>;

const PropertyRows<Reading> kProperties{
    P::uint16(
        "ElementLocationTagDesc", [](Reading& r) { return r.kind().tagKind; }, orOmit),
    P::string(
        "Caption", [](Reading& r) { return r.kind().prefix + r.hardwareLocation(); }, always),
    P::string("Description", sameAs("Caption")),
    P::string(
        "ElementLocationTag", [](Reading& r) { return r.hardwareLocation(); }, always),
    P::string(
        "ElementName", [](Reading& r) { return elementName(r.record); }, always),
    P::uint16Array(
        "LocationInfoDesc", [](Reading& r) { return r.info.value_or(LocationInfo()).kinds; }, orOmit),
    P::stringArray(
        "LocationInformation", [](Reading& r) { return r.info.value_or(LocationInfo()).texts; }, orOmit),
    P::string(
        "Name", [](Reading& r) { return r.ifInfo([&] { return locationTag(r.number, r.record); }); }, orOmit),
    P::string(
        "PhysicalPosition", [](Reading& r) { return r.ifInfo([&] { return position(r.number, r.record); }); },
        orOmit),
};

}  // namespace

ZEB_EthernetControllerLocation::ZEB_EthernetControllerLocation(const Logger& logger,
                                                               const std::string& nameSpace,
                                                               const std::uint32_t& number,
                                                               const AdapterRecord& adapter)
    : AdapterObject(logger, nameSpace, kClassName,
                    {{"Name", locationTag(number, adapter)}, {"PhysicalPosition", position(number, adapter)}},
                    number, adapter) {}

CmpiCpp::CmpiInstance ZEB_EthernetControllerLocation::makeInstance() {
  const auto [number, record] = reading();
  const auto location = locationOf(record);
  return kProperties.makeInstance(
      makeObjectPath(),
      {number, record, location, locationInfo(logger(), location.value_or(BMC_physloc_NULL))});
}

}  // namespace ZEB
