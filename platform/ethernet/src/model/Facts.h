#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "common/OperationalStatus.h"
#include "ethernet/Addresses.h"
#include "ethernet/EthernetTeamSlave.h"
#include "snapshot/HostSnapshot.h"

/// What records hold: immutable once made, shared by every copy of a record.
namespace ZEB::ethernet {

struct InterfaceFacts {
  LinkFacts link;
  std::vector<AddressFacts> addresses;  ///< in the kernel's order
  std::optional<route_t> gateway;
  std::int64_t sampleTime = 0;
};

struct VlanFacts : InterfaceFacts {};

struct PortFacts : InterfaceFacts {
  std::optional<std::uint16_t> number;  ///< position on the card, from 1
};

struct TeamMember {
  EthernetTeamSlave slave;
  std::optional<std::uint32_t> speed;                ///< Mbit/s
  std::optional<operationalStatus> portStatus = {};  ///< whatever bonding thinks of the link
  Settles settles = Settles::No;
  BondMemberFacts bonding = {};
  friend bool operator==(const TeamMember&, const TeamMember&) = default;
};

struct TeamFacts : InterfaceFacts {
  std::vector<TeamMember> members;  ///< by interface number
};

struct AdapterFacts {
  std::shared_ptr<const HardwareFacts> hardware;  ///< of the first port; null for a virtual adapter
  std::shared_ptr<const DriverFacts> driver;      ///< of the first port
  std::uint32_t portCount = 0;
  std::optional<operationalStatus> status;
  std::uint32_t locationPart = 0;  ///< adapters before it in the same place: slots may share a number
  friend bool operator==(const AdapterFacts&, const AdapterFacts&) = default;
};

}  // namespace ZEB::ethernet
