#include "common/Physloc.h"

#include <algorithm>
#include <cstdio>

namespace {

// Kinds of a "LocationInfoDesc" entry.
constexpr std::uint16_t kChassisInfo = 2;
constexpr std::uint16_t kEmbeddedInfo = 18;
constexpr std::uint16_t kSlotInfo = 23;

struct Kind {
  PhyslocType type;
  const char* prefix;
  std::uint16_t infoCode;
};

constexpr Kind kKinds[] = {
    {PhyslocType::PciSlot, "PCI slot ", kSlotInfo},
    {PhyslocType::PciXSlot, "PCI-X slot ", kSlotInfo},
    {PhyslocType::PciExpressSlot, "PCI Express slot ", kSlotInfo},
    {PhyslocType::Embedded, "Embedded device ", kEmbeddedInfo},
};

const Kind* kindOf(const physloc_t& location) {
  const auto* kind = std::find_if(std::begin(kKinds), std::end(kKinds),
                                  [&](const Kind& k) { return k.type == location.type(); });
  return kind == std::end(kKinds) ? nullptr : kind;
}

physloc_t make(PhyslocType type, std::uint16_t number) {
  physloc_t location;
  location.bytes[0] = static_cast<std::uint8_t>(type);
  location.bytes[1] = static_cast<std::uint8_t>(number & 0xFF);
  location.bytes[2] = static_cast<std::uint8_t>(number >> 8);
  return location;
}

}  // namespace

physloc_t makeSlotPhysloc(PhyslocType type, std::uint16_t slot) {
  return make(type, slot);
}

physloc_t makeEmbeddedPhysloc(std::uint16_t instance, std::string_view label) {
  physloc_t location = make(PhyslocType::Embedded, instance);
  label.copy(location.label.data(), location.label.size() - 1);
  return location;
}

physloc_t withPart(physloc_t location, std::uint32_t part) {
  for (std::size_t i = 3; i <= 6; ++i, part >>= 8) location.bytes[i] = static_cast<std::uint8_t>(part & 0xFF);
  return location;
}

char* BMC_physloc_to_str(const physloc_t& location, char* text, std::size_t size) {
  if (size == 0) return text;
  text[0] = '\0';
  const auto last =
      std::find_if(location.bytes.rbegin(), location.bytes.rend(), [](auto b) { return b != 0; });
  const auto used = static_cast<std::size_t>(location.bytes.rend() - last);
  for (std::size_t i = 0; i < used && 2 * i + 3 <= size; ++i) {
    std::snprintf(text + 2 * i, 3, "%02x", location.bytes[i]);
  }
  return text;
}

namespace ZEB {

// The location is computed from its bytes alone, so there is nothing to open or close.
void ZEBPhysloc::init(int /*chassis*/) {}
void ZEBPhysloc::close() {}

std::string ZEBPhysloc::physlocToHWLocation(const physloc_t& location) {
  const Kind* kind = kindOf(location);
  if (!kind) return {};
  const std::string label = location.label.data();
  return label.empty() ? kind->prefix + std::to_string(location.number()) : label;
}

int ZEBPhysloc::createLocationInfoVectors(const physloc_t& location, std::vector<std::string>& texts,
                                          std::vector<std::uint16_t>& codes) {
  const Kind* kind = kindOf(location);
  if (!kind) return 1;
  texts = {"System chassis", physlocToHWLocation(location)};
  codes = {kChassisInfo, kind->infoCode};
  return 0;
}

}  // namespace ZEB
