#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace ZEB::ethernet {

/// What an IF_OPER_* state means, in words.
const char* operStateText(std::uint8_t operState);

/// Why the link is down, as the driver reported it by ETHTOOL_LINK_EXT_STATE_* and its substate.
std::string extendedStateText(std::uint8_t state, std::optional<std::uint8_t> substate);

}  // namespace ZEB::ethernet
