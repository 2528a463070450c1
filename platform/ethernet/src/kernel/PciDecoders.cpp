#include "kernel/PciDecoders.h"

#include <linux/pci_regs.h>

#include <algorithm>
#include <numeric>

namespace ZEB::ethernet {
namespace {

std::uint8_t byteAt(Bytes bytes, std::size_t position) {
  return std::to_integer<std::uint8_t>(bytes[position]);
}

std::uint16_t wordAt(Bytes bytes, std::size_t position) {
  return static_cast<std::uint16_t>(byteAt(bytes, position) | byteAt(bytes, position + 1) << 8);
}

/// Without the padding that cards put around; nothing when that is all there is, or when it is no text.
std::optional<std::string> printableText(Bytes bytes) {
  std::string text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  text = text.substr(0, text.find('\0'));
  const auto begin = text.find_first_not_of(' ');
  if (begin == text.npos) return std::nullopt;
  text = text.substr(begin, text.find_last_not_of(' ') - begin + 1);
  const bool printable = std::ranges::all_of(text, [](char c) { return c >= ' ' && c < 0x7F; });
  return printable ? std::optional(text) : std::nullopt;
}

// Tags of PCI vital product data: large resources with a two-byte length, and the one that ends it all.
constexpr std::uint8_t kTagName = 0x82;
constexpr std::uint8_t kTagReadOnly = 0x90;
constexpr std::uint8_t kTagEnd = 0x78;

std::uint8_t sum(Bytes bytes) {
  return std::accumulate(bytes.begin(), bytes.end(), std::uint8_t{0}, [](std::uint8_t all, std::byte one) {
    return static_cast<std::uint8_t>(all + std::to_integer<std::uint8_t>(one));
  });
}

/// False when the checksum among them does not hold. `whole` is the data from its beginning.
bool decodeKeywords(Bytes whole, Bytes area, VitalProductData& data) {
  constexpr std::size_t kHeader = 3;
  while (area.size() >= kHeader) {
    const std::string_view keyword(reinterpret_cast<const char*>(area.data()), 2);
    const std::size_t size = byteAt(area, 2);
    if (size > area.size() - kHeader) break;
    const Bytes value = area.subspan(kHeader, size);
    if (keyword == "PN") data.partNumber = printableText(value);
    if (keyword == "SN") data.serialNumber = printableText(value);
    if (keyword == "RV" && size != 0 && sum(Bytes(whole.data(), value.data() + 1)) != 0) return false;
    area = area.subspan(kHeader + size);
  }
  return true;
}

// SMBIOS structures: a formatted part that says its own length, then texts up to two zero bytes.
constexpr std::uint8_t kTypeSlot = 9;
constexpr std::uint8_t kTypeEnd = 127;
constexpr std::size_t kSlotLength = 0x11;  // from SMBIOS 2.6 on, with the device in the slot

std::optional<SlotKind> firmwareSlotKind(std::uint8_t type) {
  if (type == 0x06 || type == 0x0E) return SlotKind::Pci;
  if (type == 0x12) return SlotKind::PciX;
  // Express slots have two ranges: form factors of their own, and lanes by generation.
  const bool express = (type >= 0x1F && type <= 0x28) || (type >= 0xA5 && type <= 0xC6);
  return express ? std::optional(SlotKind::PciExpress) : std::nullopt;
}

std::optional<FirmwareSlot> decodeSlot(Bytes structure) {
  if (structure.size() < kSlotLength) return std::nullopt;
  FirmwareSlot slot;
  slot.kind = firmwareSlotKind(byteAt(structure, 0x05));
  slot.number = wordAt(structure, 0x09);
  slot.address.domain = wordAt(structure, 0x0D);
  slot.address.bus = byteAt(structure, 0x0F);
  const std::uint8_t place = byteAt(structure, 0x10);
  slot.address.device = static_cast<std::uint8_t>(place >> 3);
  const bool empty = slot.address.bus == 0xFF && place == 0xFF;
  return empty ? std::nullopt : std::optional(slot);
}

}  // namespace

std::optional<SlotKind> slotKindOf(Bytes configuration) {
  constexpr std::size_t kWhole = 256;
  if (configuration.size() < kWhole) return std::nullopt;
  SlotKind kind = SlotKind::Pci;
  if ((wordAt(configuration, PCI_STATUS) & PCI_STATUS_CAP_LIST) == 0) return kind;
  std::size_t position = byteAt(configuration, PCI_CAPABILITY_LIST) & ~3u;
  // A list that bites its own tail ends after as many steps as it could have entries.
  for (std::size_t steps = 0; position >= PCI_STD_HEADER_SIZEOF && steps < kWhole / 4; ++steps) {
    const std::uint8_t capability = byteAt(configuration, position + PCI_CAP_LIST_ID);
    if (capability == PCI_CAP_ID_EXP) return SlotKind::PciExpress;
    if (capability == PCI_CAP_ID_PCIX) kind = SlotKind::PciX;
    position = byteAt(configuration, position + PCI_CAP_LIST_NEXT) & ~3u;
  }
  return kind;
}

VitalProductData decodeVitalProductData(Bytes bytes) {
  const Bytes whole = bytes;
  VitalProductData data;
  while (!bytes.empty() && byteAt(bytes, 0) != kTagEnd) {
    const std::uint8_t tag = byteAt(bytes, 0);
    const bool large = (tag & 0x80) != 0;
    const std::size_t header = large ? 3 : 1;
    if (bytes.size() < header) return data;
    const std::size_t size = large ? wordAt(bytes, 1) : tag & 7u;
    if (size > bytes.size() - header) return data;
    const Bytes area = bytes.subspan(header, size);
    if (tag == kTagName) data.productName = printableText(area);
    if (tag == kTagReadOnly && !decodeKeywords(whole, area, data)) return {};
    bytes = bytes.subspan(header + size);
  }
  return data;
}

std::vector<FirmwareSlot> decodeFirmwareSlots(Bytes table) {
  std::vector<FirmwareSlot> slots;
  constexpr std::size_t kHeader = 4;
  while (table.size() >= kHeader) {
    const std::uint8_t type = byteAt(table, 0);
    const std::size_t size = byteAt(table, 1);
    if (type == kTypeEnd || size < kHeader || size > table.size()) break;
    if (const auto slot = type == kTypeSlot ? decodeSlot(table.first(size)) : std::nullopt)
      slots.push_back(*slot);
    std::size_t end = size;
    while (end + 1 < table.size() && wordAt(table, end) != 0) ++end;
    table = table.subspan(std::min(end + 2, table.size()));
  }
  return slots;
}

}  // namespace ZEB::ethernet
