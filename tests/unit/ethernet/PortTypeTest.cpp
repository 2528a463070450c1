#include <gtest/gtest.h>
#include <linux/ethtool.h>
#include <net/if_arp.h>

#include "model/PortType.h"

namespace ZEB::ethernet::test {
namespace {

struct TypeCase {
  std::vector<const char*> modes;
  std::optional<std::uint8_t> media;
  int type;  ///< number of the value map
};

class PortTypeTable : public testing::TestWithParam<TypeCase> {};

TEST_P(PortTypeTable, FromModesAndMedia) {
  EthtoolFacts facts;
  facts.supported = LinkModes();
  for (const char* mode : GetParam().modes) facts.supported->set(linkModeBit(mode).value());
  facts.media = GetParam().media;
  const auto type = portType(facts);
  ASSERT_TRUE(type);
  EXPECT_EQ(static_cast<int>(*type), GetParam().type);
}

constexpr auto kAny = std::nullopt;

INSTANTIATE_TEST_SUITE_P(
    TwistedPair, PortTypeTable,
    testing::Values(TypeCase{{"10baseT/Half", "10baseT/Full"}, PORT_TP, 50},
                    TypeCase{{"10baseT/Full", "100baseT/Half"}, PORT_TP, 51},
                    TypeCase{{"100baseT/Full"}, PORT_TP, 52}, TypeCase{{"1000baseT/Full"}, PORT_TP, 53},
                    TypeCase{{"100baseT/Full", "1000baseT/Full"}, kAny, 53},
                    TypeCase{{"10baseT/Full", "100baseT/Full", "1000baseT/Full"}, PORT_TP, 62},
                    TypeCase{{"10baseT/Full", "100baseT/Full", "1000baseT/Full", "Autoneg", "TP"}, kAny, 62},
                    TypeCase{{"1000baseT/Full", "2500baseT/Full"}, PORT_TP, 54},
                    TypeCase{{"2500baseT/Full", "5000baseT/Full"}, PORT_TP, 1},
                    TypeCase{{"10000baseT/Full"}, PORT_TP, 55},
                    TypeCase{{"100baseT/Full", "1000baseT/Full", "10000baseT/Full"}, PORT_TP, 63}));

INSTANTIATE_TEST_SUITE_P(
    FibreAndCopper, PortTypeTable,
    testing::Values(
        TypeCase{{"100baseFX/Full"}, PORT_FIBRE, 100}, TypeCase{{"1000baseX/Full"}, PORT_FIBRE, 1},
        TypeCase{{"1000baseX/Full", "10000baseSR/Full"}, PORT_FIBRE, 105},
        TypeCase{{"10000baseLR/Full"}, kAny, 108}, TypeCase{{"10000baseER/Full"}, kAny, 110},
        TypeCase{{"10000baseLRM/Full"}, kAny, 112},
        TypeCase{{"10000baseSR/Full", "10000baseLR/Full"}, PORT_FIBRE, 1},
        TypeCase{{"40000baseCR4/Full", "40000baseSR4/Full"}, PORT_DA, 201},
        TypeCase{{"40000baseCR4/Full", "40000baseSR4/Full"}, PORT_FIBRE, 202},
        TypeCase{{"40000baseLR4/Full"}, kAny, 204}, TypeCase{{"40000baseKR4/Full"}, kAny, 200},
        TypeCase{{"100000baseKR4/Full"}, kAny, 304}, TypeCase{{"100000baseCR4/Full"}, PORT_DA, 305},
        TypeCase{{"100000baseLR4_ER4/Full"}, PORT_FIBRE, 1}, TypeCase{{"25000baseSR/Full"}, PORT_FIBRE, 1},
        TypeCase{{"50000baseCR2/Full"}, PORT_DA, 1}, TypeCase{{"200000baseSR4/Full"}, PORT_FIBRE, 1},
        TypeCase{{"400000baseSR8/Full"}, PORT_FIBRE, 1}, TypeCase{{"800000baseSR8/Full"}, PORT_FIBRE, 1}));

INSTANTIATE_TEST_SUITE_P(
    Backplane, PortTypeTable,
    testing::Values(TypeCase{{"1000baseKX/Full", "Backplane"}, kAny, 57},
                    TypeCase{{"10000baseKX4/Full"}, kAny, 58}, TypeCase{{"10000baseKR/Full"}, kAny, 59},
                    TypeCase{{"10000baseKR/Full", "10000baseR_FEC"}, kAny, 59},
                    TypeCase{{"1000baseKX/Full", "10000baseKX4/Full"}, kAny, 60},
                    TypeCase{{"1000baseKX/Full", "10000baseKX4/Full", "10000baseKR/Full"}, kAny, 61}));

TEST(PortType, NothingWithoutModes) {
  EthtoolFacts facts;
  EXPECT_FALSE(portType(facts));
  facts.supported = LinkModes();
  EXPECT_FALSE(portType(facts));
  facts.supported->set(kLinkModeAutoneg);
  EXPECT_FALSE(portType(facts));
}

TEST(LinkTechnology, ByHardwareType) {
  LinkFacts link;
  EXPECT_FALSE(linkTechnology(link));
  link.type = ARPHRD_ETHER;
  EXPECT_EQ(linkTechnology(link), EthPortLinkEnum::Ethernet);
  HardwareFacts wireless;
  wireless.wireless = true;
  link.hardware = std::make_shared<HardwareFacts>(wireless);
  EXPECT_EQ(linkTechnology(link), EthPortLinkEnum::WirelessLan);
  link.type = ARPHRD_INFINIBAND;
  EXPECT_EQ(linkTechnology(link), EthPortLinkEnum::InfiniBand);
  link.type = ARPHRD_PPP;
  EXPECT_EQ(linkTechnology(link), EthPortLinkEnum::Other);
}

TEST(Capabilities, WakeOnLanAndEee) {
  using Codes = std::vector<std::uint16_t>;
  EthtoolFacts facts;
  EXPECT_EQ(supportedCapabilities(facts), Codes{});
  facts.wakeOnLanSupported = 0;
  facts.eeeSupported = false;
  EXPECT_EQ(supportedCapabilities(facts), Codes{});
  facts.wakeOnLanSupported = WAKE_MAGIC;
  facts.eeeSupported = true;
  EXPECT_EQ(supportedCapabilities(facts), (Codes{3, 8}));
  EXPECT_EQ(enabledCapabilities(facts), Codes{});
  facts.eeeEnabled = true;
  EXPECT_EQ(enabledCapabilities(facts), Codes{8});
  facts.wakeOnLanEnabled = WAKE_MAGIC;
  EXPECT_EQ(enabledCapabilities(facts), (Codes{3, 8}));
}

}  // namespace
}  // namespace ZEB::ethernet::test
