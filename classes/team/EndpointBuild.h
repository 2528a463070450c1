#pragma once

#include <cstdint>

#include "classes/port/InstanceMaker.h"
#include "classes/port/InterfaceRecord.h"

namespace ZEB {

/// The endpoints of ports, teams and VLANs, which are built alike and numbered together.
class EndpointBuild {
 public:
  explicit EndpointBuild(const InstanceMaker& maker) : _maker(maker) {}

  /// A LAN endpoint of an interface with its IP endpoints and gateways. `ToLANEndpoint` ties it to `carrier`,
  /// the port or the team that the interface is or stands on.
  template <class ToLANEndpoint>
  void build(const CmpiCpp::CmpiObjectPath& carrier, const InterfaceRecord& interface) {
    const CmpiCpp::CmpiObjectPath lanEndpoint = buildLANEndpoint(interface);
    _maker.tie<ToLANEndpoint>(carrier, lanEndpoint);
    buildIPEndpoints(lanEndpoint, interface);
  }

 private:
  struct FamilyRule;

  CmpiCpp::CmpiObjectPath buildLANEndpoint(const InterfaceRecord& interface);
  void buildIPEndpoints(const CmpiCpp::CmpiObjectPath& lanEndpoint, const InterfaceRecord& interface);
  /// The IP endpoints for `addresses` addresses of one family.
  void buildAddresses(const FamilyRule& rule, std::size_t addresses,
                      const CmpiCpp::CmpiObjectPath& lanEndpoint, const InterfaceRecord& interface);
  /// A gateway, once for every IP endpoint that uses it.
  void buildGateway(const CmpiCpp::CmpiObjectPath& ipEndpoint, const InterfaceRecord& interface);

  const InstanceMaker& _maker;
  // The next of each; they wrap.
  std::uint16_t _lanEndpointNumber = 1;
  std::uint16_t _ipEndpointNumber = 1;
};

}  // namespace ZEB
