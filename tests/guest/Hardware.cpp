#include "Hardware.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace ZEB::guest {
namespace {

std::string address(unsigned kind, size_t number) {
  std::array<char, sizeof "52:54:00:00:00:00"> text;
  std::snprintf(text.data(), text.size(), "52:54:00:00:%02x:%02x", kind & 0xff,
                static_cast<unsigned>(number & 0xff));
  return text.data();
}

std::string slotName(int slot) {
  return "slot-" + std::to_string(slot);
}

/// From 10 (hexadecimal) on the main bus is free. Chassis and slot together have to be unique.
std::string slotArgument(int slot, size_t index) {
  return "pcie-root-port,id=" + slotName(slot) + ",bus=pcie.0,addr=1" + std::to_string(index) +
         ",chassis=1,slot=" + std::to_string(slot);
}

bool sharesSlot(const Hardware& hardware, const Card& card) {
  return std::count_if(hardware.cards.begin(), hardware.cards.end(),
                       [&](const Card& other) { return card.slot != 0 && other.slot == card.slot; }) > 1;
}

}  // namespace

std::string cardAddress(size_t number) {
  return address(0, number);
}
std::string partnerAddress(size_t number) {
  return address(1, number);
}

std::string withoutColons(std::string address) {
  std::erase(address, ':');
  return address;
}

std::string netdevArgument(const Card& card, size_t number) {
  return "hubport,id=" + card.name + "-cable,hubid=" + std::to_string(number);
}

std::string deviceArgument(const Card& card, size_t number) {
  std::string text = std::string(card.model.device) + ",id=" + card.name + ",netdev=" + card.name +
                     "-cable,mac=" + cardAddress(number);
  text += card.slot == 0 ? ",bus=pcie.0"
                         : ",bus=" + slotName(card.slot) + ",addr=0." + std::to_string(card.function);
  for (const std::string_view properties : {card.model.properties, std::string_view(card.properties)}) {
    if (!properties.empty()) text.append(",").append(properties);
  }
  return text;
}

std::vector<std::string> hardwareArguments(const Hardware& hardware) {
  std::vector<std::string> arguments;
  const auto add = [&](std::string option, std::string value) {
    arguments.push_back(std::move(option));
    arguments.push_back(std::move(value));
  };
  for (size_t i = 0; i < hardware.slots.size(); ++i) add("-device", slotArgument(hardware.slots[i], i));
  size_t number = 0;
  size_t labels = 0;
  for (const Card& card : hardware.cards) {
    ++number;
    add("-netdev", netdevArgument(card, number));
    add("-device", deviceArgument(card, number) + (sharesSlot(hardware, card) ? ",multifunction=on" : ""));
    if (!card.label.empty()) {
      add("-smbios", "type=41,designation=" + card.label +
                         ",kind=ethernet,instance=" + std::to_string(++labels) + ",pcidev=" + card.name);
    }
    if (card.partner) {
      // 802.3ad takes only a port that knows its speed for a partner.
      const std::string peer = card.name + "-peer";
      add("-netdev", "hubport,id=" + peer + "-cable,hubid=" + std::to_string(number));
      add("-device", "virtio-net-pci,speed=1000,duplex=full,id=" + peer + ",netdev=" + peer +
                         "-cable,mac=" + partnerAddress(number));
    }
  }
  return arguments;
}

}  // namespace ZEB::guest
