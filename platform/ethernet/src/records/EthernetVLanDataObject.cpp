#include "ethernet/EthernetVLanDataObject.h"

#include "model/LinkStatus.h"
#include "records/InterfaceAnswers.h"
#include "records/Refresh.h"

namespace ZEB {

using namespace ethernet;

int EthernetVLanDataObject::refresh(RefreshPart part) {
  return refreshHandle(_facts, part);
}

int EthernetVLanDataObject::getOsDeviceName(std::string& name) const {
  return answer(fact(_facts.facts(), nameOf), name);
}

int EthernetVLanDataObject::getInterfaceNumber(std::uint32_t& number) const {
  return numberAnswer(_facts.facts(), number);
}

int EthernetVLanDataObject::getPermanentAddress(std::string& address) const {
  return answer(fact(_facts.facts(), [](const auto& f) { return addressText(f.link.address); }), address);
}

int EthernetVLanDataObject::getVLanName(std::string& name) const {
  return getOsDeviceName(name);
}

int EthernetVLanDataObject::getVLanId(std::uint16_t& id) const {
  return answer(fact(_facts.facts(), [](const auto& f) { return f.link.vlanId; }), id);
}

int EthernetVLanDataObject::getInterfaceStatus(operationalStatus& status) const {
  return answer(fact(_facts.facts(), [](const auto& f) { return vlanStatus(f.link); }), status);
}

int EthernetVLanDataObject::getAddressOrigin(EthPortAddressOriginEnum& origin) const {
  return originAnswer(_facts.facts(), origin);
}

int EthernetVLanDataObject::getDefaultGateway(route_t& route) const {
  return gatewayAnswer(_facts.facts(), route);
}

std::vector<IPv4AddressRecord> EthernetVLanDataObject::getIPv4Addresses() const {
  return ipv4Answer(_facts.facts());
}

std::vector<IPv6AddressRecord> EthernetVLanDataObject::getIPv6Addresses() const {
  return ipv6Answer(_facts.facts());
}

}  // namespace ZEB
