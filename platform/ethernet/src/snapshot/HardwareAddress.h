#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace ZEB::ethernet {

/// A MAC address.
using HardwareAddress = std::array<std::uint8_t, 6>;

/// Nothing for bytes that are no MAC address by their number, and for the address of all zeros, which stands
/// for none.
std::optional<HardwareAddress> hardwareAddress(std::span<const std::byte> bytes);

/// "00:1a:2b:3c:4d:5e".
std::string toText(const HardwareAddress& address);
std::optional<HardwareAddress> parseHardwareAddress(std::string_view text);

}  // namespace ZEB::ethernet
