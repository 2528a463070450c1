#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "ClassTest.h"

// Adapters of which this or that is not known, or that sit elsewhere.

namespace ZEB::test {

using ethernet::AdapterFacts;
using ethernet::HardwareFacts;
using ethernet::SlotKind;

/// Port 1 has a product of its own, so that first and last port can be told apart.
inline std::vector<EthernetPort> twoPorts() {
  auto first = everyPortFacts();
  forgetHardware(first.link, [](HardwareFacts& hardware) { hardware.deviceName = "First Port"; });
  first.link.type = 1;
  auto second = everyPortFacts();
  forgetHardware(second.link, [](HardwareFacts& hardware) { hardware.deviceName = "Last Port"; });
  second.link.type = 32;
  return {portOf(first), portOf(second)};
}

template <std::optional<std::string> HardwareFacts::*text>
void forgetText(AdapterFacts& facts) {
  forgetHardware(facts, [](HardwareFacts& hardware) { (hardware.*text).reset(); });
}
template <std::optional<std::string> ethernet::DriverFacts::*text>
void forgetDriverText(AdapterFacts& facts) {
  auto driver = *facts.driver;
  (driver.*text).reset();
  facts.driver = std::make_shared<const ethernet::DriverFacts>(driver);
}
inline void forgetModel(AdapterFacts& facts) {
  forgetText<&HardwareFacts::productName>(facts);
  forgetText<&HardwareFacts::deviceName>(facts);
}
inline void forgetRevision(AdapterFacts& facts) {
  forgetHardware(facts, [](HardwareFacts& hardware) { hardware.revision.reset(); });
}
inline void forgetLocation(AdapterFacts& facts) {
  forgetHardware(facts, [](HardwareFacts& hardware) { hardware.slot.reset(); });
}
template <SlotKind kind>
void putIntoSlot(AdapterFacts& facts) {
  forgetHardware(facts, [](HardwareFacts& hardware) { hardware.slotKind = kind; });
}
inline void putOnBoard(AdapterFacts& facts) {
  forgetHardware(facts, [](HardwareFacts& hardware) {
    hardware.slot.reset();
    hardware.onboardIndex = 2;
  });
}

/// A place, but neither a slot nor on the board.
inline constexpr physloc_t kNoKnownKind{.bytes = {0x07, 0x01}};

/// Instances of one class for adapter 5.
template <class Class>
class AdapterTest : public ClassTest {
 protected:
  Class make(AdapterFacts facts, std::vector<EthernetPort> ports = twoPorts()) {
    return {recorded.logger, nameSpace, 5, adapterOf(std::move(facts), std::move(ports))};
  }
  Class makeUnknown() { return {recorded.logger, nameSpace, 5, EthernetAdapterDataObject()}; }
  Table read(AdapterFacts facts) { return propertiesOf(make(std::move(facts)).makeInstance()); }
  Table readWithout(const UnknownRow<AdapterFacts>& row) {
    AdapterFacts facts = everyAdapterFacts();
    row.forget(facts);
    return read(facts);
  }
};

// The controller.

}  // namespace ZEB::test
