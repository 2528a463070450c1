#include "model/PortType.h"

#include <linux/ethtool.h>
#include <net/if_arp.h>

#include <algorithm>
#include <array>
#include <set>
#include <string_view>

namespace ZEB::ethernet {
namespace {

using Type = EthPortTypeEnum;

struct ModeType {
  std::uint32_t speed;
  std::string_view medium;
  Type type;
};

// Modes that have a number of their own in the value map. One bit of the kernel for several reaches
// (100000baseLR4_ER4) has none.
constexpr auto kModeTypes = std::to_array<ModeType>({
    {100, "FX", Type::Eth100BaseFX},
    {1000, "KX", Type::Eth1000BaseKX},
    {10000, "KX4", Type::Eth10GBaseKX4},
    {10000, "KR", Type::Eth10GBaseKR},
    {10000, "SR", Type::Eth10GBaseSR},
    {10000, "LR", Type::Eth10GBaseLR},
    {10000, "LRM", Type::Eth10GBaseLRM},
    {10000, "ER", Type::Eth10GBaseER},
    {40000, "KR4", Type::Eth40GBaseKR4},
    {40000, "CR4", Type::Eth40GBaseCR4},
    {40000, "SR4", Type::Eth40GBaseSR4},
    {40000, "LR4", Type::Eth40GBaseLR4},
    {100000, "KR4", Type::Eth100GBaseKR4},
    {100000, "CR4", Type::Eth100GBaseCR4},
});

struct TwistedPairType {
  std::uint32_t fastest;
  std::array<std::uint32_t, 2> slower;  ///< speeds that the type's name has beside the fastest; 0 for none
  Type type;
};

// By falling number of slower speeds, so that the first that fits is the fullest.
constexpr auto kTwistedPairTypes = std::to_array<TwistedPairType>({
    {10, {}, Type::Eth10BaseT},
    {100, {10}, Type::Eth10_100BaseT},
    {100, {}, Type::Eth100BaseT},
    {1000, {10, 100}, Type::Eth10_100_1000BaseT},
    {1000, {}, Type::Eth1000BaseT},
    {2500, {}, Type::Eth2500BaseT},
    {10000, {100, 1000}, Type::Eth100_1000_10GBaseT},
    {10000, {}, Type::Eth10GBaseT},
});

struct Mode {
  std::uint32_t speed;
  std::string_view medium;
};

std::vector<Mode> modesOf(const LinkModes& set) {
  std::vector<Mode> modes;
  if (set.none()) return modes;
  for (std::size_t bit = 0; bit < set.size(); ++bit) {
    if (!set[bit]) continue;
    const auto name = linkModeName(bit);
    if (linkModeSpeed(name) != 0) modes.push_back({linkModeSpeed(name), linkModeMedium(name)});
  }
  return modes;
}

bool contains(const std::vector<Mode>& modes, std::uint32_t speed, std::string_view medium) {
  return std::any_of(modes.begin(), modes.end(),
                     [&](const Mode& mode) { return mode.speed == speed && mode.medium == medium; });
}

Type twistedPairType(const std::vector<Mode>& modes, std::uint32_t fastest) {
  for (const auto& entry : kTwistedPairTypes) {
    const bool fits = std::all_of(entry.slower.begin(), entry.slower.end(), [&](std::uint32_t speed) {
      return speed == 0 || contains(modes, speed, "T");
    });
    if (entry.fastest == fastest && fits) return entry.type;
  }
  return Type::Other;
}

Type modeType(const Mode& mode) {
  const auto found = std::find_if(kModeTypes.begin(), kModeTypes.end(), [&](const ModeType& entry) {
    return entry.speed == mode.speed && entry.medium == mode.medium;
  });
  return found == kModeTypes.end() ? Type::Other : found->type;
}

/// Whether a mode can be what runs over the medium that the driver reports.
bool fitsMedia(const Mode& mode, std::optional<std::uint8_t> media) {
  const char kind = mode.medium.empty() ? ' ' : mode.medium.front();
  if (media == PORT_TP) return kind == 'T';
  if (media == PORT_DA) return kind == 'C';
  if (media == PORT_FIBRE) return kind != 'T' && kind != 'K' && kind != 'C';
  return true;
}

Type backplaneOrSingleType(const std::vector<Mode>& modes, std::uint32_t fastest,
                           const EthtoolFacts& ethtool) {
  if (contains(modes, 1000, "KX") && contains(modes, 10000, "KX4") && fastest == 10000) {
    return contains(modes, 10000, "KR") ? Type::Eth1000BaseKX_10GBaseKX4_10GBaseKR : Type::Eth1000_10GBaseKX;
  }
  std::set<Type> fitting;
  for (const Mode& mode : modes) {
    if (mode.speed == fastest && mode.medium != "R_FEC" && fitsMedia(mode, ethtool.media)) {
      fitting.insert(modeType(mode));
    }
  }
  return fitting.size() == 1 ? *fitting.begin() : Type::Other;
}

std::vector<std::uint16_t> capabilities(bool wakeOnLan, bool energyEfficient) {
  std::vector<std::uint16_t> codes;
  if (wakeOnLan) codes.push_back(static_cast<std::uint16_t>(EthCapabilityEnum::WakeOnLan));
  if (energyEfficient)
    codes.push_back(static_cast<std::uint16_t>(EthCapabilityEnum::EnergyEfficientEthernet));
  return codes;
}

}  // namespace

std::optional<EthPortTypeEnum> portType(const EthtoolFacts& ethtool) {
  if (!ethtool.supported) return std::nullopt;
  const std::vector<Mode> modes = modesOf(*ethtool.supported);
  if (modes.empty()) return std::nullopt;
  const std::uint32_t fastest = fastestSpeed(*ethtool.supported);
  const bool twistedPair = contains(modes, fastest, "T") && fitsMedia({fastest, "T"}, ethtool.media);
  return twistedPair ? twistedPairType(modes, fastest) : backplaneOrSingleType(modes, fastest, ethtool);
}

std::optional<EthPortLinkEnum> linkTechnology(const LinkFacts& link) {
  if (!link.type) return std::nullopt;
  if (*link.type == ARPHRD_INFINIBAND) return EthPortLinkEnum::InfiniBand;
  if (*link.type != ARPHRD_ETHER) return EthPortLinkEnum::Other;
  return link.hardware && link.hardware->wireless ? EthPortLinkEnum::WirelessLan : EthPortLinkEnum::Ethernet;
}

std::vector<std::uint16_t> supportedCapabilities(const EthtoolFacts& ethtool) {
  return capabilities(ethtool.wakeOnLanSupported.value_or(0) != 0, ethtool.eeeSupported.value_or(false));
}

std::vector<std::uint16_t> enabledCapabilities(const EthtoolFacts& ethtool) {
  return capabilities(ethtool.wakeOnLanEnabled.value_or(0) != 0, ethtool.eeeEnabled.value_or(false));
}

}  // namespace ZEB::ethernet
