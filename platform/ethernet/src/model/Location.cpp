#include "model/Location.h"

namespace ZEB::ethernet {
namespace {

PhyslocType slotType(const HardwareFacts& hardware) {
  if (hardware.slotKind == SlotKind::PciX) return PhyslocType::PciXSlot;
  return hardware.slotKind == SlotKind::PciExpress ? PhyslocType::PciExpressSlot : PhyslocType::PciSlot;
}

std::optional<physloc_t> placeOf(const HardwareFacts& hardware) {
  if (hardware.slot) return makeSlotPhysloc(slotType(hardware), *hardware.slot);
  if (!hardware.onboardIndex && !hardware.onboardLabel) return std::nullopt;
  return makeEmbeddedPhysloc(hardware.onboardIndex.value_or(0), hardware.onboardLabel.value_or(""));
}

}  // namespace

std::optional<physloc_t> locationOf(const AdapterFacts& adapter) {
  const auto place = adapter.hardware ? placeOf(*adapter.hardware) : std::nullopt;
  return place ? std::optional(withPart(*place, adapter.locationPart)) : std::nullopt;
}

}  // namespace ZEB::ethernet
