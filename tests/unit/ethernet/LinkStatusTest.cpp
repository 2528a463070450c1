#include <gtest/gtest.h>
#include <linux/if.h>

#include "model/LinkStatus.h"

namespace ZEB::ethernet::test {
namespace {

using Status = operationalStatus;

LinkFacts link(bool up, std::optional<bool> carrier, std::optional<std::uint8_t> operState) {
  LinkFacts facts;
  facts.flags = up ? std::uint32_t{IFF_UP} : 0u;
  facts.carrier = carrier;
  facts.operState = operState;
  return facts;
}

struct StatusCase {
  const char* name;
  bool up, carrier;
  std::uint8_t operState;
  Status port, vlan;
};

class StatusTable : public testing::TestWithParam<StatusCase> {};

TEST_P(StatusTable, OfPortAndVlan) {
  const auto& [name, up, carrier, operState, port, vlan] = GetParam();
  EXPECT_EQ(portStatus(link(up, carrier, operState)), port);
  EXPECT_EQ(vlanStatus(link(up, carrier, operState)), vlan);
}

INSTANTIATE_TEST_SUITE_P(
    All, StatusTable,
    testing::Values(
        StatusCase{"Up", true, true, IF_OPER_UP, Status::OK, Status::OK},
        StatusCase{"UnknownState", true, true, IF_OPER_UNKNOWN, Status::OK, Status::OK},
        StatusCase{"StateNotYetThere", true, true, IF_OPER_DOWN, Status::OK, Status::OK},
        StatusCase{"NoCarrier", true, false, IF_OPER_DOWN, Status::Error, Status::Error},
        StatusCase{"Testing", true, true, IF_OPER_TESTING, Status::Degraded, Status::Degraded},
        StatusCase{"NotFullyUp", true, true, IF_OPER_DORMANT, Status::Degraded, Status::Degraded},
        StatusCase{"LowerDown", true, true, IF_OPER_LOWERLAYERDOWN, Status::Degraded, Status::Error},
        StatusCase{"LowerDownNoCarrier", true, false, IF_OPER_LOWERLAYERDOWN, Status::Error, Status::Error},
        StatusCase{"DownWithCarrier", false, true, IF_OPER_DOWN, Status::Dormant, Status::Dormant},
        StatusCase{"Down", false, false, IF_OPER_DOWN, Status::Dormant, Status::Dormant},
        StatusCase{"DownLowerDown", false, false, IF_OPER_LOWERLAYERDOWN, Status::Dormant, Status::Dormant}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(LinkStatus, NothingKnown) {
  EXPECT_FALSE(portStatus(LinkFacts{}));
  EXPECT_FALSE(vlanStatus(LinkFacts{}));
  EXPECT_FALSE(memberStatus(LinkFacts{}));
  EXPECT_FALSE(linkMessage(LinkFacts{}));
  EXPECT_FALSE(hasCarrier(LinkFacts{}));
  LinkFacts carrierOnly;
  carrierOnly.carrier = true;
  EXPECT_FALSE(portStatus(carrierOnly));
}

TEST(LinkStatus, CarrierFromTheFlagsWhereItIsNotSaid) {
  LinkFacts facts;
  facts.flags = IFF_UP | IFF_LOWER_UP;
  EXPECT_EQ(portStatus(facts), Status::OK);
  facts.flags = IFF_UP;
  EXPECT_EQ(portStatus(facts), Status::Error);
}

TEST(LinkStatus, MemberByWhatBondingThinks) {
  const auto member = [](bool up, bool carrier, std::optional<std::uint8_t> mii) {
    LinkFacts facts = link(up, carrier, IF_OPER_UP);
    facts.bondMember = BondMemberFacts{0, mii, {}};
    return memberStatus(facts);
  };
  EXPECT_EQ(member(true, true, 0), Status::OK);
  EXPECT_EQ(member(true, true, std::nullopt), Status::OK);
  EXPECT_EQ(member(true, true, 1), Status::Degraded);
  EXPECT_EQ(member(true, true, 2), Status::Error);
  EXPECT_EQ(member(true, true, 3), Status::Degraded);
  EXPECT_EQ(member(true, false, 0), Status::Error);
  EXPECT_EQ(member(false, true, 2), Status::Dormant);
}

TEST(LinkMessage, SaysHowTheLinkIs) {
  auto up = link(true, true, IF_OPER_UP);
  EXPECT_EQ(linkMessage(up), "link up");
  up.ethtool.speed = 1000;
  EXPECT_EQ(linkMessage(up), "link up, 1000 Mbit/s");
  up.ethtool.fullDuplex = true;
  EXPECT_EQ(linkMessage(up), "link up, 1000 Mbit/s full duplex");
  up.ethtool.fullDuplex = false;
  EXPECT_EQ(linkMessage(up), "link up, 1000 Mbit/s half duplex");
  EXPECT_EQ(linkMessage(link(false, true, IF_OPER_DOWN)), "administratively down");
  EXPECT_EQ(linkMessage(link(true, true, IF_OPER_TESTING)), "link up, but under test");
  EXPECT_EQ(linkMessage(link(true, true, IF_OPER_DORMANT)), "link up, but not fully up");
  EXPECT_EQ(linkMessage(link(true, true, IF_OPER_LOWERLAYERDOWN)), "link up, but the layer below is down");
  EXPECT_EQ(linkMessage(link(true, true, 200)), "link up");
}

TEST(LinkMessage, SaysWhyThereIsNone) {
  auto down = link(true, false, IF_OPER_DOWN);
  EXPECT_EQ(linkMessage(down), "no link");
  EXPECT_EQ(linkMessage(link(true, false, IF_OPER_LOWERLAYERDOWN)), "no link: lower layer down");
  down.ethtool.extendedState = 4;
  EXPECT_EQ(linkMessage(down), "no link: no cable");
  down.ethtool.extendedState = 0;
  down.ethtool.extendedSubstate = 1;
  EXPECT_EQ(linkMessage(down), "no link: autonegotiation failed (no partner detected)");
  down.ethtool.extendedSubstate = 99;
  EXPECT_EQ(linkMessage(down), "no link: autonegotiation failed");
  down.ethtool.extendedState = 99;
  EXPECT_EQ(linkMessage(down), "no link: reason 99");
}

}  // namespace
}  // namespace ZEB::ethernet::test
