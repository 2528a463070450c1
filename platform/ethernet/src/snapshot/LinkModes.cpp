#include "snapshot/LinkModes.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <set>

namespace ZEB::ethernet {
namespace {

// By bit number of the kernel's link mode masks. The headers of older kernels stop earlier than their
// successors' replies, so the names stand here and not in terms of the headers.
constexpr auto kNames = std::to_array<std::string_view>({
    // clang-format off
    "10baseT/Half",
    "10baseT/Full",
    "100baseT/Half",
    "100baseT/Full",
    "1000baseT/Half",
    "1000baseT/Full",
    "Autoneg",
    "TP",
    "AUI",
    "MII",
    "FIBRE",
    "BNC",
    "10000baseT/Full",
    "Pause",
    "Asym_Pause",
    "2500baseX/Full",
    "Backplane",
    "1000baseKX/Full",
    "10000baseKX4/Full",
    "10000baseKR/Full",
    "10000baseR_FEC",
    "20000baseMLD2/Full",
    "20000baseKR2/Full",
    "40000baseKR4/Full",
    "40000baseCR4/Full",
    "40000baseSR4/Full",
    "40000baseLR4/Full",
    "56000baseKR4/Full",
    "56000baseCR4/Full",
    "56000baseSR4/Full",
    "56000baseLR4/Full",
    "25000baseCR/Full",
    "25000baseKR/Full",
    "25000baseSR/Full",
    "50000baseCR2/Full",
    "50000baseKR2/Full",
    "100000baseKR4/Full",
    "100000baseSR4/Full",
    "100000baseCR4/Full",
    "100000baseLR4_ER4/Full",
    "50000baseSR2/Full",
    "1000baseX/Full",
    "10000baseCR/Full",
    "10000baseSR/Full",
    "10000baseLR/Full",
    "10000baseLRM/Full",
    "10000baseER/Full",
    "2500baseT/Full",
    "5000baseT/Full",
    "FEC_NONE",
    "FEC_RS",
    "FEC_BASER",
    "50000baseKR/Full",
    "50000baseSR/Full",
    "50000baseCR/Full",
    "50000baseLR_ER_FR/Full",
    "50000baseDR/Full",
    "100000baseKR2/Full",
    "100000baseSR2/Full",
    "100000baseCR2/Full",
    "100000baseLR2_ER2_FR2/Full",
    "100000baseDR2/Full",
    "200000baseKR4/Full",
    "200000baseSR4/Full",
    "200000baseLR4_ER4_FR4/Full",
    "200000baseDR4/Full",
    "200000baseCR4/Full",
    "100baseT1/Full",
    "1000baseT1/Full",
    "400000baseKR8/Full",
    "400000baseSR8/Full",
    "400000baseLR8_ER8_FR8/Full",
    "400000baseDR8/Full",
    "400000baseCR8/Full",
    "FEC_LLRS",
    "100000baseKR/Full",
    "100000baseSR/Full",
    "100000baseLR_ER_FR/Full",
    "100000baseCR/Full",
    "100000baseDR/Full",
    "200000baseKR2/Full",
    "200000baseSR2/Full",
    "200000baseLR2_ER2_FR2/Full",
    "200000baseDR2/Full",
    "200000baseCR2/Full",
    "400000baseKR4/Full",
    "400000baseSR4/Full",
    "400000baseLR4_ER4_FR4/Full",
    "400000baseDR4/Full",
    "400000baseCR4/Full",
    "100baseFX/Half",
    "100baseFX/Full",
    "10baseT1L/Full",
    "800000baseCR8/Full",
    "800000baseKR8/Full",
    "800000baseDR8/Full",
    "800000baseDR8_2/Full",
    "800000baseSR8/Full",
    "800000baseVR8/Full",
    "10baseT1S/Full",
    "10baseT1S/Half",
    "10baseT1S_P2MP/Half",
    "10baseT1BRR/Full",
    "200000baseCR/Full",
    "200000baseKR/Full",
    "200000baseDR/Full",
    "200000baseDR_2/Full",
    "200000baseSR/Full",
    "200000baseVR/Full",
    "400000baseCR2/Full",
    "400000baseKR2/Full",
    "400000baseDR2/Full",
    "400000baseDR2_2/Full",
    "400000baseSR2/Full",
    "400000baseVR2/Full",
    "800000baseCR4/Full",
    "800000baseKR4/Full",
    "800000baseDR4/Full",
    "800000baseDR4_2/Full",
    "800000baseSR4/Full",
    "800000baseVR4/Full",
    "1600000baseCR8/Full",
    "1600000baseKR8/Full",
    "1600000baseDR8/Full",
    "1600000baseDR8_2/Full",
    // clang-format on
});
static_assert(kNames.size() <= kLinkModeCount);

/// Calls `look` with the speed and the name of each that is a mode.
template <class Look>
void forEachMode(const LinkModes& modes, const Look& look) {
  if (modes.none()) return;
  for (std::size_t bit = 0; bit < kNames.size(); ++bit) {
    if (!modes[bit]) continue;
    if (const std::uint32_t speed = linkModeSpeed(kNames[bit]); speed > 0) look(speed, kNames[bit]);
  }
}

}  // namespace

std::string_view linkModeName(std::size_t bit) {
  return bit < kNames.size() ? kNames[bit] : "";
}

std::optional<std::size_t> linkModeBit(std::string_view name) {
  const auto found = std::find(kNames.begin(), kNames.end(), name);
  if (found == kNames.end()) return std::nullopt;
  return static_cast<std::size_t>(found - kNames.begin());
}

std::uint32_t linkModeSpeed(std::string_view name) {
  std::uint32_t speed = 0;
  const auto end = std::from_chars(name.data(), name.data() + name.size(), speed).ptr;
  return name.substr(static_cast<std::size_t>(end - name.data())).starts_with("base") ? speed : 0;
}

std::string_view linkModeMedium(std::string_view name) {
  constexpr std::string_view kBase = "base";
  if (linkModeSpeed(name) == 0) return "";
  const auto begin = name.find(kBase) + kBase.size();
  return name.substr(begin, name.find('/') - begin);
}

std::uint32_t fastestSpeed(const LinkModes& modes) {
  std::uint32_t fastest = 0;
  forEachMode(modes, [&](std::uint32_t speed, std::string_view) { fastest = std::max(fastest, speed); });
  return fastest;
}

std::uint32_t fastestCommonSpeed(const LinkModes& modes, const LinkModes& others) {
  std::set<std::uint32_t> speeds;
  forEachMode(others, [&](std::uint32_t speed, std::string_view) { speeds.insert(speed); });
  std::uint32_t fastest = 0;
  forEachMode(modes, [&](std::uint32_t speed, std::string_view) {
    if (speeds.contains(speed)) fastest = std::max(fastest, speed);
  });
  return fastest;
}

std::size_t countOfModes(const LinkModes& modes) {
  std::size_t count = 0;
  forEachMode(modes, [&](std::uint32_t, std::string_view) { ++count; });
  return count;
}

bool hasFullDuplex(const LinkModes& modes, std::uint32_t speed) {
  bool found = false;
  forEachMode(modes, [&](std::uint32_t own, std::string_view name) {
    found |= own == speed && name.ends_with("/Full");
  });
  return found;
}

}  // namespace ZEB::ethernet
