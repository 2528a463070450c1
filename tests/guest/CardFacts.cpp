#include "CardFacts.h"

namespace ZEB::guest {
namespace {

// e1000e can wake the machine only where power management events get through: from a slot, not on this main
// board.
const CardFacts kFacts[] = {
    {"slot3a", "e1000e", "0x8086", "0x10d3", 1000, "full", 54, "pumbg"},
    {"slot3b", "e1000e", "0x8086", "0x10d3", 1000, "full", 54, "pumbg"},
    {"lom1", "e1000e", "0x8086", "0x10d3", 1000, "full", 54, "d"},
    {"e1000", "e1000", "0x8086", "0x100e", 1000, "full", 47, "umbg"},
    // Of the one queue for the one processor.
    {"slot4", "vmxnet3", "0x15ad", "0x07b0", 1000, "full", 37, "uag"},
    {"rtl8139", "8139cp", "0x10ec", "0x8139", 100, "full", 15, "pumbg"},
    {"e100", "e100", "0x8086", "0x1209", 100, "full", 32, "g"},
    {"slot7", "virtio_net", "0x1af4", "0x1000", 10000, "full", 15, ""},
    {"virtio", "virtio_net", "0x1af4", "0x1000", -1, "unknown", 15, ""},
};

}  // namespace

std::span<const CardFacts> cardFacts() {
  return kFacts;
}

}  // namespace ZEB::guest
