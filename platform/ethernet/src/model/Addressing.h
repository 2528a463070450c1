#pragma once

#include <optional>
#include <span>
#include <vector>

#include "ethernet/Addresses.h"
#include "ethernet/EthernetEnums.h"
#include "model/RouteTables.h"
#include "snapshot/HostSnapshot.h"

namespace ZEB::ethernet {

std::vector<IPv4AddressRecord> ipv4Addresses(const std::vector<AddressFacts>& addresses);
std::vector<IPv6AddressRecord> ipv6Addresses(const std::vector<AddressFacts>& addresses);

EthPortAddressOriginEnum addressOrigin(const AddressFacts& address);

/// Of the first IPv4 address, else of the first IPv6 address that is not link local, else of the first
/// address.
std::optional<EthPortAddressOriginEnum> interfaceOrigin(const std::vector<AddressFacts>& addresses);

/// Of the routes that apply, those in a table that a rule names before others, then the IPv4 route before the
/// IPv6 one, then the lowest metric, then the main table before others. Null when none applies.
const RouteFacts* preferredRoute(std::span<const RouteFacts> routes, const RouteTables& tables);

/// A route in the words of a record, with mask and prefix length of the network in `addresses` that holds the
/// gateway: not those of the default route, which has none. A gateway outside of all of them, as behind a
/// host route, is known by itself alone.
route_t describeRoute(const RouteFacts& route, std::span<const AddressFacts> addresses);

}  // namespace ZEB::ethernet
