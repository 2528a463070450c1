#pragma once

#include <cstdint>

namespace ZEB {

/// What a port is, by medium and speed: the codes of the CIM value map "PortType".
enum class EthPortTypeEnum : std::uint16_t {
  Unknown = 0,
  Other = 1,
  Eth10BaseT = 50,
  Eth10_100BaseT = 51,
  Eth100BaseT = 52,
  Eth1000BaseT = 53,
  Eth2500BaseT = 54,
  Eth10GBaseT = 55,
  Eth10GBaseCX4 = 56,
  Eth1000BaseKX = 57,
  Eth10GBaseKX4 = 58,
  Eth10GBaseKR = 59,
  Eth1000_10GBaseKX = 60,
  Eth1000BaseKX_10GBaseKX4_10GBaseKR = 61,
  Eth10_100_1000BaseT = 62,
  Eth100_1000_10GBaseT = 63,
  Eth100BaseFX = 100,
  Eth100BaseSX = 101,
  Eth1000BaseSX = 102,
  Eth1000BaseLX = 103,
  Eth1000BaseCX = 104,
  Eth10GBaseSR = 105,
  Eth10GBaseSW = 106,
  Eth10GBaseLX4 = 107,
  Eth10GBaseLR = 108,
  Eth10GBaseLW = 109,
  Eth10GBaseER = 110,
  Eth10GBaseEW = 111,
  Eth10GBaseLRM = 112,
  Eth40GBaseKR4 = 200,
  Eth40GBaseCR4 = 201,
  Eth40GBaseSR4 = 202,
  Eth40GBaseFR = 203,
  Eth40GBaseLR4 = 204,
  Eth100GBaseCR10 = 300,
  Eth100GBaseSR10 = 301,
  Eth100GBaseLR4 = 302,
  Eth100GBaseER4 = 303,
  Eth100GBaseKR4 = 304,
  Eth100GBaseCR4 = 305,
  Eth100GBaseKP4 = 306,
};

/// Link technology: the codes of the CIM value map "LinkTechnology".
enum class EthPortLinkEnum : std::uint16_t {
  Unknown = 0,
  Other = 1,
  Ethernet = 2,
  InfiniBand = 3,
  FibreChannel = 4,
  WirelessLan = 11,
};

/// Where an interface has its address from: the codes of the CIM value map "AddressOrigin".
enum class EthPortAddressOriginEnum : std::uint16_t {
  Unknown = 0,
  Other = 1,
  NotApplicable = 2,
  Static = 3,
  Dhcp = 4,
  Bootp = 5,
  IPv4LinkLocal = 6,
  Dhcpv6 = 7,
  IPv6AutoConfig = 8,
  Stateless = 9,
  LinkLocal = 10,
};

/// What a port can do: the codes of the CIM value map "Capabilities" of Ethernet ports.
enum class EthCapabilityEnum : std::uint16_t {
  Unknown = 0,
  Other = 1,
  AlertOnLan = 2,
  WakeOnLan = 3,
  FailOver = 4,
  LoadBalancing = 5,
  Lldp = 6,
  PowerOverEthernet = 7,
  EnergyEfficientEthernet = 8,
  Dce = 9,
  Vdp = 10,
  SChannel = 11,
};

/// How a team works: the kernel's bonding mode number.
enum class EthTeamModeEnum : std::uint16_t {
  BalanceRoundRobin = 0,
  ActiveBackup = 1,
  BalanceXor = 2,
  Broadcast = 3,
  Ieee8023ad = 4,
  BalanceTlb = 5,
  BalanceAlb = 6,
};

/// What a member does in its team.
enum class EthTeamMemberRoleEnum : std::uint16_t {
  Unknown = 0,
  Active = 1,  ///< carries traffic
  Backup = 2,  ///< has link and waits
  Failed = 3,  ///< its link is down
};

/// How much of a team's redundancy is left: the codes of the CIM value map "RedundancyStatus".
enum class EthTeamRedundancyStatusEnum : std::uint16_t {
  Unknown = 0,
  FullyRedundant = 2,      ///< every member is up
  DegradedRedundancy = 3,  ///< some members are down, two or more are up
  RedundancyLost = 4,      ///< members are down, one is up
  OverallFailure = 5,      ///< no member is up
};

}  // namespace ZEB
