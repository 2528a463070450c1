#include "netlink/EthtoolDecoders.h"

#include <linux/ethtool.h>
#include <linux/ethtool_netlink.h>
#include <linux/genetlink.h>

#include <array>

namespace ZEB::ethernet {
namespace {

using Kind = AttributeKind;

constexpr AttributePolicy kInterfacePolicy{{ETHTOOL_A_HEADER_DEV_INDEX, Kind::U32}};

constexpr AttributePolicy kBitsetPolicy{
    {ETHTOOL_A_BITSET_SIZE, Kind::U32},
    {ETHTOOL_A_BITSET_VALUE, Kind::Binary},
    {ETHTOOL_A_BITSET_MASK, Kind::Binary},
};

constexpr AttributePolicy kModesPolicy{
    {ETHTOOL_A_LINKMODES_AUTONEG, Kind::U8},  {ETHTOOL_A_LINKMODES_OURS, Kind::Nested},
    {ETHTOOL_A_LINKMODES_PEER, Kind::Nested}, {ETHTOOL_A_LINKMODES_SPEED, Kind::U32},
    {ETHTOOL_A_LINKMODES_DUPLEX, Kind::U8},
};

constexpr AttributePolicy kInfoPolicy{{ETHTOOL_A_LINKINFO_PORT, Kind::U8}};

constexpr AttributePolicy kStatePolicy{
    {ETHTOOL_A_LINKSTATE_LINK, Kind::U8},
    {ETHTOOL_A_LINKSTATE_EXT_STATE, Kind::U8},
    {ETHTOOL_A_LINKSTATE_EXT_SUBSTATE, Kind::U8},
};

constexpr AttributePolicy kWakePolicy{{ETHTOOL_A_WOL_MODES, Kind::Nested}};

constexpr AttributePolicy kEeePolicy{{ETHTOOL_A_EEE_MODES_OURS, Kind::Nested},
                                     {ETHTOOL_A_EEE_ENABLED, Kind::U8}};

constexpr AttributePolicy kGroupPolicy{{ETHTOOL_A_STATS_GRP_ID, Kind::U32}};

struct Bitset {
  LinkModes value, mask;
};

/// A compact bit set. Words that do not cover the size that the set claims make it unknown.
std::optional<Bitset> bitset(std::optional<Bytes> nest) {
  if (!nest) return std::nullopt;
  const Attributes attributes(*nest, kBitsetPolicy);
  const auto size = attributes.u32(ETHTOOL_A_BITSET_SIZE);
  const auto value = attributes.bytes(ETHTOOL_A_BITSET_VALUE);
  const auto mask = attributes.bytes(ETHTOOL_A_BITSET_MASK);
  if (!size || !value) return std::nullopt;
  const std::size_t bytes = (std::size_t{*size} + 31) / 32 * 4;
  if (value->size() < bytes || (mask && mask->size() < bytes)) return std::nullopt;
  return Bitset{linkModes(*value, *size), linkModes(mask.value_or(Bytes{}), *size)};
}

std::uint32_t lowWord(const LinkModes& bits) {
  return static_cast<std::uint32_t>((bits & LinkModes(0xFFFFFFFF)).to_ulong());
}

void mergeModes(Bytes bytes, EthtoolFacts& facts) {
  const Attributes attributes(bytes, kModesPolicy);
  if (const auto ours = bitset(attributes.bytes(ETHTOOL_A_LINKMODES_OURS))) {
    facts.supported = ours->mask;
    facts.advertised = ours->value;
  }
  if (const auto peer = bitset(attributes.bytes(ETHTOOL_A_LINKMODES_PEER))) mergePartner(peer->value, facts);
  if (const auto autoneg = attributes.u8(ETHTOOL_A_LINKMODES_AUTONEG)) facts.autonegotiation = *autoneg != 0;
  mergeSpeed(attributes.u32(ETHTOOL_A_LINKMODES_SPEED), attributes.u8(ETHTOOL_A_LINKMODES_DUPLEX), facts);
}

void mergeInfo(Bytes bytes, EthtoolFacts& facts) {
  facts.media = Attributes(bytes, kInfoPolicy).u8(ETHTOOL_A_LINKINFO_PORT);
}

void mergeState(Bytes bytes, EthtoolFacts& facts) {
  const Attributes attributes(bytes, kStatePolicy);
  if (const auto link = attributes.u8(ETHTOOL_A_LINKSTATE_LINK)) facts.linkDetected = *link != 0;
  facts.extendedState = attributes.u8(ETHTOOL_A_LINKSTATE_EXT_STATE);
  facts.extendedSubstate = attributes.u8(ETHTOOL_A_LINKSTATE_EXT_SUBSTATE);
}

void mergeWake(Bytes bytes, EthtoolFacts& facts) {
  const auto modes = bitset(Attributes(bytes, kWakePolicy).bytes(ETHTOOL_A_WOL_MODES));
  if (!modes) return;
  facts.wakeOnLanSupported = lowWord(modes->mask);
  facts.wakeOnLanEnabled = lowWord(modes->value);
}

void mergeEee(Bytes bytes, EthtoolFacts& facts) {
  const Attributes attributes(bytes, kEeePolicy);
  if (const auto modes = bitset(attributes.bytes(ETHTOOL_A_EEE_MODES_OURS)))
    facts.eeeSupported = modes->mask.any();
  if (const auto enabled = attributes.u8(ETHTOOL_A_EEE_ENABLED)) facts.eeeEnabled = *enabled != 0;
}

struct Counter {
  std::uint16_t type;
  std::optional<std::uint64_t> MacStatistics::*member;
};

constexpr auto kMacCounters = std::to_array<Counter>({
    {ETHTOOL_A_STATS_ETH_MAC_3_SINGLE_COL, &MacStatistics::singleCollisions},
    {ETHTOOL_A_STATS_ETH_MAC_4_MULTI_COL, &MacStatistics::multipleCollisions},
    {ETHTOOL_A_STATS_ETH_MAC_6_FCS_ERR, &MacStatistics::fcsErrors},
    {ETHTOOL_A_STATS_ETH_MAC_7_ALIGN_ERR, &MacStatistics::alignmentErrors},
    {ETHTOOL_A_STATS_ETH_MAC_9_TX_DEFER, &MacStatistics::deferred},
    {ETHTOOL_A_STATS_ETH_MAC_10_LATE_COL, &MacStatistics::lateCollisions},
    {ETHTOOL_A_STATS_ETH_MAC_11_XS_COL, &MacStatistics::excessiveCollisions},
    {ETHTOOL_A_STATS_ETH_MAC_12_TX_INT_ERR, &MacStatistics::transmitErrors},
    {ETHTOOL_A_STATS_ETH_MAC_15_RX_INT_ERR, &MacStatistics::receiveErrors},
});

/// A group holds one nest for each counter, with the counter as its only attribute.
void mergeMacGroup(Bytes group, MacStatistics& statistics) {
  if (Attributes(group, kGroupPolicy).u32(ETHTOOL_A_STATS_GRP_ID) != ETHTOOL_STATS_ETH_MAC) return;
  forEachAttribute(group, [&](std::uint16_t type, Bytes nest) {
    if (type != ETHTOOL_A_STATS_GRP_STAT) return;
    forEachAttribute(nest, [&](std::uint16_t counter, Bytes value) {
      for (const Counter& known : kMacCounters) {
        if (known.type == counter && value.size() == 8)
          statistics.*known.member = leading<std::uint64_t>(value);
      }
    });
  });
}

void mergeStatistics(Bytes bytes, EthtoolFacts& facts) {
  forEachAttribute(bytes, [&](std::uint16_t type, Bytes group) {
    if (type == ETHTOOL_A_STATS_GRP) mergeMacGroup(group, facts.mac);
  });
}

constexpr auto kQuestions = std::to_array<EthtoolQuestion>({
    {ETHTOOL_MSG_LINKMODES_GET, ETHTOOL_MSG_LINKMODES_GET_REPLY, ETHTOOL_A_LINKMODES_HEADER, 0, false,
     mergeModes},
    {ETHTOOL_MSG_LINKINFO_GET, ETHTOOL_MSG_LINKINFO_GET_REPLY, ETHTOOL_A_LINKINFO_HEADER, 0, true, mergeInfo},
    {ETHTOOL_MSG_LINKSTATE_GET, ETHTOOL_MSG_LINKSTATE_GET_REPLY, ETHTOOL_A_LINKSTATE_HEADER, 0, true,
     mergeState},
    {ETHTOOL_MSG_WOL_GET, ETHTOOL_MSG_WOL_GET_REPLY, ETHTOOL_A_WOL_HEADER, 0, true, mergeWake},
    {ETHTOOL_MSG_EEE_GET, ETHTOOL_MSG_EEE_GET_REPLY, ETHTOOL_A_EEE_HEADER, 0, true, mergeEee},
    {ETHTOOL_MSG_STATS_GET, ETHTOOL_MSG_STATS_GET_REPLY, ETHTOOL_A_STATS_HEADER, ETHTOOL_A_STATS_GROUPS, true,
     mergeStatistics},
});

}  // namespace

LinkModes linkModes(Bytes words, std::size_t count) {
  LinkModes bits;
  constexpr std::size_t kWord = 32;
  for (std::size_t first = 0; first < std::min(count, bits.size()); first += kWord) {
    auto word = leading<std::uint32_t>(following(words, first / 8)).value_or(0);
    if (count - first < kWord) word &= (1u << (count - first)) - 1;
    bits |= LinkModes(word) << first;
  }
  return bits;
}

void mergePartner(const LinkModes& offered, EthtoolFacts& facts) {
  if (offered.any()) facts.partner = offered;
}

void mergeSpeed(std::optional<std::uint32_t> speed, std::optional<std::uint8_t> duplex, EthtoolFacts& facts) {
  if (speed && *speed != 0 && *speed != static_cast<std::uint32_t>(SPEED_UNKNOWN)) facts.speed = speed;
  if (duplex == DUPLEX_HALF || duplex == DUPLEX_FULL) facts.fullDuplex = *duplex == DUPLEX_FULL;
}

std::span<const EthtoolQuestion> ethtoolQuestions() {
  return kQuestions;
}

std::optional<std::uint32_t> ethtoolInterface(const EthtoolQuestion& question, Bytes payload) {
  const auto header = leading<genlmsghdr>(payload);
  if (!header || header->cmd != question.reply) return std::nullopt;
  const AttributePolicy policy{{question.header, Kind::Nested}};
  const auto nest = Attributes(following(payload, sizeof *header), policy).bytes(question.header);
  const auto index =
      nest ? Attributes(*nest, kInterfacePolicy).u32(ETHTOOL_A_HEADER_DEV_INDEX) : std::nullopt;
  return index == 0u ? std::nullopt : index;
}

void mergeEthtool(const EthtoolQuestion& question, Bytes payload, EthtoolFacts& facts) {
  question.merge(following(payload, sizeof(genlmsghdr)), facts);
}

}  // namespace ZEB::ethernet
