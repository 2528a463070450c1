#include "classes/port/ZEB_EthernetRemoteServiceAccessPoint.h"

#include "classes/port/Known.h"
#include "classes/port/PropertyTable.h"

namespace ZEB {

using CmpiCpp::CmpiInstance;

struct ZEB_EthernetRemoteServiceAccessPoint::Reading {
  const InterfaceRecord record;
  const std::optional<route_t> route;
};

namespace {

/// "InfoFormat". A route of a family that is not known counts as IPv6.
enum class InfoFormat : std::uint16_t { IPv4 = 3, IPv6 = 4 };
/// "AccessContext": default gateway.
constexpr std::uint16_t kDefaultGateway = 2;

InfoFormat infoFormat(const route_t& route) {
  return route.family == "ipv4" ? InfoFormat::IPv4 : InfoFormat::IPv6;
}

std::string accessInfo(const route_t& route) {
  return infoFormat(route) == InfoFormat::IPv4 ? route.gateway + " Netmask: " + route.netmask
                                               : route.gateway + "/" + std::to_string(route.prefixLength);
}

/// What `function` makes of the route, if there is one.
template <class Function>
auto ofRoute(Function function) {
  return [function](auto& r) { return r.route ? std::optional(function(*r.route)) : std::nullopt; };
}

std::string gatewayName(const InterfaceRecord& interface) {
  return "RemoteServiceAccessPoint: Gateway for " +
         known(interface, &InterfaceRecord::getOsDeviceName).value_or("unknown port");
}

}  // namespace

const PropertyRows<ZEB_EthernetRemoteServiceAccessPoint::Reading>
    ZEB_EthernetRemoteServiceAccessPoint::kProperties{
        P::key("CreationClassName"),
        P::key("SystemName"),
        P::key("SystemCreationClassName"),
        P::string(
            "ElementName", [](Reading& r) { return gatewayName(r.record); }, always),
        P::key("Name"),
        P::uint16("InfoFormat", ofRoute(infoFormat), orOmit),
        P::string("AccessInfo", ofRoute(accessInfo), orOmit),
        P::uint16("AccessContext", constant(kDefaultGateway)),
    };

ZEB_EthernetRemoteServiceAccessPoint::ZEB_EthernetRemoteServiceAccessPoint(const Logger& logger,
                                                                           const std::string& nameSpace,
                                                                           const InterfaceRecord& interface)
    : ManagedObject(logger, nameSpace, kClassName,
                    systemScopedKeys(kClassName, "Name", gatewayName(interface))),
      _interface(interface) {}

CmpiInstance ZEB_EthernetRemoteServiceAccessPoint::makeInstance() {
  const InterfaceRecord record = refreshed(_interface);
  return kProperties.makeInstance(makeObjectPath(),
                                  {record, known(record, &InterfaceRecord::getDefaultGateway)});
}

void ZEB_EthernetRemoteServiceAccessPoint::manageDynamic(bool indicationsEnabled) {
  logger().info("manageDynamic()");
  if (indicationsEnabled) logger().info("indications enabled");
}

}  // namespace ZEB
