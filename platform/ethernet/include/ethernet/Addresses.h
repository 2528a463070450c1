#pragma once

#include <cstdint>
#include <string>

namespace ZEB {

/// An IPv4 address of an interface: dotted address and mask.
struct IPv4AddressRecord {
  std::string address;
  std::string netmask;
  friend bool operator==(const IPv4AddressRecord&, const IPv4AddressRecord&) = default;
};

/// An IPv6 address of an interface, in the shortest text form.
struct IPv6AddressRecord {
  std::string address;
  std::uint16_t prefixLength = 0;
  friend bool operator==(const IPv6AddressRecord&, const IPv6AddressRecord&) = default;
};

/// A default route. Mask and prefix length are those of the interface's own network that holds the gateway; a
/// gateway outside all of them is reached as a single host, so it has a full mask.
struct route_t {
  std::string family;  ///< "ipv4" or "ipv6", the family of the gateway's address
  std::string gateway;
  std::string netmask;  ///< empty for "ipv6"
  std::uint16_t prefixLength = 0;
  friend bool operator==(const route_t&, const route_t&) = default;
};

}  // namespace ZEB
