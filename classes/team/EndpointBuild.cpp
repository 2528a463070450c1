#include "classes/team/EndpointBuild.h"

#include "classes/port/Associations.h"
#include "classes/port/Known.h"
#include "classes/port/ZEB_EthernetLANEndpoint.h"
#include "classes/port/ZEB_EthernetRemoteServiceAccessPoint.h"
#include "classes/port/ZEB_IPProtocolEndpoint.h"

namespace ZEB {

using CmpiCpp::CmpiObjectPath;

/// How the build treats the addresses of a family.
struct EndpointBuild::FamilyRule {
  IpFamily family;
  std::string_view gatewayFamily;
  bool onlyInUse;  ///< IPv6 addresses count whatever the interface's status
};

CmpiObjectPath EndpointBuild::buildLANEndpoint(const InterfaceRecord& interface) {
  const EndpointNumber number{_lanEndpointNumber++};
  const auto lanEndpoint = _maker.createEnd<ZEB_EthernetLANEndpoint>(number, interface);
  _maker.tie<ZEB_EthernetLANHostedAccessPoint>(_maker.system(), lanEndpoint);
  return lanEndpoint;
}

void EndpointBuild::buildIPEndpoints(const CmpiObjectPath& lanEndpoint, const InterfaceRecord& interface) {
  constexpr FamilyRule kIPv4{IpFamily::IPv4, "ipv4", true};
  constexpr FamilyRule kIPv6{IpFamily::IPv6, "ipv6", false};
  buildAddresses(kIPv4, interface.getIPv4Addresses().size(), lanEndpoint, interface);
  buildAddresses(kIPv6, interface.getIPv6Addresses().size(), lanEndpoint, interface);
}

void EndpointBuild::buildAddresses(const FamilyRule& rule, std::size_t addresses,
                                   const CmpiObjectPath& lanEndpoint, const InterfaceRecord& interface) {
  if (rule.onlyInUse && !interface.usesIPv4()) return;
  const auto gateway = known(interface, &InterfaceRecord::getDefaultGateway);
  const bool reachesGateway = gateway && gateway->family == rule.gatewayFamily;
  for (std::uint32_t index = 0; index < addresses; ++index) {
    const EndpointNumber number{_ipEndpointNumber++};
    const auto ipEndpoint =
        _maker.createEnd<ZEB_IPProtocolEndpoint>(number, AddressIndex{index}, rule.family, interface);
    _maker.tie<ZEB_IPBindsToEthernetLANEndpoint>(lanEndpoint, ipEndpoint);
    _maker.tie<ZEB_EthIPHostedAccessPoint>(_maker.system(), ipEndpoint);
    if (reachesGateway) buildGateway(ipEndpoint, interface);
  }
}

void EndpointBuild::buildGateway(const CmpiObjectPath& ipEndpoint, const InterfaceRecord& interface) {
  const auto gateway = _maker.createEnd<ZEB_EthernetRemoteServiceAccessPoint>(interface);
  _maker.tie<ZEB_EthernetRemoteAccessAvailableToIPEndpoint>(gateway, ipEndpoint);
  _maker.tie<ZEB_EthernetRemoteServiceHostedAccessPoint>(_maker.system(), gateway);
}

}  // namespace ZEB
