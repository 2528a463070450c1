#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "netlink/Attributes.h"
#include "snapshot/HostSnapshot.h"

/// From the payload of routing netlink messages to facts. What a message does not say, or says in a form that
/// does not fit, stays unknown; a message that does not even name its interface is nothing.
namespace ZEB::ethernet {

/// RTM_NEWLINK.
std::optional<LinkFacts> decodeLink(Bytes payload);

/// RTM_NEWSTATS.
std::optional<InterfaceCounters> decodeCounters(Bytes payload);

/// RTM_NEWADDR, of IPv4 and IPv6.
std::optional<AddressFacts> decodeAddress(Bytes payload);

/// RTM_NEWROUTE: one fact for each next hop of a default route with a gateway, none for any other route.
std::vector<RouteFacts> decodeDefaultRoute(Bytes payload);

/// RTM_NEWRULE; nothing for a rule that has no default route looked up in a table.
std::optional<RuleFacts> decodeRule(Bytes payload);

/// Whether an announcement of that message type can change anything that is read here. Of routes, only
/// default ones can.
bool isRelevant(std::uint16_t messageType, Bytes payload);

}  // namespace ZEB::ethernet
