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
  const RouteTables unknown({});
  EXPECT_EQ(preferredRoute({}, unknown), nullptr);
  const auto gateway = [&](std::vector<RouteFacts> routes) {
    return toText(preferredRoute(routes, unknown)->gateway);
  };
  EXPECT_EQ(gateway({route("10.0.0.1", 200), route("10.0.0.2", 100)}), "10.0.0.2") << "lowest metric";
  EXPECT_EQ(gateway({route("fe80::1", 0), route("10.0.0.1", 900)}), "10.0.0.1") << "IPv4 first";
  EXPECT_EQ(gateway({route("10.0.0.1", 200), route("10.0.0.2", 100, 77)}), "10.0.0.2") << "other tables too";
  EXPECT_EQ(gateway({route("10.0.0.1", 100, 77), route("10.0.0.2", 100)}), "10.0.0.2")
      << "main before others";
  EXPECT_EQ(gateway({route("fe80::1", 1024), route("fe80::2", 512)}), "fe80::2");
}

TEST(Addressing, PreferredRouteIsOfATableThatARuleNames) {
  const auto gateway = [](std::vector<RouteFacts> routes, std::vector<RuleFacts> rules) {
    const RouteFacts* preferred = preferredRoute(routes, RouteTables(rules));
    return preferred ? toText(preferred->gateway) : "none";
  };
  const std::vector<RuleFacts> usual = {{IpFamily::V4, 255},
                                        {IpFamily::V4, 254},
                                        {IpFamily::V4, 253},
                                        {IpFamily::V6, 255},
                                        {IpFamily::V6, 254}};
  auto withRule = usual;
  withRule.push_back({IpFamily::V4, 77});
  auto withVrfs = usual;
  withVrfs.push_back({IpFamily::V4, RuleFacts::kTableOfVrf});

  const RouteFacts inMain = route("10.0.0.1", 200), inOther = route("10.0.0.2", 100, 77);
  EXPECT_EQ(gateway({inMain, inOther}, usual), "10.0.0.1") << "nobody looks into the other table";
  EXPECT_EQ(gateway({inOther}, usual), "none");
  EXPECT_EQ(gateway({inMain, inOther}, withRule), "10.0.0.2") << "the lower metric";
  EXPECT_EQ(gateway({inMain, inOther}, withVrfs), "10.0.0.1") << "a table that is named comes first";
  EXPECT_EQ(gateway({inOther}, withVrfs), "10.0.0.2") << "it may be a VRF's";
  EXPECT_EQ(gateway({inOther, route("fe80::1", 0)}, usual), "fe80::1");
  EXPECT_EQ(gateway({route("fe80::2", 0, 77), inMain}, withRule), "10.0.0.1") << "of the other family";
  EXPECT_EQ(gateway({inMain, inOther}, {{IpFamily::V6, 254}}), "10.0.0.2") << "IPv4 rules are not known";
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

TEST(Addressing, AGatewayBehindAHostRouteIsANetworkOfItsOwn) {
  const RouteFacts gateway = route("172.31.255.1", 0);
  EXPECT_EQ(describeRoute(gateway, std::vector{address("172.31.1.9", 32)}),
            (route_t{"ipv4", "172.31.255.1", "255.255.255.255", 32}));
  EXPECT_EQ(describeRoute(gateway, std::vector{address("172.31.1.9", 32), address("172.31.0.9", 16)}),
            (route_t{"ipv4", "172.31.255.1", "255.255.0.0", 16}))
      << "unless another address is in its network";
}

}  // namespace
}  // namespace ZEB::ethernet::test
