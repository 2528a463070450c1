#pragma once

#include <string>
#include <variant>
#include <vector>

#include "ethernet/EthernetPort.h"
#include "ethernet/EthernetTeamDataObject.h"
#include "ethernet/EthernetVLanDataObject.h"

namespace ZEB {

/// The interface that an endpoint belongs to: a copy of the record of a port, a team or a VLAN, with the
/// getters that all three share. They return 0 when the value is known, and otherwise non-zero with the
/// argument untouched.
class InterfaceRecord {
 public:
  InterfaceRecord(EthernetPort port) : _record(std::move(port)) {}
  InterfaceRecord(EthernetTeamDataObject team) : _record(std::move(team)) {}
  InterfaceRecord(EthernetVLanDataObject vlan) : _record(std::move(vlan)) {}

  /// Null unless it is one.
  const EthernetPort* port() const { return std::get_if<EthernetPort>(&_record); }
  const EthernetVLanDataObject* vlan() const { return std::get_if<EthernetVLanDataObject>(&_record); }

  int refresh(RefreshPart part = RefreshPart::Everything);

  int getOsDeviceName(std::string& name) const;
  int getInterfaceNumber(std::uint32_t& number) const;
  int getPermanentAddress(std::string& address) const;
  int getStatus(operationalStatus& status) const;
  int getAddressOrigin(EthPortAddressOriginEnum& origin) const;
  int getDefaultGateway(route_t& route) const;
  std::vector<IPv4AddressRecord> getIPv4Addresses() const;
  std::vector<IPv6AddressRecord> getIPv6Addresses() const;

  /// Whether its IPv4 addresses are in use: a port has to be administratively up, a team or a VLAN has to be
  /// OK.
  bool usesIPv4() const;

 private:
  std::variant<EthernetPort, EthernetTeamDataObject, EthernetVLanDataObject> _record;
};

}  // namespace ZEB
