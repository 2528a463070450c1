#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ZEB::ethernet {

/// A PCI function's place.
struct PciAddress {
  std::uint32_t domain = 0;
  std::uint8_t bus = 0, device = 0, function = 0;
  friend auto operator<=>(const PciAddress&, const PciAddress&) = default;
};

/// "0000:03:00.1".
std::string toText(const PciAddress& address);
std::optional<PciAddress> parsePciAddress(std::string_view text);

}  // namespace ZEB::ethernet
