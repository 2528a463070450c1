#include <gtest/gtest.h>
#include <linux/if.h>
#include <linux/if_link.h>
#include <linux/rtnetlink.h>

#include "MessageBuilder.h"
#include "netlink/RtnlDecoders.h"

namespace ZEB::ethernet::test {
namespace {

MessageBuilder link(int index, unsigned flags = IFF_UP, std::uint16_t type = 1) {
  ifinfomsg header{};
  header.ifi_index = index;
  header.ifi_flags = flags;
  header.ifi_type = type;
  MessageBuilder builder;
  builder.raw(header);
  return builder;
}

MessageBuilder named(int index, std::string_view name) {
  auto builder = link(index);
  builder.text(IFLA_IFNAME, name);
  return builder;
}

TEST(LinkDecoder, ReadsEveryFact) {
  auto builder = link(7, IFF_UP | IFF_LOWER_UP);
  const std::uint64_t statistics[] = {11, 22, 33, 44, 55, 66};
  builder.text(IFLA_IFNAME, "eth7")
      .number(IFLA_MTU, std::uint32_t{9000})
      .number(IFLA_OPERSTATE, std::uint8_t{6});
  builder.number(IFLA_CARRIER, std::uint8_t{1}).number(IFLA_LINK, std::uint32_t{3}).number(IFLA_MASTER, 9u);
  builder.bytes(IFLA_ADDRESS, {0, 0x1A, 0x2B, 0x3C, 0x4D, 0x5E});
  builder.bytes(IFLA_PERM_ADDRESS, {0, 0x1A, 0x2B, 0x3C, 0x4D, 0x5F});
  builder.attribute(IFLA_STATS64, statistics, sizeof statistics);
  builder.text(IFLA_PARENT_DEV_NAME, "0000:03:00.0").text(IFLA_PARENT_DEV_BUS_NAME, "pci");
  builder.text(IFLA_PHYS_PORT_NAME, "p0");
  const auto facts = decodeLink(builder.view());
  ASSERT_TRUE(facts);
  EXPECT_EQ(facts->index, 7u);
  EXPECT_EQ(facts->name, "eth7");
  EXPECT_EQ(facts->type, 1);
  EXPECT_EQ(facts->flags, static_cast<std::uint32_t>(IFF_UP | IFF_LOWER_UP));
  EXPECT_EQ(facts->operState, 6);
  EXPECT_EQ(facts->carrier, true);
  EXPECT_EQ(facts->mtu, 9000u);
  EXPECT_EQ(facts->lowerIndex, 3u);
  EXPECT_EQ(facts->masterIndex, 9u);
  EXPECT_EQ(toText(*facts->address), "00:1a:2b:3c:4d:5e");
  EXPECT_EQ(toText(*facts->permanentAddress), "00:1a:2b:3c:4d:5f");
  EXPECT_EQ(facts->statistics, (LinkStatistics{11, 22, 33, 44}));
  EXPECT_EQ(facts->parentBus, "pci");
  EXPECT_EQ(facts->parentDevice, "0000:03:00.0");
  EXPECT_EQ(facts->portName, "p0");
  EXPECT_EQ(facts->kind, "");
}

MessageBuilder counters(std::uint32_t index) {
  if_stats_msg header{};
  header.ifindex = index;
  MessageBuilder builder;
  builder.raw(header);
  return builder;
}

TEST(CounterDecoder, ReadsTheTraffic) {
  auto builder = counters(7);
  const std::uint64_t statistics[] = {11, 22, 33, 44, 55, 66};
  builder.attribute(IFLA_STATS_LINK_64, statistics, sizeof statistics);
  const auto found = decodeCounters(builder.view());
  ASSERT_TRUE(found);
  EXPECT_EQ(found->index, 7u);
  EXPECT_EQ(found->statistics, (LinkStatistics{11, 22, 33, 44}));
  EXPECT_EQ(found->mac, MacStatistics{});
}

TEST(CounterDecoder, WhatIsBrokenIsNothing) {
  const std::uint64_t statistics[] = {11, 22, 33, 44};
  EXPECT_FALSE(decodeCounters({}));
  EXPECT_FALSE(decodeCounters(counters(7).view())) << "no counters";
  auto cut = counters(7);
  cut.attribute(IFLA_STATS_LINK_64, statistics, sizeof statistics - 1);
  EXPECT_FALSE(decodeCounters(cut.view())) << "too few counters";
  auto nobody = counters(0);
  nobody.attribute(IFLA_STATS_LINK_64, statistics, sizeof statistics);
  EXPECT_FALSE(decodeCounters(nobody.view())) << "no interface";
}

TEST(LinkDecoder, WhatIsNotSaidStaysUnknown) {
  const auto facts = decodeLink(named(2, "eth0").view());
  ASSERT_TRUE(facts);
  EXPECT_FALSE(facts->mtu || facts->carrier || facts->operState || facts->address || facts->permanentAddress);
  EXPECT_FALSE(facts->lowerIndex || facts->masterIndex || facts->statistics || facts->bond ||
               facts->bondMember);
  EXPECT_FALSE(facts->vlanId || facts->parentBus || facts->parentDevice || facts->portName);
}

TEST(LinkDecoder, StateFromBeforeTheCarrierIsNone) {
  const auto stateOf = [](std::uint8_t state, std::uint8_t carrier) {
    auto builder = named(2, "a0");
    builder.number(IFLA_OPERSTATE, state).number(IFLA_CARRIER, carrier);
    return decodeLink(builder.view())->operState;
  };
  EXPECT_EQ(stateOf(IF_OPER_LOWERLAYERDOWN, 1), std::nullopt);
  EXPECT_EQ(stateOf(IF_OPER_LOWERLAYERDOWN, 0), IF_OPER_LOWERLAYERDOWN);
  EXPECT_EQ(stateOf(IF_OPER_TESTING, 1), IF_OPER_TESTING);
  auto silent = named(2, "a0");
  silent.number(IFLA_OPERSTATE, std::uint8_t{IF_OPER_LOWERLAYERDOWN});
  EXPECT_EQ(decodeLink(silent.view())->operState, IF_OPER_LOWERLAYERDOWN);
}

TEST(LinkDecoder, BondAndMember) {
  MessageBuilder bondData, bondInfo, memberData, memberInfo;
  bondData.number(IFLA_BOND_MODE, std::uint8_t{1}).number(IFLA_BOND_ACTIVE_SLAVE, std::uint32_t{4});
  bondInfo.text(IFLA_INFO_KIND, "bond").nest(IFLA_INFO_DATA, bondData);
  auto bond = named(9, "bond0");
  bond.nest(IFLA_LINKINFO, bondInfo);
  const auto team = decodeLink(bond.view());
  ASSERT_TRUE(team && team->bond);
  EXPECT_EQ(team->kind, "bond");
  EXPECT_EQ(team->bond->mode, 1);
  EXPECT_EQ(team->bond->activeIndex, 4u);

  memberData.number(IFLA_BOND_SLAVE_STATE, std::uint8_t{1})
      .number(IFLA_BOND_SLAVE_MII_STATUS, std::uint8_t{2});
  memberData.bytes(IFLA_BOND_SLAVE_PERM_HWADDR, {2, 0, 0, 0, 0, 1});
  memberInfo.text(IFLA_INFO_SLAVE_KIND, "bond").nest(IFLA_INFO_SLAVE_DATA, memberData);
  auto member = named(4, "eth0");
  member.nest(IFLA_LINKINFO, memberInfo);
  const auto port = decodeLink(member.view());
  ASSERT_TRUE(port && port->bondMember);
  EXPECT_EQ(port->bondMember->state, 1);
  EXPECT_EQ(port->bondMember->miiStatus, 2);
  EXPECT_EQ(toText(*port->bondMember->permanentAddress), "02:00:00:00:00:01");
}

MessageBuilder bondWith(const MessageBuilder& aggregator) {
  MessageBuilder data, info;
  data.number(IFLA_BOND_MODE, std::uint8_t{4}).nest(IFLA_BOND_AD_INFO, aggregator);
  info.text(IFLA_INFO_KIND, "bond").nest(IFLA_INFO_DATA, data);
  auto bond = named(9, "bond0");
  bond.nest(IFLA_LINKINFO, info);
  return bond;
}

TEST(LinkDecoder, AggregatorAndItsPartner) {
  MessageBuilder aggregator;
  aggregator.number(IFLA_BOND_AD_INFO_AGGREGATOR, std::uint16_t{3})
      .number(IFLA_BOND_AD_INFO_NUM_PORTS, std::uint16_t{2})
      .number(IFLA_BOND_AD_INFO_ACTOR_KEY, std::uint16_t{9})
      .number(IFLA_BOND_AD_INFO_PARTNER_KEY, std::uint16_t{15});
  aggregator.bytes(IFLA_BOND_AD_INFO_PARTNER_MAC, {2, 0, 0, 0, 0, 7});
  const auto bond = decodeLink(bondWith(aggregator).view());
  ASSERT_TRUE(bond && bond->bond && bond->bond->aggregator);
  EXPECT_EQ(*bond->bond->aggregator,
            (AggregatorFacts{3, 2, 9, 15, parseHardwareAddress("02:00:00:00:00:07")}));
}

TEST(LinkDecoder, APartnerWithoutAnAddressIsNone) {
  MessageBuilder aggregator;
  aggregator.number(IFLA_BOND_AD_INFO_AGGREGATOR, std::uint16_t{1});
  aggregator.bytes(IFLA_BOND_AD_INFO_PARTNER_MAC, {0, 0, 0, 0, 0, 0});
  EXPECT_EQ(decodeLink(bondWith(aggregator).view())->bond->aggregator, (AggregatorFacts{1, {}, {}, {}, {}}));
  EXPECT_EQ(decodeLink(bondWith({}).view())->bond->aggregator, AggregatorFacts{}) << "said and empty";
}

TEST(LinkDecoder, WhatLacpSaysOfAMember) {
  MessageBuilder data, info;
  data.number(IFLA_BOND_SLAVE_AD_AGGREGATOR_ID, std::uint16_t{2})
      .number(IFLA_BOND_SLAVE_AD_ACTOR_OPER_PORT_STATE, std::uint8_t{61})
      .number(IFLA_BOND_SLAVE_AD_PARTNER_OPER_PORT_STATE, std::uint16_t{63});
  info.text(IFLA_INFO_SLAVE_KIND, "bond").nest(IFLA_INFO_SLAVE_DATA, data);
  auto member = named(4, "eth0");
  member.nest(IFLA_LINKINFO, info);
  const auto port = decodeLink(member.view());
  EXPECT_EQ(*port->bondMember, (BondMemberFacts{{}, {}, {}, 2, 61, 63}));
}

TEST(LinkDecoder, MemberOfABridgeIsNoTeamMember) {
  MessageBuilder info;
  info.text(IFLA_INFO_SLAVE_KIND, "bridge");
  auto builder = named(4, "eth0");
  builder.nest(IFLA_LINKINFO, info);
  EXPECT_FALSE(decodeLink(builder.view())->bondMember);
}

TEST(LinkDecoder, Vlan) {
  const auto vlanId = [](std::uint16_t id) {
    MessageBuilder data, info;
    data.number(IFLA_VLAN_ID, id);
    info.text(IFLA_INFO_KIND, "vlan").nest(IFLA_INFO_DATA, data);
    auto builder = named(5, "eth0.100");
    builder.nest(IFLA_LINKINFO, info);
    return decodeLink(builder.view())->vlanId;
  };
  EXPECT_EQ(vlanId(100), 100);
  EXPECT_EQ(vlanId(4095), 4095);
  EXPECT_FALSE(vlanId(4096));
}

TEST(LinkDecoder, LowerInterfaceOfAnotherNamespaceIsNone) {
  auto builder = named(5, "veth0");
  builder.number(IFLA_LINK, std::uint32_t{2}).number(IFLA_LINK_NETNSID, std::uint32_t{0});
  EXPECT_FALSE(decodeLink(builder.view())->lowerIndex);
}

TEST(LinkDecoder, AddressesThatAreNone) {
  auto builder = named(5, "eth0");
  builder.bytes(IFLA_ADDRESS, {0, 0, 0, 0, 0, 0}).bytes(IFLA_PERM_ADDRESS, {1, 2, 3, 4});
  const auto facts = decodeLink(builder.view());
  EXPECT_FALSE(facts->address);
  EXPECT_FALSE(facts->permanentAddress);
}

TEST(LinkDecoder, ShortStatisticsAreUnknown) {
  const std::uint64_t statistics[] = {11, 22, 33};
  auto builder = named(5, "eth0");
  builder.attribute(IFLA_STATS64, statistics, sizeof statistics);
  EXPECT_FALSE(decodeLink(builder.view())->statistics);
}

TEST(LinkDecoder, NamelessNumberlessAndOverlongLinksAreNothing) {
  EXPECT_FALSE(decodeLink(link(2).view()));
  EXPECT_FALSE(decodeLink(named(0, "eth0").view()));
  EXPECT_FALSE(decodeLink(named(-1, "eth0").view()));
  EXPECT_FALSE(decodeLink(named(2, "").view()));
  EXPECT_FALSE(decodeLink(named(2, "sixteencharacter").view()));
  EXPECT_TRUE(decodeLink(named(2, "fifteencharacte").view()));
}

TEST(LinkDecoder, EveryTruncationIsHarmless) {
  MessageBuilder data, info;
  data.number(IFLA_BOND_MODE, std::uint8_t{1});
  info.text(IFLA_INFO_KIND, "bond").nest(IFLA_INFO_DATA, data);
  auto builder = named(9, "bond0");
  builder.number(IFLA_MTU, 1500u).nest(IFLA_LINKINFO, info);
  for (std::size_t size = 0; size < builder.view().size(); ++size) {
    const auto facts = decodeLink(builder.view().first(size));
    EXPECT_FALSE(facts && facts->bond && facts->bond->mode) << size;
  }
}

}  // namespace
}  // namespace ZEB::ethernet::test
