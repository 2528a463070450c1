#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "common/Logger.h"
#include "common/OperationalStatus.h"
#include "ethernet/Addresses.h"
#include "ethernet/EthernetEnums.h"
#include "ethernet/EthernetTeamSlave.h"
#include "ethernet/EthernetVLanDataObject.h"
#include "ethernet/FactsHandle.h"
#include "ethernet/RefreshPart.h"

namespace ZEB {

namespace ethernet {
struct TeamFacts;
}

/// One team: a bonding interface with its members. Getters return 0 when the value is known, and otherwise
/// non-zero with the argument untouched. They answer from the record's own copy, which only `refresh` and
/// assignment change. A record may be read beside its `refresh`.
class EthernetTeamDataObject {
 public:
  EthernetTeamDataObject() = default;
  explicit EthernetTeamDataObject(const Logger&) {}
  EthernetTeamDataObject(ethernet::FactsHandle<ethernet::TeamFacts> facts,
                         std::vector<EthernetVLanDataObject> vlanRecords)
      : vlans(std::move(vlanRecords)), _facts(std::move(facts)) {}

  /// As for a port; the members are read with the team.
  int refresh(RefreshPart part = RefreshPart::Everything);

  int getOsDeviceName(std::string& name) const;
  /// The kernel's number of the interface.
  int getInterfaceNumber(std::uint32_t& number) const;
  /// The team's own address in colon form: a bonding interface has no address burnt in.
  int getPermanentAddress(std::string& address) const;
  int getTeamStatus(operationalStatus& status) const;
  int getOperatingMode(EthTeamModeEnum& mode) const;
  int getCurrentOperatingMode(EthTeamModeEnum& mode) const;
  int getRedundancyStatus(EthTeamRedundancyStatusEnum& status) const;
  int getNumberOfSlaves(std::uint32_t& count) const;
  /// Bits a second.
  int getSpeed(unsigned long& speed) const;
  /// Bytes: the interface's MTU.
  int getMaxFrameSize(unsigned long& size) const;
  /// How the team is, in a few words.
  int getTeamMessage(std::string& message) const;
  int getAddressOrigin(EthPortAddressOriginEnum& origin) const;
  int getDefaultGateway(route_t& route) const;

  /// Codes of `EthCapabilityEnum`, ascending.
  std::vector<std::uint16_t> getCapabilities() const;
  std::vector<std::uint16_t> getEnabledCapabilities() const;
  std::vector<IPv4AddressRecord> getIPv4Addresses() const;
  std::vector<IPv6AddressRecord> getIPv6Addresses() const;

  /// By interface number.
  std::vector<EthernetTeamSlave> getSlaves() const;
  /// Exact, case-sensitive. Non-zero, and `slave` untouched, when there is no such member.
  int findSlaveByName(const std::string& name, EthernetTeamSlave& slave) const;
  /// "Active", "Backup", "Failed" or "Unknown".
  static std::string roleToString(EthTeamMemberRoleEnum role);

  /// The VLANs on this team when the record was delivered, by interface number.
  std::vector<EthernetVLanDataObject> vlans;

 private:
  ethernet::FactsHandle<ethernet::TeamFacts> _facts;
};

}  // namespace ZEB
