#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/ethtool_netlink.h>
#include <linux/fib_rules.h>
#include <linux/genetlink.h>
#include <linux/nexthop.h>
#include <linux/rtnetlink.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <cerrno>

#include "MessageBuilder.h"
#include "kernel/Listener.h"

namespace {
int overruns = 0;  ///< that are still to be told of
}

extern "C" ssize_t __real_recv(int socket, void* buffer, std::size_t size, int flags);
extern "C" ssize_t __wrap_recv(int socket, void* buffer, std::size_t size, int flags) {
  if (overruns == 0) return __real_recv(socket, buffer, size, flags);
  --overruns;
  errno = ENOBUFS;
  return -1;
}

namespace ZEB::ethernet::test {
namespace {

using Interfaces = std::set<std::uint32_t>;

MessageBuilder linkOf(int index) {
  ifinfomsg header{};
  header.ifi_index = index;
  MessageBuilder builder;
  return builder.raw(header).message(RTM_NEWLINK, 0);
}

MessageBuilder address(std::uint32_t index) {
  ifaddrmsg header{};
  header.ifa_index = index;
  MessageBuilder builder;
  return builder.raw(header).message(RTM_DELADDR, 0);
}

MessageBuilder route(int destination, bool gateway) {
  rtmsg header{};
  header.rtm_family = AF_INET;
  header.rtm_type = RTN_UNICAST;
  header.rtm_dst_len = static_cast<std::uint8_t>(destination);
  MessageBuilder builder;
  builder.raw(header).number(RTA_OIF, 8u);
  if (gateway) builder.bytes(RTA_GATEWAY, {10, 0, 0, 1});
  return builder.message(RTM_NEWROUTE, 0);
}

TEST(Announcements, NameTheInterfacesOfADatagram) {
  auto datagram = linkOf(3);
  datagram += address(4);
  datagram += linkOf(3);
  const auto heard = routingAnnouncement(datagram.view());
  EXPECT_FALSE(heard.everything);
  EXPECT_FALSE(heard.routes);
  EXPECT_EQ(heard.interfaces, (Interfaces{3, 4}));
}

TEST(Announcements, DefaultRoutesConcernTheirInterface) {
  const auto heard = routingAnnouncement(route(0, true).view());
  EXPECT_TRUE(heard.routes);
  EXPECT_FALSE(heard.everything);
  EXPECT_EQ(heard.interfaces, Interfaces{8});
  EXPECT_TRUE(routingAnnouncement(route(0, false).view()).everything) << "it may replace one with a gateway";
  EXPECT_FALSE(routingAnnouncement(route(24, true).view()).any());
}

TEST(Announcements, RulesAndNextHopsMayConcernAnyRoute) {
  MessageBuilder rule, hop;
  rule.raw(fib_rule_hdr{});
  for (const std::uint16_t type : {RTM_NEWRULE, RTM_DELRULE}) {
    const auto heard = routingAnnouncement(rule.message(type, 0).view());
    EXPECT_TRUE(heard.rules);
    EXPECT_TRUE(heard.any());
    EXPECT_FALSE(heard.everything || heard.routes);
  }
  hop.raw(nhmsg{});
  const auto gone = routingAnnouncement(hop.message(RTM_DELNEXTHOP, 0).view());
  EXPECT_TRUE(gone.nextHops);
  EXPECT_TRUE(gone.any());
  EXPECT_FALSE(gone.everything);
  EXPECT_FALSE(routingAnnouncement(hop.message(RTM_NEWNEXTHOP, 0).view()).any())
      << "no route has it yet, or is announced itself";
}

TEST(Announcements, WhatCannotBeReadMayBeEverything) {
  MessageBuilder cut;
  EXPECT_TRUE(routingAnnouncement(cut.raw(std::uint8_t{0}).message(RTM_NEWLINK, 0).view()).everything);
  EXPECT_TRUE(routingAnnouncement(linkOf(0).view()).everything);
  EXPECT_FALSE(routingAnnouncement(linkOf(3).view().first(8)).any());
}

TEST(Announcements, OfEthtool) {
  MessageBuilder header, builder, bare;
  header.number(ETHTOOL_A_HEADER_DEV_INDEX, 6u);
  builder.raw(genlmsghdr{ETHTOOL_MSG_WOL_NTF, 1, 0}).nest(ETHTOOL_A_WOL_HEADER, header);
  EXPECT_EQ(ethtoolAnnouncement(builder.message(21, 0).view()).interfaces, Interfaces{6});
  bare.raw(genlmsghdr{ETHTOOL_MSG_WOL_NTF, 1, 0});
  EXPECT_TRUE(ethtoolAnnouncement(bare.message(21, 0).view()).everything);
}

TEST(Announcements, AddUp) {
  Announcements heard = routingAnnouncement(linkOf(3).view());
  heard.add(routingAnnouncement(route(0, true).view()));
  MessageBuilder rule;
  heard.add(routingAnnouncement(rule.raw(fib_rule_hdr{}).message(RTM_NEWRULE, 0).view()));
  EXPECT_TRUE(heard.rules);
  EXPECT_TRUE(heard.routes);
  EXPECT_EQ(heard.interfaces, (Interfaces{3, 8}));
}

/// A socket of this machine's own, about which something is to be told.
FileDescriptor refusedSocket() {
  const auto bound = [] {
    FileDescriptor socket(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    sockaddr_in own{};
    own.sin_family = AF_INET;
    own.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    EXPECT_EQ(bind(socket.get(), reinterpret_cast<const sockaddr*>(&own), sizeof own), 0);
    return socket;
  };
  FileDescriptor socket = bound();
  sockaddr_in nobody{};
  {
    const FileDescriptor gone = bound();
    socklen_t size = sizeof nobody;
    EXPECT_EQ(getsockname(gone.get(), reinterpret_cast<sockaddr*>(&nobody), &size), 0);
  }
  EXPECT_EQ(connect(socket.get(), reinterpret_cast<const sockaddr*>(&nobody), sizeof nobody), 0);
  EXPECT_EQ(send(socket.get(), "x", 1, 0), 1);
  return socket;
}

TEST(Announcements, AreHeardAgainAfterAnErrorThatPasses) {
  Listener listener(refusedSocket(), std::nullopt);
  EXPECT_TRUE(listener.drain().everything) << "who knows what was missed";
  EXPECT_TRUE(listener.hears());
  EXPECT_FALSE(listener.drain().any());
}

TEST(Announcements, AreHeardAgainHoweverOftenTheyOverrun) {
  Listener listener(FileDescriptor(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)), std::nullopt);
  overruns = 3;
  EXPECT_TRUE(listener.drain().everything);
  EXPECT_EQ(overruns, 0);
  EXPECT_TRUE(listener.hears());
  EXPECT_FALSE(listener.drain().any());
}

TEST(Announcements, AreNotHeardWithAnErrorThatStays) {
  Listener listener(FileDescriptor(::open("/dev/null", O_RDONLY | O_CLOEXEC)), std::nullopt);
  EXPECT_TRUE(listener.drain().everything);
  EXPECT_FALSE(listener.hears());
  EXPECT_TRUE(listener.drain().everything) << "and as long as that is so it may be everything";
  EXPECT_FALSE(Listener(FileDescriptor(), std::nullopt).hears());
}

}  // namespace
}  // namespace ZEB::ethernet::test
