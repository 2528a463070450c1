#include "ethernet/EthernetTeamDataObject.h"

#include <algorithm>

#include "model/Team.h"
#include "records/InterfaceAnswers.h"
#include "records/Refresh.h"

namespace ZEB {

using namespace ethernet;

namespace {

/// A team that is gone has facts without a name.
std::shared_ptr<const TeamFacts> there(const FactsHandle<TeamFacts>& handle) {
  auto facts = handle.facts();
  return facts && facts->link.name.empty() ? nullptr : facts;
}

std::optional<std::uint8_t> modeOf(const TeamFacts& facts) {
  return fact(facts.link.bond, [](const BondFacts& bond) { return bond.mode; });
}

}  // namespace

int EthernetTeamDataObject::refresh(RefreshPart part) {
  return refreshHandle(_facts, part);
}

int EthernetTeamDataObject::getOsDeviceName(std::string& name) const {
  return answer(fact(_facts.facts(), nameOf), name);
}

int EthernetTeamDataObject::getInterfaceNumber(std::uint32_t& number) const {
  return numberAnswer(_facts.facts(), number);
}

int EthernetTeamDataObject::getPermanentAddress(std::string& address) const {
  return answer(fact(_facts.facts(), [](const auto& f) { return addressText(f.link.address); }), address);
}

int EthernetTeamDataObject::getTeamStatus(operationalStatus& status) const {
  return answer(fact(_facts.facts(), teamStatus), status);
}

int EthernetTeamDataObject::getOperatingMode(EthTeamModeEnum& mode) const {
  return answer(fact(_facts.facts(), modeOf), mode);
}

int EthernetTeamDataObject::getCurrentOperatingMode(EthTeamModeEnum& mode) const {
  return getOperatingMode(mode);
}

int EthernetTeamDataObject::getRedundancyStatus(EthTeamRedundancyStatusEnum& status) const {
  return answer(
      fact(there(_facts),
           [](const auto& f) { return std::optional(redundancyStatus(f.members, f.link.settles)); }),
      status);
}

int EthernetTeamDataObject::getNumberOfSlaves(std::uint32_t& count) const {
  return answer(fact(there(_facts), [](const auto& f) { return std::optional(f.members.size()); }), count);
}

int EthernetTeamDataObject::getSpeed(unsigned long& speed) const {
  return answer(bitsPerSecond(fact(_facts.facts(), teamSpeed)), speed);
}

int EthernetTeamDataObject::getMaxFrameSize(unsigned long& size) const {
  return frameSizeAnswer(_facts.facts(), size);
}

int EthernetTeamDataObject::getTeamMessage(std::string& message) const {
  return answer(fact(_facts.facts(), teamMessage), message);
}

int EthernetTeamDataObject::getAddressOrigin(EthPortAddressOriginEnum& origin) const {
  return originAnswer(_facts.facts(), origin);
}

int EthernetTeamDataObject::getDefaultGateway(route_t& route) const {
  return gatewayAnswer(_facts.facts(), route);
}

std::vector<std::uint16_t> EthernetTeamDataObject::getCapabilities() const {
  // Whatever its mode, a team can be switched to every other.
  constexpr auto kEverything = static_cast<std::uint8_t>(EthTeamModeEnum::BalanceRoundRobin);
  return there(_facts) ? modeCapabilities(kEverything) : std::vector<std::uint16_t>{};
}

std::vector<std::uint16_t> EthernetTeamDataObject::getEnabledCapabilities() const {
  return modeCapabilities(fact(_facts.facts(), modeOf));
}

std::vector<IPv4AddressRecord> EthernetTeamDataObject::getIPv4Addresses() const {
  return ipv4Answer(_facts.facts());
}

std::vector<IPv6AddressRecord> EthernetTeamDataObject::getIPv6Addresses() const {
  return ipv6Answer(_facts.facts());
}

std::vector<EthernetTeamSlave> EthernetTeamDataObject::getSlaves() const {
  std::vector<EthernetTeamSlave> slaves;
  const auto facts = _facts.facts();
  if (facts) std::ranges::transform(facts->members, std::back_inserter(slaves), &TeamMember::slave);
  return slaves;
}

int EthernetTeamDataObject::findSlaveByName(const std::string& name, EthernetTeamSlave& slave) const {
  const auto facts = _facts.facts();
  if (!facts) return kNotKnown;
  const auto found =
      std::ranges::find(facts->members, name, [](const TeamMember& member) { return member.slave.name; });
  if (found == facts->members.end()) return kNotKnown;
  slave = found->slave;
  return kKnown;
}

std::string EthernetTeamDataObject::roleToString(EthTeamMemberRoleEnum role) {
  return roleText(role);
}

}  // namespace ZEB
