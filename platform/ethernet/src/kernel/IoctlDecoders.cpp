#include "kernel/IoctlDecoders.h"

#include <linux/ethtool.h>

#include <cstring>

#include "netlink/EthtoolDecoders.h"

namespace ZEB::ethernet {
namespace {

/// The fixed part of a structure that has more behind it. False when the bytes are fewer.
template <class Fixed>
bool readFixed(Bytes bytes, Fixed& fixed) {
  if (bytes.size() < sizeof fixed) return false;
  std::memcpy(&fixed, bytes.data(), sizeof fixed);
  return true;
}

}  // namespace

void mergeLinkSettings(Bytes settings, EthtoolFacts& facts) {
  ethtool_link_settings fixed{};
  if (!readFixed(settings, fixed) || fixed.link_mode_masks_nwords <= 0) return;
  const auto words = static_cast<std::size_t>(fixed.link_mode_masks_nwords);
  const std::size_t bytes = words * sizeof(std::uint32_t);
  const Bytes supported = settings.subspan(sizeof fixed);
  if (supported.size() < 3 * bytes) return;
  facts.supported = linkModes(supported, words * 32);
  facts.advertised = linkModes(supported.subspan(bytes), words * 32);
  mergePartner(linkModes(supported.subspan(2 * bytes), words * 32), facts);
  facts.autonegotiation = fixed.autoneg != AUTONEG_DISABLE;
  facts.media = fixed.port;
  mergeSpeed(fixed.speed, fixed.duplex, facts);
}

void mergeWakeOnLan(Bytes settings, EthtoolFacts& facts) {
  const auto wake = leading<ethtool_wolinfo>(settings);
  if (!wake) return;
  facts.wakeOnLanSupported = wake->supported;
  facts.wakeOnLanEnabled = wake->wolopts;
}

void mergeEnergyEfficiency(Bytes settings, EthtoolFacts& facts) {
  const auto eee = leading<ethtool_eee>(settings);
  if (!eee) return;
  facts.eeeSupported = eee->supported != 0;
  facts.eeeEnabled = eee->eee_enabled != 0;
}

std::optional<HardwareAddress> decodePermanentAddress(Bytes answer) {
  ethtool_perm_addr fixed{};
  if (!readFixed(answer, fixed) || fixed.size > answer.size() - sizeof fixed) return std::nullopt;
  return hardwareAddress(answer.subspan(sizeof fixed, fixed.size));
}

}  // namespace ZEB::ethernet
