#include "ethernet/EthernetPort.h"

#include "model/LinkStatus.h"
#include "model/PortType.h"
#include "records/InterfaceAnswers.h"
#include "records/PortStatistics.h"
#include "records/Refresh.h"

namespace ZEB {

using namespace ethernet;

namespace {

constexpr std::uint16_t kStateUp = 2;
constexpr std::uint16_t kStateDown = 3;

std::optional<std::string> productOf(const PortFacts& facts) {
  if (!facts.link.hardware) return std::nullopt;
  const HardwareFacts& hardware = *facts.link.hardware;
  return hardware.deviceName ? hardware.deviceName : hardware.productName;
}

std::optional<std::uint16_t> stateOf(const PortFacts& facts) {
  const auto up = isAdministrativelyUp(facts.link);
  if (!up) return std::nullopt;
  return *up ? kStateUp : kStateDown;
}

/// Some drivers leave what bonding overwrote out of their own answer, but bonding remembers it.
std::optional<HardwareAddress> permanentAddressOf(const LinkFacts& link) {
  if (link.permanentAddress || !link.bondMember) return link.permanentAddress;
  return link.bondMember->permanentAddress;
}

}  // namespace

int EthernetPort::refresh(RefreshPart part) {
  return refreshHandle(_facts, part);
}

int EthernetPort::getOsDeviceName(std::string& name) const {
  return answer(fact(_facts.facts(), nameOf), name);
}

int EthernetPort::getInterfaceNumber(std::uint32_t& number) const {
  return numberAnswer(_facts.facts(), number);
}

int EthernetPort::getPortPciProductStr(std::string& product) const {
  return answer(fact(_facts.facts(), productOf), product);
}

int EthernetPort::getPermanentAddress(std::string& address) const {
  return answer(fact(_facts.facts(), [](const auto& f) { return addressText(permanentAddressOf(f.link)); }),
                address);
}

int EthernetPort::getPortType(EthPortTypeEnum& type) const {
  return answer(fact(_facts.facts(), [](const auto& f) { return portType(f.link.ethtool); }), type);
}

int EthernetPort::getPortLinkType(EthPortLinkEnum& link) const {
  return answer(fact(_facts.facts(), [](const auto& f) { return linkTechnology(f.link); }), link);
}

int EthernetPort::getPortNumber(std::uint16_t& number) const {
  return answer(fact(_facts.facts(), [](const auto& f) { return f.number; }), number);
}

int EthernetPort::getVirtualPortNumber(std::uint16_t& number) const {
  return answer(fact(_facts.facts(),
                     [](const auto& f) {
                       return fact(f.link.hardware, [](const auto& h) { return h.virtualFunction; });
                     }),
                number);
}

int EthernetPort::getPortSupportedSpeed(unsigned long& speed) const {
  const auto fastest = [](const PortFacts& f) -> std::optional<std::uint32_t> {
    const std::uint32_t megabits = f.link.ethtool.supported ? fastestSpeed(*f.link.ethtool.supported) : 0;
    return megabits == 0 ? std::nullopt : std::optional(megabits);
  };
  return answer(bitsPerSecond(fact(_facts.facts(), fastest)), speed);
}

int EthernetPort::getPortSpeed(unsigned long& speed) const {
  return answer(bitsPerSecond(fact(_facts.facts(), [](const auto& f) { return f.link.ethtool.speed; })),
                speed);
}

int EthernetPort::getPortMaxFrameSize(unsigned long& size) const {
  return frameSizeAnswer(_facts.facts(), size);
}

int EthernetPort::getFullDuplex(bool& fullDuplex) const {
  return answer(fact(_facts.facts(), [](const auto& f) { return f.link.ethtool.fullDuplex; }), fullDuplex);
}

int EthernetPort::getAutoSense(bool& autoSense) const {
  return answer(fact(_facts.facts(), [](const auto& f) { return f.link.ethtool.autonegotiation; }),
                autoSense);
}

int EthernetPort::getPortStatus(operationalStatus& status) const {
  return answer(fact(_facts.facts(), [](const auto& f) { return portStatus(f.link); }), status);
}

int EthernetPort::getPortState(std::uint16_t& state) const {
  return answer(fact(_facts.facts(), stateOf), state);
}

int EthernetPort::getPortLinkMessage(std::string& message) const {
  return answer(fact(_facts.facts(), [](const auto& f) { return linkMessage(f.link); }), message);
}

int EthernetPort::getAddressOrigin(EthPortAddressOriginEnum& origin) const {
  return originAnswer(_facts.facts(), origin);
}

int EthernetPort::getDefaultGateway(route_t& route) const {
  return gatewayAnswer(_facts.facts(), route);
}

int EthernetPort::getEthStats(ethStats_st& statistics) const {
  const auto facts = _facts.facts();
  return facts && readStatistics(*facts, statistics) ? kKnown : kNotKnown;
}

std::vector<std::uint16_t> EthernetPort::getCapabilities() const {
  const auto facts = _facts.facts();
  return facts ? supportedCapabilities(facts->link.ethtool) : std::vector<std::uint16_t>{};
}

std::vector<std::uint16_t> EthernetPort::getEnabledCapabilities() const {
  const auto facts = _facts.facts();
  return facts ? enabledCapabilities(facts->link.ethtool) : std::vector<std::uint16_t>{};
}

std::vector<IPv4AddressRecord> EthernetPort::getIPv4Addresses() const {
  return ipv4Answer(_facts.facts());
}

std::vector<IPv6AddressRecord> EthernetPort::getIPv6Addresses() const {
  return ipv6Answer(_facts.facts());
}

std::vector<std::string> EthernetPort::networkAddresses() const {
  const auto facts = _facts.facts();
  const auto address = facts ? addressText(facts->link.address) : std::nullopt;
  return address ? std::vector{*address} : std::vector<std::string>{};
}

bool EthernetPort::hasStatistics() const {
  const auto facts = _facts.facts();
  ethStats_st statistics;
  return facts && readStatistics(*facts, statistics);
}

}  // namespace ZEB
