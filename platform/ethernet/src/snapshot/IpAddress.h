#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace ZEB::ethernet {

enum class IpFamily : std::uint8_t { V4 = 4, V6 = 6 };

/// An IPv4 address in the first four bytes, or an IPv6 address.
struct IpAddress {
  IpFamily family = IpFamily::V4;
  std::array<std::uint8_t, 16> bytes{};
  friend bool operator==(const IpAddress&, const IpAddress&) = default;

  /// Bits in an address of this family.
  unsigned width() const { return family == IpFamily::V4 ? 32 : 128; }
};

/// Four or sixteen bytes; nothing for any other number.
std::optional<IpAddress> ipAddress(std::span<const std::byte> bytes);

std::string toText(const IpAddress& address);
std::optional<IpAddress> parseIpAddress(std::string_view text);

/// The IPv4 mask of a prefix length, at most 32.
IpAddress netmask(unsigned prefixLength);

/// Whether both lie in the network of that prefix length. False across families.
bool sameNetwork(const IpAddress& a, const IpAddress& b, unsigned prefixLength);

/// 169.254.0.0/16 or fe80::/10.
bool isLinkLocal(const IpAddress& address);

}  // namespace ZEB::ethernet
