#include "model/Addressing.h"

#include <linux/if_addr.h>
#include <linux/rtnetlink.h>

#include <algorithm>
#include <tuple>

namespace ZEB::ethernet {
namespace {

using Origin = EthPortAddressOriginEnum;

Origin dynamicIpv6Origin(const AddressFacts& address) {
  if (address.protocol == IFAPROT_KERNEL_RA) return Origin::IPv6AutoConfig;
  // Kernels before 5.18 do not say who made an address. A lease gives a single address, an advertisement a
  // prefix.
  return address.prefixLength == address.address.width() ? Origin::Dhcpv6 : Origin::IPv6AutoConfig;
}

unsigned networkPrefix(const IpAddress& gateway, std::span<const AddressFacts> addresses) {
  unsigned longest = 0;
  for (const AddressFacts& own : addresses) {
    if (sameNetwork(own.address, gateway, own.prefixLength))
      longest = std::max<unsigned>(longest, own.prefixLength);
  }
  if (longest != 0) return longest;
  // Every IPv6 interface is on the link-local network, whose prefix is always this long.
  return gateway.family == IpFamily::V6 && isLinkLocal(gateway) ? 64 : gateway.width();
}

}  // namespace

std::vector<IPv4AddressRecord> ipv4Addresses(const std::vector<AddressFacts>& addresses) {
  std::vector<IPv4AddressRecord> records;
  for (const AddressFacts& facts : addresses) {
    if (facts.address.family == IpFamily::V4) {
      records.push_back({toText(facts.address), toText(netmask(facts.prefixLength))});
    }
  }
  return records;
}

std::vector<IPv6AddressRecord> ipv6Addresses(const std::vector<AddressFacts>& addresses) {
  std::vector<IPv6AddressRecord> records;
  for (const AddressFacts& facts : addresses) {
    if (facts.address.family == IpFamily::V6) records.push_back({toText(facts.address), facts.prefixLength});
  }
  return records;
}

EthPortAddressOriginEnum addressOrigin(const AddressFacts& address) {
  const bool v4 = address.address.family == IpFamily::V4;
  if (isLinkLocal(address.address)) return v4 ? Origin::IPv4LinkLocal : Origin::LinkLocal;
  if ((address.flags & IFA_F_PERMANENT) != 0) return Origin::Static;
  return v4 ? Origin::Dhcp : dynamicIpv6Origin(address);
}

std::optional<EthPortAddressOriginEnum> interfaceOrigin(const std::vector<AddressFacts>& addresses) {
  if (addresses.empty()) return std::nullopt;
  const auto rank = [](const AddressFacts& facts) {
    return facts.address.family == IpFamily::V4 ? 0 : isLinkLocal(facts.address) ? 2 : 1;
  };
  const auto best = std::min_element(addresses.begin(), addresses.end(),
                                     [&](const auto& a, const auto& b) { return rank(a) < rank(b); });
  return addressOrigin(*best);
}

const RouteFacts* preferredRoute(std::span<const RouteFacts> routes, const RouteTables& tables) {
  const auto rank = [&](const RouteFacts& route) {
    return std::tuple(tables.useOf(route), route.gateway.family, route.metric, route.table != RT_TABLE_MAIN,
                      route.table);
  };
  const auto best = std::min_element(routes.begin(), routes.end(),
                                     [&](const auto& a, const auto& b) { return rank(a) < rank(b); });
  return best == routes.end() || tables.useOf(*best) == RouteTables::Use::None ? nullptr : &*best;
}

route_t describeRoute(const RouteFacts& route, std::span<const AddressFacts> addresses) {
  const unsigned prefix = networkPrefix(route.gateway, addresses);
  const bool v4 = route.gateway.family == IpFamily::V4;
  return {v4 ? "ipv4" : "ipv6", toText(route.gateway), v4 ? toText(netmask(prefix)) : "",
          static_cast<std::uint16_t>(prefix)};
}

}  // namespace ZEB::ethernet
