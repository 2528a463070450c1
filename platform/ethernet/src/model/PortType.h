#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "ethernet/EthernetEnums.h"
#include "snapshot/HostSnapshot.h"

namespace ZEB::ethernet {

/// From the supported link modes, narrowed by the medium in use where several share the fastest speed. Other
/// when the value map has no number for it, or when it stays ambiguous; nothing when no mode is known.
std::optional<EthPortTypeEnum> portType(const EthtoolFacts& ethtool);

std::optional<EthPortLinkEnum> linkTechnology(const LinkFacts& link);

/// Codes of `EthCapabilityEnum`, ascending.
std::vector<std::uint16_t> supportedCapabilities(const EthtoolFacts& ethtool);
std::vector<std::uint16_t> enabledCapabilities(const EthtoolFacts& ethtool);

}  // namespace ZEB::ethernet
