#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "snapshot/HardwareAddress.h"
#include "snapshot/IpAddress.h"
#include "snapshot/LinkModes.h"
#include "snapshot/PciAddress.h"

/// What a source reads of a host: raw facts, in the kernel's own numbers and units. Everything that may be
/// unknown is optional. Nothing here is derived from anything else.
namespace ZEB::ethernet {

struct LinkStatistics {
  std::uint64_t rxPackets = 0, txPackets = 0, rxBytes = 0, txBytes = 0;
  friend bool operator==(const LinkStatistics&, const LinkStatistics&) = default;
};

/// Error counters, each from the standard group where the driver has it and else from its own names.
struct MacStatistics {
  std::optional<std::uint64_t> alignmentErrors, fcsErrors, singleCollisions, multipleCollisions, deferred,
      lateCollisions, excessiveCollisions, transmitErrors, receiveErrors;
  friend bool operator==(const MacStatistics&, const MacStatistics&) = default;
};

/// Of a bond that speaks LACP: the aggregator that carries its traffic.
struct AggregatorFacts {
  std::optional<std::uint16_t> id, ports;  ///< its number, and how many members it has
  std::optional<std::uint16_t> actorKey, partnerKey;
  std::optional<HardwareAddress> partner;  ///< none where nobody at the other end speaks LACP
  friend bool operator==(const AggregatorFacts&, const AggregatorFacts&) = default;
};

struct BondFacts {
  std::optional<std::uint8_t> mode;          ///< IFLA_BOND_MODE
  std::optional<std::uint32_t> activeIndex;  ///< interface number of the active member
  std::optional<AggregatorFacts> aggregator = {};
  friend bool operator==(const BondFacts&, const BondFacts&) = default;
};

struct BondMemberFacts {
  std::optional<std::uint8_t> state;      ///< 0 active, 1 backup
  std::optional<std::uint8_t> miiStatus;  ///< 0 up, 1 going down, 2 down, 3 coming back
  std::optional<HardwareAddress> permanentAddress;
  std::optional<std::uint16_t> aggregatorId = {};                   ///< of the aggregator that it is in
  std::optional<std::uint16_t> actorState = {}, partnerState = {};  ///< states of its port in LACP, as bits
  friend bool operator==(const BondMemberFacts&, const BondMemberFacts&) = default;
};

struct EthtoolFacts {
  std::optional<LinkModes> supported, advertised;
  std::optional<LinkModes> partner;  ///< what the other end of the cable offers
  std::optional<bool> autonegotiation;
  std::optional<std::uint32_t> speed;  ///< Mbit/s
  std::optional<bool> fullDuplex;
  std::optional<std::uint8_t> media;  ///< PORT_* of ethtool
  std::optional<bool> linkDetected;
  std::optional<std::uint8_t> extendedState, extendedSubstate;
  std::optional<std::uint32_t> wakeOnLanSupported, wakeOnLanEnabled;  ///< WAKE_* bits
  std::optional<bool> eeeSupported, eeeEnabled;
  MacStatistics mac;
  friend bool operator==(const EthtoolFacts&, const EthtoolFacts&) = default;
};

enum class SlotKind : std::uint8_t { Pci = 3, PciX = 4, PciExpress = 5 };

/// What is known of the device behind an interface. Read once, when the device appears; shared by all who
/// know.
struct HardwareFacts {
  std::string bus;                ///< bus of the interface's parent: "pci", "usb", "virtio", "platform", ...
  std::string device;             ///< the parent's name on that bus
  std::optional<PciAddress> pci;  ///< the PCI function that it is or stands on
  std::optional<PciAddress> physicalFunction;  ///< for an SR-IOV virtual function
  std::optional<std::uint16_t> virtualFunction;
  std::optional<std::uint16_t> vendorId, deviceId;
  std::optional<std::string> vendorName, deviceName;
  std::optional<std::uint8_t> revision;
  std::optional<std::uint16_t> slot;
  std::optional<SlotKind> slotKind;
  std::optional<std::uint16_t> onboardIndex;  ///< the firmware's instance number
  std::optional<std::string> onboardLabel;
  std::optional<std::string> productName, partNumber, serialNumber;  ///< vital product data
  std::optional<std::uint16_t> devicePort;  ///< port of a function that has several, from 0
  bool wireless = false;
  friend bool operator==(const HardwareFacts&, const HardwareFacts&) = default;
};

/// What a driver says of itself.
struct DriverFacts {
  std::optional<std::string> name, version, firmwareVersion;
  friend bool operator==(const DriverFacts&, const DriverFacts&) = default;
};

/// Whether an interface that was switched on, or that joined a team, still waits for its link.
enum class Settles : std::uint8_t { No, SwitchedOn, Joined };

struct LinkFacts {
  std::uint32_t index = 0;
  std::string name;
  std::optional<std::uint16_t> type;      ///< ARPHRD_*
  std::optional<std::uint32_t> flags;     ///< IFF_*
  std::optional<std::uint8_t> operState;  ///< IF_OPER_*
  std::optional<bool> carrier;
  std::optional<std::uint32_t> mtu;
  std::optional<HardwareAddress> address, permanentAddress;
  std::optional<std::uint32_t> lowerIndex;   ///< what it is stacked on
  std::optional<std::uint32_t> masterIndex;  ///< what it is a member of
  std::string kind;                          ///< "" for a device with a driver of its own
  std::optional<std::string> parentBus, parentDevice;
  std::optional<std::string> portName;  ///< the driver's name of a physical port, such as "p0" or "pf0vf1"
  std::optional<LinkStatistics> statistics;
  std::optional<BondFacts> bond;
  std::optional<BondMemberFacts> bondMember;
  std::optional<std::uint16_t> vlanId;
  EthtoolFacts ethtool;
  std::shared_ptr<const HardwareFacts> hardware;
  std::shared_ptr<const DriverFacts> driver;
  // Of no source, but of who watches it.
  Settles settles = Settles::No;
  bool hadCarrier = false;  ///< since it settles
  friend bool operator==(const LinkFacts&, const LinkFacts&) = default;
};

struct AddressFacts {
  std::uint32_t index = 0;  ///< the interface's
  IpAddress address;
  std::uint8_t prefixLength = 0;
  std::uint32_t flags = 0;               ///< IFA_F_*
  std::optional<std::uint8_t> protocol;  ///< IFAPROT_*
  friend bool operator==(const AddressFacts&, const AddressFacts&) = default;
};

/// A default route with a gateway; a route of several next hops is there once for each.
struct RouteFacts {
  std::uint32_t index = 0;  ///< the interface that it leaves by
  IpAddress gateway;
  std::uint32_t metric = 0;
  std::uint32_t table = 0;
  friend bool operator==(const RouteFacts&, const RouteFacts&) = default;
};

/// A routing rule that has default routes looked up in a table.
struct RuleFacts {
  static constexpr std::uint32_t kTableOfVrf = 0;  ///< of the VRF that an interface is in

  IpFamily family = IpFamily::V4;
  std::uint32_t table = 0;
  // NOLINTNEXTLINE(modernize-use-nullptr): the check takes the comparison for one with a pointer
  friend auto operator<=>(const RuleFacts&, const RuleFacts&) = default;
};

/// The counters of one interface.
struct InterfaceCounters {
  std::uint32_t index = 0;
  LinkStatistics statistics;
  MacStatistics mac;
};

struct CounterSnapshot {
  std::int64_t sampleTime = 0;                ///< seconds since the epoch, when reading began
  std::vector<InterfaceCounters> interfaces;  ///< by interface number
};

struct HostSnapshot {
  std::int64_t sampleTime = 0;  ///< seconds since the epoch, when reading began
  std::vector<LinkFacts> links;
  std::vector<AddressFacts> addresses;
  std::vector<RouteFacts> routes;
  std::vector<RuleFacts> rules;  ///< each once; none of a family whose rules are not known
};

}  // namespace ZEB::ethernet
