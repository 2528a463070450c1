#pragma once

#include <compare>
#include <cstdint>
#include <string>
#include <tuple>

#include "snapshot/HostSnapshot.h"

namespace ZEB::ethernet {

/// Where a port sits among all ports. Cards come in bus order: PCI by address, then other buses by name, then
/// virtual interfaces by number; the ports of a card by function, then by the function's own port number.
struct PortPlace {
  enum class Rank : std::uint8_t { Pci, OtherBus, Virtual };

  Rank rank = Rank::Virtual;
  PciAddress card;  ///< function 0; an SR-IOV virtual function counts to the card of its physical function
  std::string device;
  PciAddress function;
  std::uint16_t devicePort = 0;
  std::uint32_t index = 0;

  friend auto operator<=>(const PortPlace&, const PortPlace&) = default;
  bool sameCard(const PortPlace& other) const;
  /// A text that names the card, such as "pci 0000:01:00" or "usb 1-1".
  std::string cardName() const;
};

PortPlace placeOf(const LinkFacts& link);

}  // namespace ZEB::ethernet
