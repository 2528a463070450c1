#pragma once

#include <linux/if.h>

#include <string>

#include "snapshot/HostSnapshot.h"

namespace ZEB::ethernet::test {

/// An Ethernet link that is up.
inline LinkFacts ethernetLink(std::uint32_t index, const std::string& name) {
  LinkFacts link;
  link.index = index;
  link.name = name;
  link.type = 1;
  link.flags = IFF_UP | IFF_LOWER_UP;
  link.carrier = true;
  link.operState = IF_OPER_UP;
  return link;
}

inline LinkFacts pciPort(std::uint32_t index, const std::string& name, const char* function) {
  LinkFacts link = ethernetLink(index, name);
  link.parentBus = "pci";
  link.parentDevice = function;
  HardwareFacts hardware;
  hardware.bus = "pci";
  hardware.device = function;
  hardware.pci = parsePciAddress(function);
  link.hardware = std::make_shared<HardwareFacts>(hardware);
  return link;
}

inline LinkFacts vlanLink(std::uint32_t index, const std::string& name, std::uint32_t lower,
                          std::uint16_t id) {
  LinkFacts link = ethernetLink(index, name);
  link.kind = "vlan";
  link.lowerIndex = lower;
  link.vlanId = id;
  return link;
}

inline LinkFacts bondLink(std::uint32_t index, const std::string& name, std::uint8_t mode = 1) {
  LinkFacts link = ethernetLink(index, name);
  link.kind = "bond";
  link.bond = BondFacts{mode, {}};
  return link;
}

inline LinkFacts memberOf(LinkFacts link, std::uint32_t bond, std::uint8_t state = 0) {
  link.masterIndex = bond;
  link.bondMember = BondMemberFacts{state, 0, {}};
  return link;
}

inline void carrier(LinkFacts& link, bool on) {
  link.carrier = on;
  link.operState = on ? IF_OPER_UP : IF_OPER_DOWN;
  link.flags = on ? IFF_UP | IFF_LOWER_UP : IFF_UP;
}

inline AddressFacts addressOn(std::uint32_t index, const char* text, std::uint8_t prefix = 24) {
  return {index, *parseIpAddress(text), prefix, 0x80, {}};
}

}  // namespace ZEB::ethernet::test
