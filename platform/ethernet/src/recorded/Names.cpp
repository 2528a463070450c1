#include "recorded/Names.h"

#include <linux/if.h>

#include <algorithm>
#include <array>
#include <charconv>

namespace ZEB::ethernet {
namespace {

struct Flag {
  std::uint32_t bit;
  std::string_view name;
};

constexpr auto kFlags = std::to_array<Flag>({
    {IFF_UP, "UP"},
    {IFF_BROADCAST, "BROADCAST"},
    {IFF_DEBUG, "DEBUG"},
    {IFF_LOOPBACK, "LOOPBACK"},
    {IFF_POINTOPOINT, "POINTOPOINT"},
    {IFF_RUNNING, "RUNNING"},
    {IFF_NOARP, "NOARP"},
    {IFF_PROMISC, "PROMISC"},
    {IFF_ALLMULTI, "ALLMULTI"},
    {IFF_MASTER, "MASTER"},
    {IFF_SLAVE, "SLAVE"},
    {IFF_MULTICAST, "MULTICAST"},
    {IFF_LOWER_UP, "LOWER_UP"},
    {IFF_DORMANT, "DORMANT"},
});

constexpr auto kOperStates = std::to_array<std::string_view>(
    {"UNKNOWN", "NOTPRESENT", "DOWN", "LOWERLAYERDOWN", "TESTING", "DORMANT", "UP"});

}  // namespace

std::vector<std::string> flagNames(std::uint32_t flags) {
  std::vector<std::string> names;
  for (const Flag& flag : kFlags) {
    if ((flags & flag.bit) != 0) names.emplace_back(flag.name);
    flags &= ~flag.bit;
  }
  if (flags != 0) {
    char digits[8];
    const auto end = std::to_chars(digits, digits + sizeof digits, flags, 16).ptr;
    names.push_back("0x" + std::string(digits, end));
  }
  return names;
}

std::optional<std::uint32_t> flagOf(std::string_view name) {
  const auto found = std::ranges::find(kFlags, name, &Flag::name);
  if (found != kFlags.end()) return found->bit;
  std::uint32_t bits = 0;
  const char* end = name.data() + name.size();
  if (!name.starts_with("0x") || std::from_chars(name.data() + 2, end, bits, 16).ptr != end)
    return std::nullopt;
  return bits;
}

std::string_view ipFamilyName(IpFamily family) {
  return family == IpFamily::V4 ? "ipv4" : "ipv6";
}

std::optional<IpFamily> ipFamilyOf(std::string_view name) {
  for (const IpFamily family : {IpFamily::V4, IpFamily::V6}) {
    if (name == ipFamilyName(family)) return family;
  }
  return std::nullopt;
}

std::string_view operStateName(std::uint8_t state) {
  return state < kOperStates.size() ? kOperStates[state] : "";
}

std::optional<std::uint8_t> operStateOf(std::string_view name) {
  const auto found = std::ranges::find(kOperStates, name);
  if (found == kOperStates.end()) return std::nullopt;
  return static_cast<std::uint8_t>(found - kOperStates.begin());
}

}  // namespace ZEB::ethernet
