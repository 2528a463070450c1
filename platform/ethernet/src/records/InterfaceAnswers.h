#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "model/Addressing.h"
#include "model/Facts.h"
#include "records/Answer.h"

/// What every record of an interface answers alike. Each takes the record's facts, which may be null.
namespace ZEB::ethernet {

using AnyFacts = std::shared_ptr<const InterfaceFacts>;

inline std::optional<std::string> nameOf(const InterfaceFacts& facts) {
  return facts.link.name.empty() ? std::nullopt : std::optional(facts.link.name);
}

inline int numberAnswer(const AnyFacts& facts, std::uint32_t& number) {
  return answer(fact(facts, [](const auto& f) { return std::optional(f.link.index); }), number);
}

inline std::optional<std::string> addressText(const std::optional<HardwareAddress>& address) {
  return address ? std::optional(toText(*address)) : std::nullopt;
}

inline int originAnswer(const AnyFacts& facts, EthPortAddressOriginEnum& origin) {
  return answer(fact(facts, [](const auto& f) { return interfaceOrigin(f.addresses); }), origin);
}

inline int gatewayAnswer(const AnyFacts& facts, route_t& route) {
  return answer(fact(facts, [](const auto& f) { return f.gateway; }), route);
}

inline int frameSizeAnswer(const AnyFacts& facts, unsigned long& size) {
  return answer(fact(facts, [](const auto& f) { return f.link.mtu; }), size);
}

inline std::vector<IPv4AddressRecord> ipv4Answer(const AnyFacts& facts) {
  return facts ? ipv4Addresses(facts->addresses) : std::vector<IPv4AddressRecord>{};
}

inline std::vector<IPv6AddressRecord> ipv6Answer(const AnyFacts& facts) {
  return facts ? ipv6Addresses(facts->addresses) : std::vector<IPv6AddressRecord>{};
}

/// Mbit/s, as the kernel counts, to bits a second.
inline std::optional<unsigned long> bitsPerSecond(std::optional<std::uint32_t> megabits) {
  if (!megabits) return std::nullopt;
  return *megabits * 1'000'000UL;
}

}  // namespace ZEB::ethernet
