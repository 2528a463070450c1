#include "model/Kinds.h"

#include <net/if_arp.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace ZEB::ethernet {
namespace {

constexpr auto kVirtualPortKinds = std::to_array<std::string_view>(
    {"", "veth", "dummy", "tun", "macvlan", "macvtap", "ifb", "netkit", "netdevsim"});

std::string_view skipNumbered(std::string_view text, std::string_view prefix) {
  if (!text.starts_with(prefix)) return text;
  const auto rest = text.substr(prefix.size());
  const auto end = std::min(rest.find_first_not_of("0123456789"), rest.size());
  return end == 0 ? text : rest.substr(end);
}

bool hasHardware(const LinkFacts& link) {
  return link.hardware || link.parentDevice;
}

}  // namespace

bool isTeam(const LinkFacts& link) {
  return link.kind == "bond";
}

bool isVlan(const LinkFacts& link) {
  return link.kind == "vlan";
}

bool isRepresentorName(std::string_view portName) {
  const auto controller = skipNumbered(portName, "c");
  const auto function = skipNumbered(controller, "pf");
  if (function == controller) return false;
  return function.empty() || skipNumbered(function, "vf").empty() || skipNumbered(function, "sf").empty();
}

bool isPort(const LinkFacts& link, bool includeVirtual) {
  if (link.type.value_or(ARPHRD_ETHER) != ARPHRD_ETHER) return false;
  const bool representor = link.portName && isRepresentorName(*link.portName);
  // A switch chip's ports have a driver kind and their own device.
  if (hasHardware(link) && !representor && (link.kind.empty() || link.kind == "dsa")) return true;
  const auto& kinds = kVirtualPortKinds;
  return includeVirtual && std::find(kinds.begin(), kinds.end(), link.kind) != kinds.end();
}

}  // namespace ZEB::ethernet
