#include "recorded/Origins.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>

#include "recorded/Describe.h"

namespace ZEB::ethernet {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::string_view kSettings = "ioctl ETHTOOL_GLINKSETTINGS, on kernels before 5.6";
constexpr std::string_view kCounters = "the driver's own counters by ioctl ETHTOOL_GSTATS, before 5.13";
constexpr std::string_view kUsb = "of a USB device its own descriptor";
constexpr std::string_view kDriver = "ioctl ETHTOOL_GDRVINFO";

constexpr Origin kOrigins[] = {
    {"time", "clock when reading began"},
    {"links.index", "RTM_NEWLINK ifi_index"},
    {"links.name", "RTM_NEWLINK IFLA_IFNAME"},
    {"links.type", "RTM_NEWLINK ifi_type"},
    {"links.flags", "RTM_NEWLINK ifi_flags"},
    {"links.operState", "RTM_NEWLINK IFLA_OPERSTATE"},
    {"links.carrier", "RTM_NEWLINK IFLA_CARRIER"},
    {"links.mtu", "RTM_NEWLINK IFLA_MTU"},
    {"links.address", "RTM_NEWLINK IFLA_ADDRESS"},
    {"links.permanentAddress", "RTM_NEWLINK IFLA_PERM_ADDRESS",
     "ioctl ETHTOOL_GPERMADDR, on kernels before 5.6"},
    {"links.lowerIndex", "RTM_NEWLINK IFLA_LINK"},
    {"links.masterIndex", "RTM_NEWLINK IFLA_MASTER"},
    {"links.kind", "RTM_NEWLINK IFLA_LINKINFO IFLA_INFO_KIND"},
    {"links.parentBus", "RTM_NEWLINK IFLA_PARENT_DEV_BUS_NAME",
     "/sys/class/net/NAME/device/subsystem, on kernels before 5.14"},
    {"links.parentDevice", "RTM_NEWLINK IFLA_PARENT_DEV_NAME",
     "/sys/class/net/NAME/device, on kernels before 5.14"},
    {"links.portName", "RTM_NEWLINK IFLA_PHYS_PORT_NAME"},
    {"links.statistics.rxPackets", "RTM_NEWLINK IFLA_STATS64 rx_packets",
     "RTM_NEWSTATS IFLA_STATS_LINK_64, when counters alone are asked for"},
    {"links.statistics.txPackets", "RTM_NEWLINK IFLA_STATS64 tx_packets",
     "RTM_NEWSTATS IFLA_STATS_LINK_64, when counters alone are asked for"},
    {"links.statistics.rxBytes", "RTM_NEWLINK IFLA_STATS64 rx_bytes",
     "RTM_NEWSTATS IFLA_STATS_LINK_64, when counters alone are asked for"},
    {"links.statistics.txBytes", "RTM_NEWLINK IFLA_STATS64 tx_bytes",
     "RTM_NEWSTATS IFLA_STATS_LINK_64, when counters alone are asked for"},
    {"links.bond.mode", "RTM_NEWLINK IFLA_INFO_DATA IFLA_BOND_MODE"},
    {"links.bond.activeIndex", "RTM_NEWLINK IFLA_INFO_DATA IFLA_BOND_ACTIVE_SLAVE"},
    {"links.bond.aggregator.id", "RTM_NEWLINK IFLA_INFO_DATA IFLA_BOND_AD_INFO_AGGREGATOR"},
    {"links.bond.aggregator.ports", "RTM_NEWLINK IFLA_INFO_DATA IFLA_BOND_AD_INFO_NUM_PORTS"},
    {"links.bond.aggregator.actorKey", "RTM_NEWLINK IFLA_INFO_DATA IFLA_BOND_AD_INFO_ACTOR_KEY"},
    {"links.bond.aggregator.partnerKey", "RTM_NEWLINK IFLA_INFO_DATA IFLA_BOND_AD_INFO_PARTNER_KEY"},
    {"links.bond.aggregator.partner", "RTM_NEWLINK IFLA_INFO_DATA IFLA_BOND_AD_INFO_PARTNER_MAC"},
    {"links.bondMember.state", "RTM_NEWLINK IFLA_INFO_SLAVE_DATA IFLA_BOND_SLAVE_STATE"},
    {"links.bondMember.miiStatus", "RTM_NEWLINK IFLA_INFO_SLAVE_DATA IFLA_BOND_SLAVE_MII_STATUS"},
    {"links.bondMember.permanentAddress", "RTM_NEWLINK IFLA_INFO_SLAVE_DATA IFLA_BOND_SLAVE_PERM_HWADDR"},
    {"links.bondMember.aggregatorId", "RTM_NEWLINK IFLA_INFO_SLAVE_DATA IFLA_BOND_SLAVE_AD_AGGREGATOR_ID"},
    {"links.bondMember.actorState",
     "RTM_NEWLINK IFLA_INFO_SLAVE_DATA IFLA_BOND_SLAVE_AD_ACTOR_OPER_PORT_STATE"},
    {"links.bondMember.partnerState",
     "RTM_NEWLINK IFLA_INFO_SLAVE_DATA IFLA_BOND_SLAVE_AD_PARTNER_OPER_PORT_STATE"},
    {"links.vlanId", "RTM_NEWLINK IFLA_INFO_DATA IFLA_VLAN_ID"},
    {"links.ethtool.supported", "ETHTOOL_MSG_LINKMODES_GET ETHTOOL_A_LINKMODES_OURS, mask", kSettings},
    {"links.ethtool.advertised", "ETHTOOL_MSG_LINKMODES_GET ETHTOOL_A_LINKMODES_OURS, value", kSettings},
    {"links.ethtool.partner", "ETHTOOL_MSG_LINKMODES_GET ETHTOOL_A_LINKMODES_PEER, value", kSettings},
    {"links.ethtool.autonegotiation", "ETHTOOL_MSG_LINKMODES_GET ETHTOOL_A_LINKMODES_AUTONEG", kSettings},
    {"links.ethtool.speed", "ETHTOOL_MSG_LINKMODES_GET ETHTOOL_A_LINKMODES_SPEED", kSettings},
    {"links.ethtool.fullDuplex", "ETHTOOL_MSG_LINKMODES_GET ETHTOOL_A_LINKMODES_DUPLEX", kSettings},
    {"links.ethtool.media", "ETHTOOL_MSG_LINKINFO_GET ETHTOOL_A_LINKINFO_PORT", kSettings},
    {"links.ethtool.linkDetected", "ETHTOOL_MSG_LINKSTATE_GET ETHTOOL_A_LINKSTATE_LINK",
     "ioctl ETHTOOL_GLINK, on kernels before 5.6"},
    {"links.ethtool.extendedState", "ETHTOOL_MSG_LINKSTATE_GET ETHTOOL_A_LINKSTATE_EXT_STATE"},
    {"links.ethtool.extendedSubstate", "ETHTOOL_MSG_LINKSTATE_GET ETHTOOL_A_LINKSTATE_EXT_SUBSTATE"},
    {"links.ethtool.wakeOnLanSupported", "ETHTOOL_MSG_WOL_GET ETHTOOL_A_WOL_MODES, mask",
     "ioctl ETHTOOL_GWOL, on kernels before 5.6"},
    {"links.ethtool.wakeOnLanEnabled", "ETHTOOL_MSG_WOL_GET ETHTOOL_A_WOL_MODES, value",
     "ioctl ETHTOOL_GWOL, on kernels before 5.6"},
    {"links.ethtool.eeeSupported", "ETHTOOL_MSG_EEE_GET ETHTOOL_A_EEE_MODES_OURS, mask",
     "ioctl ETHTOOL_GEEE, on kernels before 5.6"},
    {"links.ethtool.eeeEnabled", "ETHTOOL_MSG_EEE_GET ETHTOOL_A_EEE_ENABLED",
     "ioctl ETHTOOL_GEEE, on kernels before 5.6"},
    {"links.ethtool.mac.alignmentErrors", "ETHTOOL_MSG_STATS_GET ETHTOOL_A_STATS_ETH_MAC_7_ALIGN_ERR",
     kCounters},
    {"links.ethtool.mac.fcsErrors", "ETHTOOL_MSG_STATS_GET ETHTOOL_A_STATS_ETH_MAC_6_FCS_ERR", kCounters},
    {"links.ethtool.mac.singleCollisions", "ETHTOOL_MSG_STATS_GET ETHTOOL_A_STATS_ETH_MAC_3_SINGLE_COL",
     kCounters},
    {"links.ethtool.mac.multipleCollisions", "ETHTOOL_MSG_STATS_GET ETHTOOL_A_STATS_ETH_MAC_4_MULTI_COL",
     kCounters},
    {"links.ethtool.mac.deferred", "ETHTOOL_MSG_STATS_GET ETHTOOL_A_STATS_ETH_MAC_9_TX_DEFER", kCounters},
    {"links.ethtool.mac.lateCollisions", "ETHTOOL_MSG_STATS_GET ETHTOOL_A_STATS_ETH_MAC_10_LATE_COL",
     kCounters},
    {"links.ethtool.mac.excessiveCollisions", "ETHTOOL_MSG_STATS_GET ETHTOOL_A_STATS_ETH_MAC_11_XS_COL",
     kCounters},
    {"links.ethtool.mac.transmitErrors", "ETHTOOL_MSG_STATS_GET ETHTOOL_A_STATS_ETH_MAC_12_TX_INT_ERR",
     kCounters},
    {"links.ethtool.mac.receiveErrors", "ETHTOOL_MSG_STATS_GET ETHTOOL_A_STATS_ETH_MAC_15_RX_INT_ERR",
     kCounters},
    {"links.hardware.bus", "the bus of the interface's parent device"},
    {"links.hardware.device", "the name of the interface's parent device"},
    {"links.hardware.pci", "the PCI function among the folders above the device in /sys/devices"},
    {"links.hardware.physicalFunction", "/sys/bus/pci/devices/FUNCTION/physfn"},
    {"links.hardware.virtualFunction", "/sys/bus/pci/devices/PHYSICAL/virtfnN"},
    {"links.hardware.vendorId", "/sys/bus/pci/devices/FUNCTION/vendor", kUsb},
    {"links.hardware.deviceId", "/sys/bus/pci/devices/FUNCTION/device", kUsb},
    {"links.hardware.vendorName", "pci.ids, by the vendor's number", kUsb},
    {"links.hardware.deviceName", "pci.ids, by the numbers of vendor and device", kUsb},
    {"links.hardware.revision", "/sys/bus/pci/devices/FUNCTION/revision"},
    {"links.hardware.slot", "SMBIOS system slots (type 9), by bus address",
     "/sys/bus/pci/slots, where SMBIOS does not name the slot"},
    {"links.hardware.slotKind", "SMBIOS system slots (type 9), slot type",
     "PCI capabilities in config, where SMBIOS does not say it"},
    {"links.hardware.onboardIndex", "/sys/bus/pci/devices/FUNCTION/index (SMBIOS type 41)",
     "acpi_index, where SMBIOS does not name the device"},
    {"links.hardware.onboardLabel", "/sys/bus/pci/devices/FUNCTION/label (SMBIOS type 41)"},
    {"links.hardware.productName", "PCI vital product data, identifier string"},
    {"links.hardware.partNumber", "PCI vital product data, PN"},
    {"links.hardware.serialNumber", "PCI vital product data, SN", kUsb},
    {"links.hardware.devicePort", "/sys/class/net/NAME/dev_port"},
    {"links.hardware.wireless", "/sys/class/net/NAME/phy80211"},
    {"links.driver.name", kDriver},
    {"links.driver.version", kDriver},
    {"links.driver.firmwareVersion", kDriver},
    {"addresses.index", "RTM_NEWADDR ifa_index"},
    {"addresses.address", "RTM_NEWADDR IFA_LOCAL", "IFA_ADDRESS, which IPv6 has alone"},
    {"addresses.prefixLength", "RTM_NEWADDR ifa_prefixlen"},
    {"addresses.flags", "RTM_NEWADDR IFA_FLAGS", "ifa_flags"},
    {"addresses.protocol", "RTM_NEWADDR IFA_PROTO"},
    {"routes.index", "RTM_NEWROUTE RTA_OIF", "the next hop in RTA_MULTIPATH"},
    {"routes.gateway", "RTM_NEWROUTE RTA_GATEWAY", "RTA_VIA, when it is of another family"},
    {"routes.metric", "RTM_NEWROUTE RTA_PRIORITY"},
    {"routes.table", "RTM_NEWROUTE RTA_TABLE", "rtm_table"},
    {"rules.family", "RTM_NEWRULE family"},
    {"rules.table", "RTM_NEWRULE FRA_TABLE", "FRA_L3MDEV, for the table of a VRF"},
};

/// Walks over everything that a snapshot can have.
class Walk {
 public:
  Walk(std::string prefix, Json& facts) : _prefix(std::move(prefix)), _facts(facts) {}

  template <class T>
  void operator()(const char* key, T&) {
    visit<T>(_prefix + key);
  }
  void flags(const char* key, std::optional<std::uint32_t>&) {
    add(_prefix + key, Json::array({"UP", "LOWER_UP", "RUNNING"}), Json::array());
  }
  void operState(const char* key, std::optional<std::uint8_t>&) { add(_prefix + key, "DOWN", "UP"); }

 private:
  template <class T>
  struct Inner {
    using type = T;
  };
  template <class T>
  struct Inner<std::optional<T>> : Inner<T> {};
  template <class T>
  struct Inner<std::vector<T>> : Inner<T> {};
  template <class T>
  struct Inner<std::shared_ptr<const T>> : Inner<T> {};

  template <class T>
  void visit(const std::string& key) {
    using Value = typename Inner<T>::type;
    Value value{};
    if constexpr (requires(Walk & walk) { describe(value, walk); }) {
      Walk inside(key + ".", _facts);
      describe(value, inside);
    } else {
      const auto [one, other] = samplesOf(value);
      add(key, one, other);
    }
  }

  using Samples = std::pair<Json, Json>;
  static Samples samplesOf(const bool&) { return {true, false}; }
  template <class T>
  requires std::is_arithmetic_v<T>
  static Samples samplesOf(const T&) { return {1, 2}; }
  static Samples samplesOf(const std::string&) { return {"one", "two"}; }
  static Samples samplesOf(const HardwareAddress&) { return {"02:00:00:00:00:01", "02:00:00:00:00:02"}; }
  static Samples samplesOf(const IpAddress&) { return {"192.0.2.1", "2001:db8::1"}; }
  static Samples samplesOf(const IpFamily&) { return {"ipv4", "ipv6"}; }
  static Samples samplesOf(const SlotKind&) { return {5, 3}; }
  static Samples samplesOf(const PciAddress&) { return {"0000:01:00.0", "0000:02:00.0"}; }
  static Samples samplesOf(const LinkModes&) {
    return {Json::array({"1000baseT/Full", "TP"}), Json::array({"10000baseSR/Full", "FIBRE"})};
  }

  void add(const std::string& key, const Json& one, const Json& other) {
    const auto* const origin = std::ranges::find(kOrigins, key, &Origin::key);
    Json fact = {
        {"key", key}, {"values", Json::array({one, other})}, {"from", nullptr}, {"otherwise", nullptr}};
    if (origin != std::end(kOrigins)) {
      fact["from"] = origin->from;
      if (!origin->otherwise.empty()) fact["otherwise"] = origin->otherwise;
    }
    _facts.push_back(std::move(fact));
  }

  const std::string _prefix;
  Json& _facts;
};

}  // namespace

std::span<const Origin> origins() {
  return kOrigins;
}

std::string factsAsJson() {
  Json facts = Json::array();
  HostSnapshot snapshot;
  Walk walk("", facts);
  describe(snapshot, walk);
  return facts.dump(1) + "\n";
}

}  // namespace ZEB::ethernet
