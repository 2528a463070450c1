#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "common/OperationalStatus.h"
#include "ethernet/Addresses.h"
#include "ethernet/EthStats.h"
#include "ethernet/EthernetEnums.h"
#include "ethernet/EthernetVLanDataObject.h"
#include "ethernet/FactsHandle.h"
#include "ethernet/RefreshPart.h"

namespace ZEB {

namespace ethernet {
struct PortFacts;
}

/// One physical port. Getters return 0 when the value is known, and otherwise non-zero with the argument
/// untouched. They answer from the record's own copy, which only `refresh` and assignment change. A record
/// may be read beside its `refresh`.
class EthernetPort {
 public:
  EthernetPort() = default;
  explicit EthernetPort(ethernet::FactsHandle<ethernet::PortFacts> facts) : _facts(std::move(facts)) {}

  /// Puts newer facts in place: those of the dump that the open `RefreshScope` shares, else this interface's
  /// alone. Non-zero when nothing could be read (the old facts stay) and when the interface is gone (every
  /// getter fails from then on). A part costs less than everything where many ports are refreshed in one
  /// scope.
  int refresh(RefreshPart part = RefreshPart::Everything);

  /// A record of the same facts that keeps them, and is the quicker to read. It knows no VLANs.
  EthernetPort still() const { return EthernetPort(_facts.still()); }

  int getOsDeviceName(std::string& name) const;
  /// The kernel's number of the interface.
  int getInterfaceNumber(std::uint32_t& number) const;
  int getPortPciProductStr(std::string& product) const;
  /// Colon form. The address burnt in, whatever address is in use.
  int getPermanentAddress(std::string& address) const;
  int getPortType(EthPortTypeEnum& type) const;
  int getPortLinkType(EthPortLinkEnum& link) const;
  /// Position on the card, from 1.
  int getPortNumber(std::uint16_t& number) const;
  /// Number of an SR-IOV virtual function on its physical function, from 0.
  int getVirtualPortNumber(std::uint16_t& number) const;
  /// Bits a second: the fastest supported link mode.
  int getPortSupportedSpeed(unsigned long& speed) const;
  /// Bits a second.
  int getPortSpeed(unsigned long& speed) const;
  /// Bytes: the interface's MTU.
  int getPortMaxFrameSize(unsigned long& size) const;
  int getFullDuplex(bool& fullDuplex) const;
  /// Whether speed and duplex are negotiated.
  int getAutoSense(bool& autoSense) const;
  int getPortStatus(operationalStatus& status) const;
  /// 2 administratively up, 3 down.
  int getPortState(std::uint16_t& state) const;
  /// How the link is, in a few words; why it is down, where the driver says.
  int getPortLinkMessage(std::string& message) const;
  int getAddressOrigin(EthPortAddressOriginEnum& origin) const;
  /// The IPv4 one where there is one, else the IPv6 one; of several, that of the lowest metric.
  int getDefaultGateway(route_t& route) const;
  /// Fills the counters that were read, and says in `known` which; fails when none was.
  int getEthStats(ethStats_st& statistics) const;

  /// Codes of `EthCapabilityEnum`, ascending.
  std::vector<std::uint16_t> getCapabilities() const;
  std::vector<std::uint16_t> getEnabledCapabilities() const;
  std::vector<IPv4AddressRecord> getIPv4Addresses() const;
  std::vector<IPv6AddressRecord> getIPv6Addresses() const;

  /// Colon form: the address in use, one string where it is known and none where not.
  std::vector<std::string> networkAddresses() const;
  bool hasStatistics() const;

  /// Of the library: what the record holds now; null for one that was never filled.
  std::shared_ptr<const ethernet::PortFacts> facts() const { return _facts.facts(); }

  /// The VLANs on this port when the record was delivered, by interface number.
  std::vector<EthernetVLanDataObject> vlans;

 private:
  ethernet::FactsHandle<ethernet::PortFacts> _facts;
};

}  // namespace ZEB
