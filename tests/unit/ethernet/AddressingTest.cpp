#include <gtest/gtest.h>
#include <linux/if_addr.h>

#include "model/Addressing.h"

namespace ZEB::ethernet::test {
namespace {

using Origin = EthPortAddressOriginEnum;

AddressFacts address(const char* text, int prefix, std::uint32_t flags = IFA_F_PERMANENT,
                     std::optional<std::uint8_t> protocol = {}) {
  return {2, *parseIpAddress(text), static_cast<std::uint8_t>(prefix), flags, protocol};
}

RouteFacts route(const char* gateway, std::uint32_t metric, std::uint32_t table = 254) {
  return {2, *parseIpAddress(gateway), metric, table};
}

TEST(Addressing, ListsByFamilyInOrder) {
  const std::vector<AddressFacts> all = {address("10.0.0.1", 8), address("2001:db8::1", 64),
                                         address("10.0.0.2", 30)};
  EXPECT_EQ(ipv4Addresses(all),
            (std::vector<IPv4AddressRecord>{{"10.0.0.1", "255.0.0.0"}, {"10.0.0.2", "255.255.255.252"}}));
  EXPECT_EQ(ipv6Addresses(all), (std::vector<IPv6AddressRecord>{{"2001:db8::1", 64}}));
}

TEST(Addressing, OriginOfOneAddress) {
  EXPECT_EQ(addressOrigin(address("10.0.0.1", 8)), Origin::Static);
  EXPECT_EQ(addressOrigin(address("10.0.0.1", 8, 0)), Origin::Dhcp);
  EXPECT_EQ(addressOrigin(address("169.254.3.3", 16)), Origin::IPv4LinkLocal);
  EXPECT_EQ(addressOrigin(address("169.254.3.3", 16, 0)), Origin::IPv4LinkLocal);
  EXPECT_EQ(addressOrigin(address("2001:db8::1", 64)), Origin::Static);
  EXPECT_EQ(addressOrigin(address("2001:db8::1", 64, 0, IFAPROT_KERNEL_RA)), Origin::IPv6AutoConfig);
  EXPECT_EQ(addressOrigin(address("2001:db8::1", 64, 0)), Origin::IPv6AutoConfig);
  EXPECT_EQ(addressOrigin(address("2001:db8::1", 128, 0)), Origin::Dhcpv6);
  EXPECT_EQ(addressOrigin(address("fe80::1", 64, IFA_F_PERMANENT, IFAPROT_KERNEL_LL)), Origin::LinkLocal);
}

TEST(Addressing, OriginOfAnInterface) {
  EXPECT_FALSE(interfaceOrigin({}));
  EXPECT_EQ(interfaceOrigin({address("fe80::1", 64)}), Origin::LinkLocal);
  EXPECT_EQ(interfaceOrigin({address("fe80::1", 64), address("2001:db8::1", 128, 0)}), Origin::Dhcpv6);
  EXPECT_EQ(interfaceOrigin({address("fe80::1", 64), address("2001:db8::1", 128, 0), address("10.0.0.1", 8)}),
            Origin::Static);
  EXPECT_EQ(interfaceOrigin({address("10.0.0.1", 8, 0), address("10.0.0.2", 8)}), Origin::Dhcp);
}

TEST(Addressing, PreferredRoute) {
  EXPECT_EQ(preferredRoute({}), nullptr);
  const auto gateway = [](std::vector<RouteFacts> routes) { return toText(preferredRoute(routes)->gateway); };
  EXPECT_EQ(gateway({route("10.0.0.1", 200), route("10.0.0.2", 100)}), "10.0.0.2") << "lowest metric";
  EXPECT_EQ(gateway({route("fe80::1", 0), route("10.0.0.1", 900)}), "10.0.0.1") << "IPv4 first";
  EXPECT_EQ(gateway({route("10.0.0.1", 200), route("10.0.0.2", 100, 77)}), "10.0.0.2") << "other tables too";
  EXPECT_EQ(gateway({route("10.0.0.1", 100, 77), route("10.0.0.2", 100)}), "10.0.0.2")
      << "main before others";
  EXPECT_EQ(gateway({route("fe80::1", 1024), route("fe80::2", 512)}), "fe80::2");
}

TEST(Addressing, RouteTakesTheMaskOfTheNetworkThatHoldsTheGateway) {
  const std::vector<AddressFacts> own = {address("192.168.1.10", 24), address("192.168.0.10", 16),
                                         address("2001:db8::10", 48)};
  EXPECT_EQ(describeRoute(route("192.168.1.1", 0), own),
            (route_t{"ipv4", "192.168.1.1", "255.255.255.0", 24}));
  EXPECT_EQ(describeRoute(route("192.168.7.1", 0), own), (route_t{"ipv4", "192.168.7.1", "255.255.0.0", 16}));
  EXPECT_EQ(describeRoute(route("10.0.0.1", 0), own), (route_t{"ipv4", "10.0.0.1", "255.255.255.255", 32}));
  EXPECT_EQ(describeRoute(route("2001:db8::1", 0), own), (route_t{"ipv6", "2001:db8::1", "", 48}));
  EXPECT_EQ(describeRoute(route("fe80::1", 0), own), (route_t{"ipv6", "fe80::1", "", 64}));
  EXPECT_EQ(describeRoute(route("2001:db9::1", 0), own), (route_t{"ipv6", "2001:db9::1", "", 128}));
}

}  // namespace
}  // namespace ZEB::ethernet::test
