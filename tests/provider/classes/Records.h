#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "ethernet/EthernetAdapterDataObject.h"
#include "ethernet/EthernetPort.h"
#include "ethernet/EthernetTeamDataObject.h"
#include "ethernet/EthernetVLanDataObject.h"
#include "model/Facts.h"

/// Records made by hand. `every…Facts` know everything; a test takes away what its record shall not know. The
/// records cannot be refreshed, so they answer from these facts for as long as they live.
namespace ZEB::test {

inline constexpr std::uint32_t kUp = 0x1;           ///< IFF_UP
inline constexpr std::uint32_t kLowerUp = 0x10000;  ///< IFF_LOWER_UP

ethernet::PortFacts everyPortFacts();
ethernet::VlanFacts everyVlanFacts();
ethernet::TeamFacts everyTeamFacts();
ethernet::AdapterFacts everyAdapterFacts();
ethernet::HardwareFacts everyHardwareFact();
ethernet::DriverFacts everyDriverFact();

/// Facts of an interface whose status is that one: OK, Degraded, Error or Dormant.
void setStatus(ethernet::LinkFacts& link, operationalStatus status);

template <class Facts>
void forgetStatus(Facts& facts) {
  facts.link.flags.reset();
  facts.link.carrier.reset();
}

/// Has `forget` take something out of what is known of the device.
template <class Facts, class Forget>
void forgetHardware(Facts& facts, Forget forget) {
  ethernet::HardwareFacts hardware = *facts.hardware;
  forget(hardware);
  facts.hardware = std::make_shared<const ethernet::HardwareFacts>(std::move(hardware));
}
inline void forgetProduct(ethernet::PortFacts& facts) {
  forgetHardware(facts.link, [](ethernet::HardwareFacts& hardware) {
    hardware.deviceName.reset();
    hardware.productName.reset();
  });
}

ethernet::AddressFacts address(const std::string& text, std::uint8_t prefixLength);
ethernet::TeamMember member(const std::string& name, EthTeamMemberRoleEnum role, operationalStatus status);

template <class Record, class Facts>
Record recordOf(Facts facts) {
  return Record(ethernet::FactsHandle<Facts>(std::make_shared<const Facts>(std::move(facts)), nullptr));
}
inline EthernetPort portOf(ethernet::PortFacts facts) {
  return recordOf<EthernetPort>(std::move(facts));
}
inline EthernetVLanDataObject vlanOf(ethernet::VlanFacts facts) {
  return recordOf<EthernetVLanDataObject>(std::move(facts));
}
inline EthernetTeamDataObject teamOf(ethernet::TeamFacts facts) {
  return {ethernet::FactsHandle<ethernet::TeamFacts>(
              std::make_shared<const ethernet::TeamFacts>(std::move(facts)), nullptr),
          {}};
}
inline EthernetAdapterDataObject adapterOf(ethernet::AdapterFacts facts, std::vector<EthernetPort> ports) {
  return {ethernet::FactsHandle<ethernet::AdapterFacts>(
              std::make_shared<const ethernet::AdapterFacts>(std::move(facts)), nullptr),
          std::move(ports)};
}

}  // namespace ZEB::test
