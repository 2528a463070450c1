#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ZEB::guest {

/// One kind of network card, as the emulator and Linux name it.
struct CardModel {
  std::string_view device;
  std::string_view driver;
  /// Device properties that every card of the kind gets.
  std::string_view properties;
};

inline constexpr CardModel kE1000e{"e1000e", "e1000e", ""};
inline constexpr CardModel kE1000{"e1000", "e1000", ""};
/// With the ids of a virtio network card on the conventional bus wherever it sits.
inline constexpr CardModel kVirtioNet{"virtio-net-pci", "virtio_net", "disable-legacy=off"};
inline constexpr CardModel kVmxnet3{"vmxnet3", "vmxnet3", ""};
inline constexpr CardModel kRtl8139{"rtl8139", "8139cp", ""};
inline constexpr CardModel kI82559er{"i82559er", "e100", ""};

/// One port of a network card. Cards with more ports are several of these, with the same slot and functions
/// 0, 1, …
struct Card {
  /// Of the device in the emulator and of the interface in the guest: a letter, then letters and digits, ten
  /// at most.
  std::string name;
  CardModel model = kE1000e;
  /// Number of the slot that it is plugged into; 0 on the main board.
  int slot = 0;
  int function = 0;
  /// What the main board's firmware calls it (SMBIOS type 41); empty: nothing.
  std::string label = {};
  /// Further device properties, such as "speed=10000,duplex=full".
  std::string properties = {};
  /// Whether its cable leads to an interface called NAME-peer in the guest's network namespace "partner".
  bool partner = false;
};

/// The emulated server. Every card's cable ends in a hub of its own.
struct Hardware {
  /// PCI Express slots, plugged or not; ten at most.
  std::vector<int> slots;
  std::vector<Card> cards;
  int memoryMiB = 1024;
};

/// The permanent MAC address of the card that is the `number`th (from 1) that this guest got, or of its
/// partner.
std::string cardAddress(size_t number);
std::string partnerAddress(size_t number);
/// "52:54:00:00:00:01" as "525400000001".
std::string withoutColons(std::string address);

/// What the emulator's -netdev and -device (or netdev_add and device_add) take for a card.
std::string netdevArgument(const Card& card, size_t number);
std::string deviceArgument(const Card& card, size_t number);

/// The emulator's arguments for slots and cards.
std::vector<std::string> hardwareArguments(const Hardware& hardware);

}  // namespace ZEB::guest
