#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "common/OperationalStatus.h"
#include "ethernet/Addresses.h"
#include "ethernet/EthernetEnums.h"
#include "ethernet/FactsHandle.h"
#include "ethernet/RefreshPart.h"

namespace ZEB {

namespace ethernet {
struct VlanFacts;
}

/// One VLAN interface on a port or a team; a VLAN stacked on a VLAN belongs to the same carrier. Getters
/// return 0 when the value is known, and otherwise non-zero with the argument untouched. They answer from the
/// record's own copy, which only `refresh` and assignment change. A record may be read beside its `refresh`.
class EthernetVLanDataObject {
 public:
  EthernetVLanDataObject() = default;
  explicit EthernetVLanDataObject(ethernet::FactsHandle<ethernet::VlanFacts> facts)
      : _facts(std::move(facts)) {}

  /// Puts newer facts in place. Non-zero when nothing could be read (the old facts stay) and when the
  /// interface is gone (every getter fails from then on).
  int refresh(RefreshPart part = RefreshPart::Everything);

  int getOsDeviceName(std::string& name) const;
  /// The kernel's number of the interface.
  int getInterfaceNumber(std::uint32_t& number) const;
  /// The interface's own address in colon form: a VLAN has no address burnt in.
  int getPermanentAddress(std::string& address) const;
  /// The interface's name, which is what a VLAN is known by on Linux.
  int getVLanName(std::string& name) const;
  int getVLanId(std::uint16_t& id) const;
  int getInterfaceStatus(operationalStatus& status) const;
  int getAddressOrigin(EthPortAddressOriginEnum& origin) const;
  int getDefaultGateway(route_t& route) const;
  std::vector<IPv4AddressRecord> getIPv4Addresses() const;
  std::vector<IPv6AddressRecord> getIPv6Addresses() const;

 private:
  ethernet::FactsHandle<ethernet::VlanFacts> _facts;
};

}  // namespace ZEB
