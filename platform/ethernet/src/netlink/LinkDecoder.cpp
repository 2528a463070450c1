#include <linux/if.h>
#include <linux/if_link.h>
#include <linux/rtnetlink.h>

#include "netlink/RtnlDecoders.h"

namespace ZEB::ethernet {
namespace {

using Kind = AttributeKind;

constexpr AttributePolicy kLinkPolicy{
    {IFLA_ADDRESS, Kind::Binary},
    {IFLA_IFNAME, Kind::Text},
    {IFLA_MTU, Kind::U32},
    {IFLA_LINK, Kind::U32},
    {IFLA_LINK_NETNSID, Kind::U32},
    {IFLA_MASTER, Kind::U32},
    {IFLA_OPERSTATE, Kind::U8},
    {IFLA_LINKINFO, Kind::Nested},
    {IFLA_STATS64, Kind::Binary},
    {IFLA_CARRIER, Kind::U8},
    {IFLA_PHYS_PORT_NAME, Kind::Text},
    {IFLA_PERM_ADDRESS, Kind::Binary},
    {IFLA_PARENT_DEV_NAME, Kind::Text},
    {IFLA_PARENT_DEV_BUS_NAME, Kind::Text},
};

constexpr AttributePolicy kStatsPolicy{{IFLA_STATS_LINK_64, Kind::Binary}};

constexpr AttributePolicy kInfoPolicy{
    {IFLA_INFO_KIND, Kind::Text},
    {IFLA_INFO_DATA, Kind::Nested},
    {IFLA_INFO_SLAVE_KIND, Kind::Text},
    {IFLA_INFO_SLAVE_DATA, Kind::Nested},
};

constexpr AttributePolicy kBondPolicy{
    {IFLA_BOND_MODE, Kind::U8}, {IFLA_BOND_ACTIVE_SLAVE, Kind::U32}, {IFLA_BOND_AD_INFO, Kind::Nested}};

constexpr AttributePolicy kAggregatorPolicy{{IFLA_BOND_AD_INFO_AGGREGATOR, Kind::U16},
                                            {IFLA_BOND_AD_INFO_NUM_PORTS, Kind::U16},
                                            {IFLA_BOND_AD_INFO_ACTOR_KEY, Kind::U16},
                                            {IFLA_BOND_AD_INFO_PARTNER_KEY, Kind::U16},
                                            {IFLA_BOND_AD_INFO_PARTNER_MAC, Kind::Binary}};

constexpr AttributePolicy kMemberPolicy{
    {IFLA_BOND_SLAVE_STATE, Kind::U8},
    {IFLA_BOND_SLAVE_MII_STATUS, Kind::U8},
    {IFLA_BOND_SLAVE_PERM_HWADDR, Kind::Binary},
    {IFLA_BOND_SLAVE_AD_AGGREGATOR_ID, Kind::U16},
    {IFLA_BOND_SLAVE_AD_ACTOR_OPER_PORT_STATE, Kind::U8},
    {IFLA_BOND_SLAVE_AD_PARTNER_OPER_PORT_STATE, Kind::U16},
};

constexpr AttributePolicy kVlanPolicy{{IFLA_VLAN_ID, Kind::U16}};

constexpr std::uint16_t kVlanIdLimit = 4096;

std::optional<HardwareAddress> macAddress(const Attributes& attributes, std::uint16_t type) {
  const auto bytes = attributes.bytes(type);
  return bytes ? hardwareAddress(*bytes) : std::nullopt;
}

std::optional<std::string> nonEmptyText(const Attributes& attributes, std::uint16_t type) {
  auto text = attributes.text(type);
  return text && text->empty() ? std::nullopt : text;
}

/// The structure grows at its end from kernel to kernel; what is read here has always led it.
std::optional<LinkStatistics> linkStatistics(std::optional<Bytes> bytes) {
  struct Head {
    std::uint64_t rxPackets, txPackets, rxBytes, txBytes;
  };
  const auto head = bytes ? leading<Head>(*bytes) : std::nullopt;
  if (!head) return std::nullopt;
  return LinkStatistics{head->rxPackets, head->txPackets, head->rxBytes, head->txBytes};
}

/// Only a link without a carrier has a layer below that is down. Beside a carrier it is the state from
/// before: the kernel works changes off a hundred links a second, so that it may stand for a long while.
std::optional<std::uint8_t> operState(const Attributes& attributes, std::optional<bool> carrier) {
  const auto state = attributes.u8(IFLA_OPERSTATE);
  return carrier == true && state == IF_OPER_LOWERLAYERDOWN ? std::nullopt : state;
}

std::optional<AggregatorFacts> aggregator(std::optional<Bytes> bytes) {
  if (!bytes) return std::nullopt;
  const Attributes info(*bytes, kAggregatorPolicy);
  return AggregatorFacts{info.u16(IFLA_BOND_AD_INFO_AGGREGATOR), info.u16(IFLA_BOND_AD_INFO_NUM_PORTS),
                         info.u16(IFLA_BOND_AD_INFO_ACTOR_KEY), info.u16(IFLA_BOND_AD_INFO_PARTNER_KEY),
                         macAddress(info, IFLA_BOND_AD_INFO_PARTNER_MAC)};
}

void decodeOwnKind(const Attributes& info, LinkFacts& link) {
  link.kind = info.text(IFLA_INFO_KIND).value_or("");
  const Bytes data = info.bytes(IFLA_INFO_DATA).value_or(Bytes{});
  if (link.kind == "bond") {
    const Attributes bond(data, kBondPolicy);
    link.bond = BondFacts{bond.u8(IFLA_BOND_MODE), bond.u32(IFLA_BOND_ACTIVE_SLAVE),
                          aggregator(bond.bytes(IFLA_BOND_AD_INFO))};
  } else if (link.kind == "vlan") {
    const auto id = Attributes(data, kVlanPolicy).u16(IFLA_VLAN_ID);
    if (id && *id < kVlanIdLimit) link.vlanId = id;
  }
}

void decodeMembership(const Attributes& info, LinkFacts& link) {
  if (info.text(IFLA_INFO_SLAVE_KIND) != "bond") return;
  const Attributes member(info.bytes(IFLA_INFO_SLAVE_DATA).value_or(Bytes{}), kMemberPolicy);
  link.bondMember = BondMemberFacts{member.u8(IFLA_BOND_SLAVE_STATE),
                                    member.u8(IFLA_BOND_SLAVE_MII_STATUS),
                                    macAddress(member, IFLA_BOND_SLAVE_PERM_HWADDR),
                                    member.u16(IFLA_BOND_SLAVE_AD_AGGREGATOR_ID),
                                    member.u8(IFLA_BOND_SLAVE_AD_ACTOR_OPER_PORT_STATE),
                                    member.u16(IFLA_BOND_SLAVE_AD_PARTNER_OPER_PORT_STATE)};
}

}  // namespace

std::optional<LinkFacts> decodeLink(Bytes payload) {
  const auto header = leading<ifinfomsg>(payload);
  if (!header || header->ifi_index <= 0) return std::nullopt;
  const Attributes attributes(following(payload, sizeof *header), kLinkPolicy);

  LinkFacts link;
  link.index = static_cast<std::uint32_t>(header->ifi_index);
  link.name = attributes.text(IFLA_IFNAME).value_or("");
  if (link.name.empty() || link.name.size() >= IFNAMSIZ) return std::nullopt;
  link.type = header->ifi_type;
  link.flags = header->ifi_flags;
  if (const auto carrier = attributes.u8(IFLA_CARRIER)) link.carrier = *carrier != 0;
  link.operState = operState(attributes, link.carrier);
  link.mtu = attributes.u32(IFLA_MTU);
  link.address = macAddress(attributes, IFLA_ADDRESS);
  link.permanentAddress = macAddress(attributes, IFLA_PERM_ADDRESS);
  // A number that counts in another network namespace means nothing here.
  if (!attributes.has(IFLA_LINK_NETNSID)) link.lowerIndex = attributes.u32(IFLA_LINK);
  link.masterIndex = attributes.u32(IFLA_MASTER);
  link.parentBus = nonEmptyText(attributes, IFLA_PARENT_DEV_BUS_NAME);
  link.parentDevice = nonEmptyText(attributes, IFLA_PARENT_DEV_NAME);
  link.portName = nonEmptyText(attributes, IFLA_PHYS_PORT_NAME);
  link.statistics = linkStatistics(attributes.bytes(IFLA_STATS64));
  if (const auto info = attributes.bytes(IFLA_LINKINFO)) {
    const Attributes kinds(*info, kInfoPolicy);
    decodeOwnKind(kinds, link);
    decodeMembership(kinds, link);
  }
  return link;
}

std::optional<InterfaceCounters> decodeCounters(Bytes payload) {
  const auto header = leading<if_stats_msg>(payload);
  if (!header || header->ifindex == 0) return std::nullopt;
  const Attributes attributes(following(payload, sizeof *header), kStatsPolicy);
  const auto statistics = linkStatistics(attributes.bytes(IFLA_STATS_LINK_64));
  if (!statistics) return std::nullopt;
  return InterfaceCounters{header->ifindex, *statistics, {}};
}

}  // namespace ZEB::ethernet
