#include "classes/port/ZEB_IPProtocolEndpoint.h"

#include "classes/port/Known.h"
#include "classes/port/PropertyTable.h"

namespace ZEB {

using CmpiCpp::CmpiInstance;

/// One of the two addresses at most is there.
struct ZEB_IPProtocolEndpoint::Reading {
  ZEB_IPProtocolEndpoint& self;
  const InterfaceRecord record;
  std::optional<IPv4AddressRecord> ipv4 = {};
  std::optional<IPv6AddressRecord> ipv6 = {};
};

namespace {

/// "ProtocolIFType".
enum class ProtocolType : std::uint16_t { IPv4 = 4096, IPv6 = 4097 };
/// "IPv6AddressType", whatever the address.
constexpr std::uint16_t kIPv6AddressType = 5;

template <class Address>
std::optional<Address> at(const std::vector<Address>& addresses, AddressIndex index) {
  if (position(index) >= addresses.size()) return std::nullopt;
  return addresses[position(index)];
}

/// A part of an address that there may not be.
template <class Address, class Part>
std::optional<Part> part(const std::optional<Address>& address, Part Address::*member) {
  return address ? std::optional((*address).*member) : std::nullopt;
}

std::string portCaption(const EthernetPort& port) {
  const auto number = known(port, &EthernetPort::getPortNumber);
  const auto product = known(port, &EthernetPort::getPortPciProductStr);
  return (number ? " port " + std::to_string(*number) : std::string()) +
         (product ? " " + *product : std::string());
}

std::string deviceName(const InterfaceRecord& record) {
  const char* unknown = record.port() ? "Unknown device name" : "";
  return known(record, &InterfaceRecord::getOsDeviceName).value_or(unknown);
}

}  // namespace

const PropertyRows<ZEB_IPProtocolEndpoint::Reading> ZEB_IPProtocolEndpoint::kProperties{
    P::systemScopedKeys("Name"),
    P::step([](Reading& r) {
      if (r.self._family == IpFamily::IPv4) {
        r.ipv4 = at(r.record.getIPv4Addresses(), r.self._index);
      } else {
        r.ipv6 = at(r.record.getIPv6Addresses(), r.self._index);
      }
    }),
    P::uint16("AddressOrigin", &InterfaceRecord::getAddressOrigin, orElse(0)),
    P::string("NameFormat", constant("Opaque Key. Unique scoped instance information "
                                     "'JXV:ZEB_IPProtocolEndpoint:' concatenated with the class instance id "
                                     "number.")),
    P::string(
        "IPv4Address", [](Reading& r) { return part(r.ipv4, &IPv4AddressRecord::address); }, orOmit),
    P::string(
        "SubnetMask", [](Reading& r) { return part(r.ipv4, &IPv4AddressRecord::netmask); }, orOmit),
    P::string(
        "IPv6Address", [](Reading& r) { return part(r.ipv6, &IPv6AddressRecord::address); }, orOmit),
    P::uint16(
        "IPv6AddressType", [](Reading& r) { return r.ipv6 ? std::optional(kIPv6AddressType) : std::nullopt; },
        orOmit),
    P::uint16(
        "IPv6SubnetPrefixLength", [](Reading& r) { return part(r.ipv6, &IPv6AddressRecord::prefixLength); },
        orOmit),
    P::uint8(
        "PrefixLength", [](Reading& r) { return part(r.ipv6, &IPv6AddressRecord::prefixLength); }, orOmit),
    P::uint16(
        "ProtocolIFType",
        [](Reading& r) -> std::optional<ProtocolType> {
          if (r.ipv4) return ProtocolType::IPv4;
          if (r.ipv6) return ProtocolType::IPv6;
          return std::nullopt;
        },
        orOmit),
    P::string(
        "ElementName", [](Reading& r) { return r.self.caption(r.record); }, always),
    P::string("Caption", sameAs("ElementName")),
    P::string(
        "Description", [](Reading& r) { return deviceName(r.record); }, always),
    P::statusBlock([](Reading& r) {
      return known(r.record, &InterfaceRecord::getStatus).value_or(operationalStatus::Unknown);
    }),
};

ZEB_IPProtocolEndpoint::ZEB_IPProtocolEndpoint(const Logger& logger, const std::string& nameSpace,
                                               EndpointNumber endpointNumber, AddressIndex index,
                                               IpFamily family, const InterfaceRecord& interface)
    : ManagedObject(logger, nameSpace, kClassName,
                    systemScopedKeys(kClassName, "Name", instanceName(kClassName, number(endpointNumber)))),
      _number(endpointNumber),
      _index(index),
      _family(family),
      _interface(interface) {}

CmpiInstance ZEB_IPProtocolEndpoint::makeInstance() {
  return makeInstanceOf(nullptr);
}

CmpiInstance ZEB_IPProtocolEndpoint::makeInstanceOf(CmpiCpp::CmpiPropertyList wanted) {
  return kProperties.makeInstance(makeObjectPath(), {*this, refreshed(_interface)}, wanted);
}

std::string ZEB_IPProtocolEndpoint::caption(const InterfaceRecord& record) const {
  const std::string start = "IP Protocol Endpoint(" + std::to_string(number(_number)) + ") for:";
  return start + (record.port() ? portCaption(*record.port()) : deviceName(record));
}

}  // namespace ZEB
