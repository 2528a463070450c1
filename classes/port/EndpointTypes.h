#pragma once

#include <cstdint>

namespace ZEB {

/// What an endpoint is numbered by among all of its class, from 1.
enum class EndpointNumber : std::uint32_t {};

/// Position in an interface's list of addresses of one family, from 0.
enum class AddressIndex : std::uint32_t {};

enum class IpFamily : std::uint8_t { IPv4, IPv6 };

constexpr std::uint32_t number(EndpointNumber endpoint) {
  return static_cast<std::uint32_t>(endpoint);
}
constexpr std::uint32_t position(AddressIndex index) {
  return static_cast<std::uint32_t>(index);
}

}  // namespace ZEB
