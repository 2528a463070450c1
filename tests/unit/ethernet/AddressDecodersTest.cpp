#include <gtest/gtest.h>
#include <linux/if_addr.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>

#include "MessageBuilder.h"
#include "netlink/RtnlDecoders.h"

namespace ZEB::ethernet::test {
namespace {

MessageBuilder address(int family, int prefix, unsigned index = 3, int flags = 0) {
  MessageBuilder builder;
  builder.raw(ifaddrmsg{static_cast<std::uint8_t>(family), static_cast<std::uint8_t>(prefix),
                        static_cast<std::uint8_t>(flags), 0, index});
  return builder;
}

TEST(AddressDecoder, Ipv4WithLocalAndPeer) {
  auto builder = address(AF_INET, 24, 3, IFA_F_PERMANENT);
  builder.bytes(IFA_ADDRESS, {10, 0, 0, 2}).bytes(IFA_LOCAL, {10, 0, 0, 1});
  const auto facts = decodeAddress(builder.view());
  ASSERT_TRUE(facts);
  EXPECT_EQ(facts->index, 3u);
  EXPECT_EQ(toText(facts->address), "10.0.0.1");
  EXPECT_EQ(facts->prefixLength, 24);
  EXPECT_EQ(facts->flags, static_cast<std::uint32_t>(IFA_F_PERMANENT));
  EXPECT_FALSE(facts->protocol);
}

TEST(AddressDecoder, Ipv6WithWideFlagsAndProtocol) {
  auto builder = address(AF_INET6, 64);
  builder.bytes(IFA_ADDRESS, {0x20, 1, 0xD, 0xB8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1});
  builder.number(IFA_FLAGS, std::uint32_t{IFA_F_MANAGETEMPADDR})
      .number(IFA_PROTO, std::uint8_t{IFAPROT_KERNEL_RA});
  const auto facts = decodeAddress(builder.view());
  ASSERT_TRUE(facts);
  EXPECT_EQ(toText(facts->address), "2001:db8::1");
  EXPECT_EQ(facts->flags, 0x100u);
  EXPECT_EQ(facts->protocol, 2);
}

TEST(AddressDecoder, WhatContradictsItselfIsNothing) {
  const auto decoded = [](int family, int prefix, unsigned index, std::initializer_list<int> bytes) {
    auto builder = address(family, prefix, index);
    builder.bytes(IFA_ADDRESS, bytes);
    return decodeAddress(builder.view()).has_value();
  };
  EXPECT_TRUE(decoded(AF_INET, 32, 3, {10, 0, 0, 1}));
  EXPECT_FALSE(decoded(AF_INET, 33, 3, {10, 0, 0, 1}));
  EXPECT_FALSE(decoded(AF_INET, 24, 0, {10, 0, 0, 1}));
  EXPECT_FALSE(decoded(AF_INET, 24, 3, {10, 0, 0}));
  EXPECT_FALSE(decoded(AF_INET6, 64, 3, {10, 0, 0, 1}));
  EXPECT_FALSE(decoded(AF_PACKET, 24, 3, {10, 0, 0, 1}));
  EXPECT_FALSE(decodeAddress(address(AF_INET, 24).view()));
  EXPECT_FALSE(decodeAddress(address(AF_INET, 24).view().first(7)));
}

MessageBuilder route(int family = AF_INET, int destination = 0, int type = RTN_UNICAST, unsigned flags = 0) {
  rtmsg header{};
  header.rtm_family = static_cast<std::uint8_t>(family);
  header.rtm_dst_len = static_cast<std::uint8_t>(destination);
  header.rtm_type = static_cast<std::uint8_t>(type);
  header.rtm_table = RT_TABLE_MAIN;
  header.rtm_flags = flags;
  MessageBuilder builder;
  builder.raw(header);
  return builder;
}

MessageBuilder viaGateway(MessageBuilder builder) {
  builder.number(RTA_OIF, 2u).bytes(RTA_GATEWAY, {192, 168, 1, 1});
  return builder;
}

TEST(RouteDecoder, DefaultRoute) {
  auto builder = viaGateway(route());
  builder.number(RTA_PRIORITY, 100u);
  const auto routes = decodeDefaultRoute(builder.view());
  ASSERT_EQ(routes.size(), 1u);
  EXPECT_EQ(routes[0].index, 2u);
  EXPECT_EQ(toText(routes[0].gateway), "192.168.1.1");
  EXPECT_EQ(routes[0].metric, 100u);
  EXPECT_EQ(routes[0].table, 254u);
}

TEST(RouteDecoder, WideTableNumber) {
  auto builder = viaGateway(route());
  builder.number(RTA_TABLE, 1000u);
  EXPECT_EQ(decodeDefaultRoute(builder.view()).at(0).table, 1000u);
}

TEST(RouteDecoder, OthersThanUsableDefaultRoutesAreNone) {
  EXPECT_EQ(decodeDefaultRoute(viaGateway(route()).view()).size(), 1u);
  EXPECT_TRUE(decodeDefaultRoute(viaGateway(route(AF_INET, 24)).view()).empty());
  EXPECT_TRUE(decodeDefaultRoute(viaGateway(route(AF_INET, 0, RTN_BLACKHOLE)).view()).empty());
  EXPECT_TRUE(decodeDefaultRoute(viaGateway(route(AF_INET, 0, RTN_UNICAST, RTM_F_CLONED)).view()).empty());
  EXPECT_TRUE(decodeDefaultRoute(viaGateway(route(AF_INET, 0, RTN_UNICAST, RTNH_F_DEAD)).view()).empty());
  EXPECT_TRUE(decodeDefaultRoute(viaGateway(route(AF_INET, 0, RTN_UNICAST, RTNH_F_LINKDOWN)).view()).empty());
  EXPECT_TRUE(decodeDefaultRoute(viaGateway(route(AF_INET6)).view()).empty()) << "gateway of another family";
  EXPECT_TRUE(decodeDefaultRoute(viaGateway(route(AF_PACKET)).view()).empty());
  auto withoutGateway = route();
  withoutGateway.number(RTA_OIF, 2u);
  EXPECT_TRUE(decodeDefaultRoute(withoutGateway.view()).empty());
  EXPECT_TRUE(decodeDefaultRoute(route().view().first(8)).empty());
}

TEST(RouteDecoder, GatewayOfTheOtherFamily) {
  auto builder = route();
  builder.number(RTA_OIF, 2u);
  builder.bytes(RTA_VIA, {AF_INET6, 0, 0xFE, 0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1});
  const auto routes = decodeDefaultRoute(builder.view());
  ASSERT_EQ(routes.size(), 1u);
  EXPECT_EQ(toText(routes[0].gateway), "fe80::1");
}

MessageBuilder hop(int index, std::initializer_list<int> gateway, int flags = 0) {
  MessageBuilder attributes;
  attributes.bytes(RTA_GATEWAY, gateway);
  rtnexthop header{};
  header.rtnh_len = static_cast<std::uint16_t>(sizeof header + attributes.view().size());
  header.rtnh_ifindex = index;
  header.rtnh_flags = static_cast<std::uint8_t>(flags);
  MessageBuilder builder;
  builder.raw(header);
  return builder += attributes;
}

TEST(RouteDecoder, OneForEachUsableNextHop) {
  auto hops = hop(2, {10, 0, 0, 1});
  hops += hop(3, {10, 1, 0, 1}, RTNH_F_DEAD);
  hops += hop(4, {10, 2, 0, 1});
  auto builder = route();
  builder.number(RTA_PRIORITY, 5u).attribute(RTA_MULTIPATH, hops.view().data(), hops.view().size());
  const auto routes = decodeDefaultRoute(builder.view());
  ASSERT_EQ(routes.size(), 2u);
  EXPECT_EQ(routes[0].index, 2u);
  EXPECT_EQ(routes[1].index, 4u);
  EXPECT_EQ(toText(routes[1].gateway), "10.2.0.1");
  EXPECT_EQ(routes[1].metric, 5u);
}

TEST(RouteDecoder, BrokenNextHopEndsTheList) {
  auto hops = hop(2, {10, 0, 0, 1});
  hops += hop(3, {10, 1, 0, 1});
  const std::size_t second = hops.view().size() / 2;
  for (const int length : {0, 7, 200}) {
    auto broken = hops;
    const auto value = static_cast<std::uint16_t>(length);
    std::memcpy(broken.data().data() + second, &value, sizeof value);
    auto builder = route();
    builder.attribute(RTA_MULTIPATH, broken.view().data(), broken.view().size());
    EXPECT_EQ(decodeDefaultRoute(builder.view()).size(), 1u) << length;
  }
}

TEST(Relevance, OfRoutesOnlyDefaultOnesCount) {
  EXPECT_TRUE(isRelevant(RTM_NEWLINK, {}));
  EXPECT_TRUE(isRelevant(RTM_DELADDR, {}));
  EXPECT_TRUE(isRelevant(RTM_NEWROUTE, route().view()));
  EXPECT_TRUE(isRelevant(RTM_DELROUTE, route().view()));
  EXPECT_FALSE(isRelevant(RTM_NEWROUTE, route(AF_INET, 24).view()));
  EXPECT_FALSE(isRelevant(RTM_NEWROUTE, route(AF_INET6, 0, RTN_UNREACHABLE).view()));
}

}  // namespace
}  // namespace ZEB::ethernet::test
