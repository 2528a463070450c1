#include <gtest/gtest.h>
#include <linux/ethtool.h>
#include <linux/ethtool_netlink.h>
#include <linux/genetlink.h>

#include "MessageBuilder.h"
#include "netlink/EthtoolDecoders.h"
#include "netlink/FamilyDecoder.h"

namespace ZEB::ethernet::test {
namespace {

const EthtoolQuestion& question(int request) {
  for (const EthtoolQuestion& each : ethtoolQuestions()) {
    if (each.request == request) return each;
  }
  throw std::logic_error("no such question");
}

MessageBuilder reply(const EthtoolQuestion& asked, std::uint32_t index) {
  MessageBuilder header, builder;
  header.number(ETHTOOL_A_HEADER_DEV_INDEX, index).text(ETHTOOL_A_HEADER_DEV_NAME, "eth0");
  builder.raw(genlmsghdr{asked.reply, 1, 0}).nest(asked.header, header);
  return builder;
}

MessageBuilder bitset(std::uint32_t size, std::initializer_list<std::uint32_t> value,
                      std::initializer_list<std::uint32_t> mask) {
  MessageBuilder builder;
  builder.number(ETHTOOL_A_BITSET_SIZE, size);
  builder.attribute(ETHTOOL_A_BITSET_VALUE, value.begin(), value.size() * 4);
  builder.attribute(ETHTOOL_A_BITSET_MASK, mask.begin(), mask.size() * 4);
  return builder;
}

EthtoolFacts merged(int request, const MessageBuilder& attributes) {
  const EthtoolQuestion& asked = question(request);
  auto builder = reply(asked, 2);
  builder += attributes;
  EthtoolFacts facts;
  mergeEthtool(asked, builder.view(), facts);
  return facts;
}

TEST(EthtoolDecoders, KnowWhomAnAnswerIsAbout) {
  for (const EthtoolQuestion& each : ethtoolQuestions()) {
    EXPECT_EQ(ethtoolInterface(each, reply(each, 5).view()), 5u);
    EXPECT_FALSE(ethtoolInterface(each, reply(each, 0).view()));
    auto other = reply(each, 5);
    other.data()[0] = std::byte{0xFF};
    EXPECT_FALSE(ethtoolInterface(each, other.view())) << "an answer to another question";
    EXPECT_FALSE(ethtoolInterface(each, reply(each, 5).view().first(3)));
    EXPECT_FALSE(ethtoolInterface(each, reply(each, 5).view().first(4)));
  }
}

TEST(EthtoolDecoders, LinkModes) {
  MessageBuilder builder;
  // Bits 5 (1000baseT/Full), 6 (Autoneg) and 35 (50000baseKR2/Full) are supported, 5 and 6 advertised.
  builder.nest(ETHTOOL_A_LINKMODES_OURS, bitset(40, {0x60, 0}, {0x60, 0x8}));
  builder.number(ETHTOOL_A_LINKMODES_SPEED, 1000u)
      .number(ETHTOOL_A_LINKMODES_DUPLEX, std::uint8_t{DUPLEX_FULL});
  builder.number(ETHTOOL_A_LINKMODES_AUTONEG, std::uint8_t{1});
  const EthtoolFacts facts = merged(ETHTOOL_MSG_LINKMODES_GET, builder);
  ASSERT_TRUE(facts.supported && facts.advertised);
  EXPECT_EQ(facts.supported->count(), 3u);
  EXPECT_TRUE(facts.supported->test(35));
  EXPECT_EQ(facts.advertised->count(), 2u);
  EXPECT_EQ(fastestSpeed(*facts.supported), 50000u);
  EXPECT_EQ(facts.speed, 1000u);
  EXPECT_EQ(facts.fullDuplex, true);
  EXPECT_EQ(facts.autonegotiation, true);
}

TEST(EthtoolDecoders, SpeedAndDuplexThatAreUnknown) {
  for (const std::uint32_t speed : {0u, 0xFFFFFFFFu}) {
    MessageBuilder builder;
    builder.number(ETHTOOL_A_LINKMODES_SPEED, speed).number(ETHTOOL_A_LINKMODES_DUPLEX, std::uint8_t{0xFF});
    const EthtoolFacts facts = merged(ETHTOOL_MSG_LINKMODES_GET, builder);
    EXPECT_FALSE(facts.speed);
    EXPECT_FALSE(facts.fullDuplex);
  }
  MessageBuilder half;
  half.number(ETHTOOL_A_LINKMODES_DUPLEX, std::uint8_t{DUPLEX_HALF});
  EXPECT_EQ(merged(ETHTOOL_MSG_LINKMODES_GET, half).fullDuplex, false);
}

TEST(EthtoolDecoders, BitsBeyondTheSizeOfABitsetAreNone) {
  MessageBuilder builder;
  builder.nest(ETHTOOL_A_LINKMODES_OURS, bitset(40, {0x60, 0xFF01}, {0x60, 0xFFFFFF08}));
  const EthtoolFacts facts = merged(ETHTOOL_MSG_LINKMODES_GET, builder);
  EXPECT_EQ(facts.advertised, LinkModes(0x60) | LinkModes(0x01) << 32);
  EXPECT_EQ(facts.supported, LinkModes(0x60) | LinkModes(0x08) << 32);
}

TEST(EthtoolDecoders, BitsetThatDoesNotCoverItsSizeIsUnknown) {
  MessageBuilder shortValue, shortMask, huge;
  shortValue.nest(ETHTOOL_A_LINKMODES_OURS, bitset(40, {0x60}, {0x60, 0x8}));
  EXPECT_FALSE(merged(ETHTOOL_MSG_LINKMODES_GET, shortValue).supported);
  shortMask.nest(ETHTOOL_A_LINKMODES_OURS, bitset(40, {0x60, 0}, {0x60}));
  EXPECT_FALSE(merged(ETHTOOL_MSG_LINKMODES_GET, shortMask).supported);
  huge.nest(ETHTOOL_A_LINKMODES_OURS, bitset(0xFFFFFFFF, {0x60, 0}, {0x60, 0x8}));
  EXPECT_FALSE(merged(ETHTOOL_MSG_LINKMODES_GET, huge).supported);
}

TEST(EthtoolDecoders, BitsPastThoseKnownAreDropped) {
  MessageBuilder builder;
  builder.nest(ETHTOOL_A_LINKMODES_OURS, bitset(160, {1, 0, 0, 0, 1}, {1, 0, 0, 0, 1}));
  EXPECT_EQ(merged(ETHTOOL_MSG_LINKMODES_GET, builder).supported->count(), 1u);
}

/// As the kernel sends it: a list, which has no mask.
MessageBuilder offered(std::uint32_t size, std::initializer_list<std::uint32_t> value) {
  MessageBuilder builder;
  builder.attribute(ETHTOOL_A_BITSET_NOMASK, nullptr, 0).number(ETHTOOL_A_BITSET_SIZE, size);
  builder.attribute(ETHTOOL_A_BITSET_VALUE, value.begin(), value.size() * 4);
  return builder;
}

TEST(EthtoolDecoders, WhatTheOtherEndOffers) {
  const auto partner = [](const MessageBuilder& set) {
    MessageBuilder builder;
    builder.nest(ETHTOOL_A_LINKMODES_PEER, set);
    return merged(ETHTOOL_MSG_LINKMODES_GET, builder).partner;
  };
  EXPECT_EQ(partner(offered(40, {0x60, 0x8})), LinkModes(0x60) | LinkModes(0x8) << 32);
  EXPECT_EQ(partner(offered(40, {0x60, 0xFF08})), LinkModes(0x60) | LinkModes(0x8) << 32);
  EXPECT_EQ(partner(offered(160, {1, 0, 0, 0, 1})), LinkModes(1));
  EXPECT_FALSE(partner(offered(40, {0x60})));
  EXPECT_FALSE(partner(offered(0xFFFFFFFF, {0x60, 0})));
  EXPECT_FALSE(partner(offered(40, {0, 0}))) << "nobody negotiates there";
  EXPECT_FALSE(partner(MessageBuilder()));
  EXPECT_FALSE(merged(ETHTOOL_MSG_LINKMODES_GET, MessageBuilder()).partner);
}

TEST(EthtoolDecoders, MediaAndLinkState) {
  MessageBuilder info, state;
  info.number(ETHTOOL_A_LINKINFO_PORT, std::uint8_t{PORT_FIBRE});
  EXPECT_EQ(merged(ETHTOOL_MSG_LINKINFO_GET, info).media, PORT_FIBRE);
  state.number(ETHTOOL_A_LINKSTATE_LINK, std::uint8_t{0})
      .number(ETHTOOL_A_LINKSTATE_EXT_STATE, std::uint8_t{5});
  state.number(ETHTOOL_A_LINKSTATE_EXT_SUBSTATE, std::uint8_t{1});
  const EthtoolFacts facts = merged(ETHTOOL_MSG_LINKSTATE_GET, state);
  EXPECT_EQ(facts.linkDetected, false);
  EXPECT_EQ(facts.extendedState, 5);
  EXPECT_EQ(facts.extendedSubstate, 1);
}

TEST(EthtoolDecoders, WakeOnLanAndEee) {
  MessageBuilder wake, eee;
  wake.nest(ETHTOOL_A_WOL_MODES, bitset(8, {WAKE_MAGIC}, {WAKE_MAGIC | WAKE_PHY}));
  const EthtoolFacts woken = merged(ETHTOOL_MSG_WOL_GET, wake);
  EXPECT_EQ(woken.wakeOnLanSupported, static_cast<std::uint32_t>(WAKE_MAGIC | WAKE_PHY));
  EXPECT_EQ(woken.wakeOnLanEnabled, static_cast<std::uint32_t>(WAKE_MAGIC));
  eee.nest(ETHTOOL_A_EEE_MODES_OURS, bitset(32, {0}, {0x20})).number(ETHTOOL_A_EEE_ENABLED, std::uint8_t{0});
  const EthtoolFacts efficient = merged(ETHTOOL_MSG_EEE_GET, eee);
  EXPECT_EQ(efficient.eeeSupported, true);
  EXPECT_EQ(efficient.eeeEnabled, false);
}

MessageBuilder macGroup(std::uint32_t id, std::initializer_list<std::pair<int, std::uint64_t>> counters) {
  MessageBuilder group, builder;
  group.number(ETHTOOL_A_STATS_GRP_ID, id).number(ETHTOOL_A_STATS_GRP_SS_ID, 18u);
  for (const auto& [type, value] : counters) {
    MessageBuilder nest;
    nest.number(static_cast<std::uint16_t>(type), value);
    group.nest(ETHTOOL_A_STATS_GRP_STAT, nest);
  }
  builder.nest(ETHTOOL_A_STATS_GRP, group);
  return builder;
}

TEST(EthtoolDecoders, StandardStatistics) {
  const auto facts = merged(ETHTOOL_MSG_STATS_GET,
                            macGroup(ETHTOOL_STATS_ETH_MAC, {{ETHTOOL_A_STATS_ETH_MAC_3_SINGLE_COL, 3},
                                                             {ETHTOOL_A_STATS_ETH_MAC_4_MULTI_COL, 4},
                                                             {ETHTOOL_A_STATS_ETH_MAC_6_FCS_ERR, 6},
                                                             {ETHTOOL_A_STATS_ETH_MAC_7_ALIGN_ERR, 7},
                                                             {ETHTOOL_A_STATS_ETH_MAC_9_TX_DEFER, 9},
                                                             {ETHTOOL_A_STATS_ETH_MAC_10_LATE_COL, 10},
                                                             {ETHTOOL_A_STATS_ETH_MAC_11_XS_COL, 11},
                                                             {ETHTOOL_A_STATS_ETH_MAC_12_TX_INT_ERR, 12},
                                                             {ETHTOOL_A_STATS_ETH_MAC_15_RX_INT_ERR, 15}}));
  const MacStatistics expected{7, 6, 3, 4, 9, 10, 11, 12, 15};
  EXPECT_EQ(facts.mac, expected);
}

TEST(EthtoolDecoders, CounterThatWasNotSaidIsNoZero) {
  const auto facts = merged(ETHTOOL_MSG_STATS_GET,
                            macGroup(ETHTOOL_STATS_ETH_MAC, {{ETHTOOL_A_STATS_ETH_MAC_6_FCS_ERR, 0}}));
  EXPECT_EQ(facts.mac.fcsErrors, 0u);
  EXPECT_FALSE(facts.mac.alignmentErrors);
}

TEST(EthtoolDecoders, CountersOfAnotherGroupAreNotTaken) {
  const auto facts =
      merged(ETHTOOL_MSG_STATS_GET, macGroup(ETHTOOL_STATS_RMON, {{ETHTOOL_A_STATS_ETH_MAC_6_FCS_ERR, 66}}));
  EXPECT_EQ(facts.mac, MacStatistics{});
}

TEST(EthtoolDecoders, EmptyAnswersLeaveEverythingUnknown) {
  for (const EthtoolQuestion& each : ethtoolQuestions()) {
    EthtoolFacts facts;
    mergeEthtool(each, reply(each, 2).view(), facts);
    EXPECT_EQ(facts, EthtoolFacts{});
    mergeEthtool(each, {}, facts);
    EXPECT_EQ(facts, EthtoolFacts{});
  }
}

TEST(FamilyDecoder, NumberAndGroup) {
  MessageBuilder other, monitor, groups, builder;
  other.text(CTRL_ATTR_MCAST_GRP_NAME, "other").number(CTRL_ATTR_MCAST_GRP_ID, 4u);
  monitor.text(CTRL_ATTR_MCAST_GRP_NAME, "monitor").number(CTRL_ATTR_MCAST_GRP_ID, 5u);
  groups.nest(1, other).nest(2, monitor);
  builder.raw(genlmsghdr{CTRL_CMD_NEWFAMILY, 1, 0}).number(CTRL_ATTR_FAMILY_ID, std::uint16_t{21});
  builder.nest(CTRL_ATTR_MCAST_GROUPS, groups);
  const auto family = decodeFamily(builder.view(), "monitor");
  ASSERT_TRUE(family);
  EXPECT_EQ(family->id, 21);
  EXPECT_EQ(family->group, 5u);
  EXPECT_FALSE(decodeFamily(builder.view(), "nobody")->group);
  EXPECT_FALSE(decodeFamily(builder.view().first(4), "monitor"));
  EXPECT_FALSE(decodeFamily({}, "monitor"));
}

}  // namespace
}  // namespace ZEB::ethernet::test
