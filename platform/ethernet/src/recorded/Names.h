#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "snapshot/IpAddress.h"

/// Words that snapshot files have for the kernel's numbers where people write them.
namespace ZEB::ethernet {

/// IFF_* bits: "UP", "LOWER_UP" and so on; bits without a name as one hexadecimal number, "0x40000000".
std::vector<std::string> flagNames(std::uint32_t flags);
std::optional<std::uint32_t> flagOf(std::string_view name);

/// IF_OPER_* states: "UP", "LOWERLAYERDOWN" and so on; a state without a name is nothing.
std::string_view operStateName(std::uint8_t state);
std::optional<std::uint8_t> operStateOf(std::string_view name);

/// "ipv4" and "ipv6".
std::string_view ipFamilyName(IpFamily family);
std::optional<IpFamily> ipFamilyOf(std::string_view name);

}  // namespace ZEB::ethernet
