#include <linux/if_addr.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>

#include "netlink/RtnlDecoders.h"

namespace ZEB::ethernet {
namespace {

using Kind = AttributeKind;

constexpr AttributePolicy kAddressPolicy{
    {IFA_ADDRESS, Kind::Binary},
    {IFA_LOCAL, Kind::Binary},
    {IFA_FLAGS, Kind::U32},
    {IFA_PROTO, Kind::U8},
};

constexpr AttributePolicy kRoutePolicy{
    {RTA_OIF, Kind::U32},   {RTA_GATEWAY, Kind::Binary},   {RTA_PRIORITY, Kind::U32},
    {RTA_TABLE, Kind::U32}, {RTA_MULTIPATH, Kind::Binary}, {RTA_VIA, Kind::Binary},
};

constexpr AttributePolicy kNextHopPolicy{{RTA_GATEWAY, Kind::Binary}, {RTA_VIA, Kind::Binary}};

constexpr unsigned kUnusableNextHop = RTNH_F_DEAD | RTNH_F_LINKDOWN;

std::optional<IpFamily> ipFamily(std::uint8_t family) {
  if (family == AF_INET) return IpFamily::V4;
  return family == AF_INET6 ? std::optional(IpFamily::V6) : std::nullopt;
}

std::optional<IpAddress> addressOf(std::optional<Bytes> bytes, IpFamily family) {
  const auto address = bytes ? ipAddress(*bytes) : std::nullopt;
  return address && address->family == family ? address : std::nullopt;
}

/// The gateway, which RTA_VIA gives when it is of another family than the route.
std::optional<IpAddress> gatewayOf(const Attributes& attributes, IpFamily family) {
  if (const auto gateway = addressOf(attributes.bytes(RTA_GATEWAY), family)) return gateway;
  const auto via = attributes.bytes(RTA_VIA);
  const auto viaFamily = via ? leading<std::uint16_t>(*via) : std::nullopt;
  if (!viaFamily || *viaFamily > 0xFF) return std::nullopt;
  const auto known = ipFamily(static_cast<std::uint8_t>(*viaFamily));
  return known ? addressOf(via->subspan(sizeof *viaFamily), *known) : std::nullopt;
}

bool isDefaultRoute(const rtmsg& route) {
  return route.rtm_dst_len == 0 && route.rtm_type == RTN_UNICAST && (route.rtm_flags & RTM_F_CLONED) == 0;
}

/// Next hops of a route of several, each a fixed part with attributes of its own.
void appendNextHops(Bytes hops, IpFamily family, RouteFacts route, std::vector<RouteFacts>& routes) {
  while (const auto hop = leading<rtnexthop>(hops)) {
    if (hop->rtnh_len < sizeof *hop || hop->rtnh_len > hops.size()) return;
    const Attributes attributes(hops.first(hop->rtnh_len).subspan(sizeof *hop), kNextHopPolicy);
    const auto gateway = gatewayOf(attributes, family);
    if (gateway && hop->rtnh_ifindex > 0 && (hop->rtnh_flags & kUnusableNextHop) == 0) {
      route.index = static_cast<std::uint32_t>(hop->rtnh_ifindex);
      route.gateway = *gateway;
      routes.push_back(route);
    }
    hops = following(hops, hop->rtnh_len);
  }
}

}  // namespace

std::optional<AddressFacts> decodeAddress(Bytes payload) {
  const auto header = leading<ifaddrmsg>(payload);
  const auto family = header ? ipFamily(header->ifa_family) : std::nullopt;
  if (!family || header->ifa_index == 0) return std::nullopt;
  const Attributes attributes(following(payload, sizeof *header), kAddressPolicy);

  // On a point-to-point link the address is the far end's and the local one is ours.
  auto address = addressOf(attributes.bytes(IFA_LOCAL), *family);
  if (!address) address = addressOf(attributes.bytes(IFA_ADDRESS), *family);
  if (!address || header->ifa_prefixlen > address->width()) return std::nullopt;
  const std::uint32_t flags = attributes.u32(IFA_FLAGS).value_or(header->ifa_flags);
  return AddressFacts{header->ifa_index, *address, header->ifa_prefixlen, flags, attributes.u8(IFA_PROTO)};
}

std::vector<RouteFacts> decodeDefaultRoute(Bytes payload) {
  std::vector<RouteFacts> routes;
  const auto header = leading<rtmsg>(payload);
  const auto family = header ? ipFamily(header->rtm_family) : std::nullopt;
  if (!family || !isDefaultRoute(*header)) return routes;
  const Attributes attributes(following(payload, sizeof *header), kRoutePolicy);

  RouteFacts route;
  route.metric = attributes.u32(RTA_PRIORITY).value_or(0);
  route.table = attributes.u32(RTA_TABLE).value_or(header->rtm_table);
  if (const auto hops = attributes.bytes(RTA_MULTIPATH)) appendNextHops(*hops, *family, route, routes);
  const auto index = attributes.u32(RTA_OIF);
  const auto gateway = gatewayOf(attributes, *family);
  if (index && *index != 0 && gateway && (header->rtm_flags & kUnusableNextHop) == 0) {
    route.index = *index;
    route.gateway = *gateway;
    routes.push_back(route);
  }
  return routes;
}

bool isRelevant(std::uint16_t messageType, Bytes payload) {
  if (messageType != RTM_NEWROUTE && messageType != RTM_DELROUTE) return true;
  const auto header = leading<rtmsg>(payload);
  return !header || isDefaultRoute(*header);
}

}  // namespace ZEB::ethernet
