#pragma once

#include <optional>

#include "netlink/Attributes.h"
#include "snapshot/HostSnapshot.h"

/// From the structures of ethtool's ioctl to facts: what kernels before 5.6 have in the place of netlink.
namespace ZEB::ethernet {

/// ETHTOOL_GLINKSETTINGS, with the sets of modes behind the fixed part. A structure whose sets are cut short
/// says nothing.
void mergeLinkSettings(Bytes settings, EthtoolFacts& facts);

/// ETHTOOL_GWOL.
void mergeWakeOnLan(Bytes settings, EthtoolFacts& facts);

/// ETHTOOL_GEEE.
void mergeEnergyEfficiency(Bytes settings, EthtoolFacts& facts);

/// ETHTOOL_GPERMADDR, with the address behind the fixed part.
std::optional<HardwareAddress> decodePermanentAddress(Bytes answer);

}  // namespace ZEB::ethernet
