#include "classes/port/InterfaceRecord.h"

#include "classes/port/Known.h"

namespace ZEB {
namespace {

constexpr std::uint16_t kPortUp = 2;

int statusOf(const EthernetPort& port, operationalStatus& status) {
  return port.getPortStatus(status);
}
int statusOf(const EthernetTeamDataObject& team, operationalStatus& status) {
  return team.getTeamStatus(status);
}
int statusOf(const EthernetVLanDataObject& vlan, operationalStatus& status) {
  return vlan.getInterfaceStatus(status);
}

}  // namespace

int InterfaceRecord::refresh(RefreshPart part) {
  return std::visit([part](auto& record) { return record.refresh(part); }, _record);
}

int InterfaceRecord::getInterfaceNumber(std::uint32_t& number) const {
  return std::visit([&](const auto& record) { return record.getInterfaceNumber(number); }, _record);
}

int InterfaceRecord::getOsDeviceName(std::string& name) const {
  return std::visit([&](const auto& record) { return record.getOsDeviceName(name); }, _record);
}

int InterfaceRecord::getPermanentAddress(std::string& address) const {
  return std::visit([&](const auto& record) { return record.getPermanentAddress(address); }, _record);
}

int InterfaceRecord::getStatus(operationalStatus& status) const {
  return std::visit([&](const auto& record) { return statusOf(record, status); }, _record);
}

int InterfaceRecord::getAddressOrigin(EthPortAddressOriginEnum& origin) const {
  return std::visit([&](const auto& record) { return record.getAddressOrigin(origin); }, _record);
}

int InterfaceRecord::getDefaultGateway(route_t& route) const {
  return std::visit([&](const auto& record) { return record.getDefaultGateway(route); }, _record);
}

std::vector<IPv4AddressRecord> InterfaceRecord::getIPv4Addresses() const {
  return std::visit([](const auto& record) { return record.getIPv4Addresses(); }, _record);
}

std::vector<IPv6AddressRecord> InterfaceRecord::getIPv6Addresses() const {
  return std::visit([](const auto& record) { return record.getIPv6Addresses(); }, _record);
}

bool InterfaceRecord::usesIPv4() const {
  if (port()) return known(*port(), &EthernetPort::getPortState) == kPortUp;
  return known(*this, &InterfaceRecord::getStatus) == operationalStatus::OK;
}

}  // namespace ZEB
