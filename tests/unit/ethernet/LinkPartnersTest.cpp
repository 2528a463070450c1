#include <gtest/gtest.h>

#include "SnapshotBuilder.h"
#include "model/LinkPartners.h"

namespace ZEB::ethernet::test {
namespace {

std::string textOf(std::vector<LinkFacts> links) {
  HostSnapshot snapshot;
  snapshot.links = std::move(links);
  return linkPartnersText(*buildModel(std::move(snapshot), false));
}

using Names = std::initializer_list<const char*>;

LinkModes modesOf(Names names) {
  LinkModes modes;
  for (const char* const name : names) modes.set(*linkModeBit(name));
  return modes;
}

LinkFacts offered(LinkFacts link, Names modes) {
  link.ethtool.partner = modesOf(modes);
  return link;
}

LinkFacts able(LinkFacts link, Names modes) {
  link.ethtool.supported = modesOf(modes);
  return link;
}

TEST(LinkPartners, OfAPortIsTheLargestSpeedThatItIsOffered) {
  EXPECT_EQ(
      textOf({offered(pciPort(2, "eth0", "0000:01:00.0"), {"Autoneg", "100baseT/Half", "1000baseT/Full"}),
              offered(pciPort(3, "eth1", "0000:01:00.1"), {"10baseT/Full", "100baseT/Half"}),
              offered(pciPort(4, "eth2", "0000:02:00.0"), {"Autoneg", "800000baseSR8/Full"})}),
      R"({"ports":[{"name":"eth0","speed":1000000000,"fullDuplex":true},)"
      R"({"name":"eth1","speed":100000000,"fullDuplex":false},)"
      R"({"name":"eth2","speed":800000000000,"fullDuplex":true}],"teams":[]})");
}

/// The fastest of one end may be none of the other's, and one speed has modes of several names.
TEST(LinkPartners, ShareASpeedThatBothCanDo) {
  EXPECT_EQ(
      textOf({able(offered(pciPort(2, "eth0", "0000:01:00.0"), {"1000baseT/Full", "2500baseT/Full"}),
                   {"1000baseT/Full", "10000baseT/Full"}),
              able(offered(pciPort(3, "eth1", "0000:01:00.1"), {"1000baseKX/Full", "10000baseKR/Full"}),
                   {"1000baseT/Full", "Autoneg"}),
              able(offered(pciPort(4, "eth2", "0000:02:00.0"), {"10baseT/Half", "10baseT/Full", "Autoneg"}),
                   {"100baseT/Full", "Autoneg"})}),
      R"({"ports":[{"name":"eth0","speed":2500000000,"fullDuplex":true,"common":1000000000},)"
      R"({"name":"eth1","speed":10000000000,"fullDuplex":true,"common":1000000000},)"
      R"({"name":"eth2","speed":10000000,"fullDuplex":true}],"teams":[]})");
}

/// One mode that nobody negotiated is what the signal looks like.
TEST(LinkPartners, ThatDoNotNegotiateOfferNothing) {
  EXPECT_EQ(textOf({offered(pciPort(2, "eth0", "0000:01:00.0"), {"100baseT/Half"})}),
            R"({"ports":[],"teams":[]})");
}

TEST(LinkPartners, NoneIsKnownWithoutALinkOrWithoutASpeed) {
  LinkFacts pulled = offered(pciPort(2, "eth0", "0000:01:00.0"), {"1000baseT/Full", "Autoneg"});
  carrier(pulled, false);
  LinkFacts unknown = offered(pciPort(3, "eth1", "0000:01:00.1"), {"1000baseT/Full", "Autoneg"});
  unknown.carrier.reset();
  unknown.flags.reset();
  EXPECT_EQ(textOf({pulled, unknown, offered(pciPort(4, "eth2", "0000:01:00.2"), {"Autoneg", "Pause"}),
                    pciPort(5, "eth3", "0000:01:00.3"),
                    offered(ethernetLink(6, "no port"), {"1000baseT/Full", "Autoneg"})}),
            R"({"ports":[],"teams":[]})");
}

TEST(LinkPartners, OfATeamAreThoseThatSpeakLacp) {
  constexpr std::uint8_t kLacp = 4;
  LinkFacts told = bondLink(10, "bond0", kLacp);
  told.bond->aggregator = AggregatorFacts{1, 2, 9, 1003, HardwareAddress{0, 0x1C, 0x73, 0, 0, 1}};
  LinkFacts silent = bondLink(11, "bond1", kLacp);
  silent.bond->aggregator = AggregatorFacts{};
  LinkFacts member = memberOf(pciPort(2, "eth0", "0000:01:00.0"), 10);
  member.bondMember->aggregatorId = 1;
  member.bondMember->actorState = 61;
  member.bondMember->partnerState = 63;
  const LinkFacts unheard = memberOf(pciPort(3, "eth1", "0000:01:00.1"), 10);
  EXPECT_EQ(
      textOf({member, unheard, told, silent, bondLink(12, "bond2")}),
      R"({"ports":[],"teams":[{"name":"bond0","aggregator":1,"ports":2,"actorKey":9,"partnerKey":1003,)"
      R"("partner":"00:1c:73:00:00:01",)"
      R"("members":[{"name":"eth0","aggregator":1,"actorState":61,"partnerState":63},{"name":"eth1"}]},)"
      R"({"name":"bond1","members":[]}]})");
}

TEST(LinkPartners, ANameThatIsNoTextIsReplaced) {
  EXPECT_EQ(
      textOf({offered(pciPort(2, "a\xFF", "0000:01:00.0"), {"Autoneg", "10baseT/Half"})}),
      "{\"ports\":[{\"name\":\"a\xEF\xBF\xBD\",\"speed\":10000000,\"fullDuplex\":false}],\"teams\":[]}");
}

}  // namespace
}  // namespace ZEB::ethernet::test
