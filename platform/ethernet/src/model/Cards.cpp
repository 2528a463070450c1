#include "model/Cards.h"

#include <cstdio>

namespace ZEB::ethernet {
namespace {

/// A USB device without the interface of it that the driver sits on: "1-1:1.0" is "1-1".
std::string deviceOf(const std::string& bus, const std::string& name) {
  return bus == "usb" ? name.substr(0, name.find(':')) : name;
}

}  // namespace

bool PortPlace::sameCard(const PortPlace& other) const {
  if (rank != other.rank) return false;
  switch (rank) {
    case Rank::Pci:
      return card == other.card;
    case Rank::OtherBus:
      return device == other.device;
    default:
      return index == other.index;
  }
}

std::string PortPlace::cardName() const {
  if (rank == Rank::OtherBus) return device;
  if (rank == Rank::Virtual) return "virtual " + std::to_string(index);
  char name[32];
  std::snprintf(name, sizeof name, "pci %04x:%02x:%02x", card.domain, card.bus, card.device);
  return name;
}

PortPlace placeOf(const LinkFacts& link) {
  PortPlace place;
  place.index = link.index;
  const HardwareFacts* hardware = link.hardware.get();
  if (hardware) place.devicePort = hardware->devicePort.value_or(0);
  if (hardware && hardware->pci) {
    place.rank = PortPlace::Rank::Pci;
    place.function = *hardware->pci;
    place.card = hardware->physicalFunction.value_or(*hardware->pci);
    place.card.function = 0;
  } else if (hardware || link.parentDevice) {
    place.rank = PortPlace::Rank::OtherBus;
    const std::string bus = hardware ? hardware->bus : link.parentBus.value_or("");
    place.device = bus + " " + deviceOf(bus, hardware ? hardware->device : *link.parentDevice);
  }
  return place;
}

}  // namespace ZEB::ethernet
