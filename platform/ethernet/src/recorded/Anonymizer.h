#pragma once

#include <cstdint>

#include "snapshot/HostSnapshot.h"

namespace ZEB::ethernet {

/// Replaces MAC addresses, also in the names of interfaces, IP addresses and serial numbers, equal ones by
/// equal ones. IP addresses that shared a network still do; the first octet of IPv4 ones, the first two of
/// IPv6 ones and the link-local networks stay. `key` chooses among replacements; without it the IP addresses
/// cannot be told back.
void anonymize(HostSnapshot& snapshot, std::uint64_t key);

}  // namespace ZEB::ethernet
