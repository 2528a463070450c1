// What zeb-capture reads of cables, plugged cards, bonds, VLANs, addresses and routes, against ip and sysfs.
#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "CaptureFixture.h"

namespace ZEB::guest {
namespace {

using nlohmann::json;
using testing::Contains;
using testing::Not;

using CaptureCableTest = CaptureFixture;

/// Some drivers tell the speed of a link that is down, some do not; the capture follows ethtool.
TEST_F(CaptureCableTest, PortsThatAreDown) {
  const json all = capture();
  for (const std::string card : {"slot3a", "slot4", "slot7", "lom1", "e1000", "e100", "virtio"}) {
    SCOPED_TRACE(card);
    const json link = linkOf(all, card);
    EXPECT_THAT(link.at("flags"), Not(Contains("UP")));
    EXPECT_EQ(link.at("operState"), "DOWN");
    EXPECT_EQ(link.at("ethtool").at("linkDetected"), false);
    const bool unknown = guest().must("ethtool " + card).find("Speed: Unknown!") != std::string::npos;
    EXPECT_EQ(link.at("ethtool").contains("speed"), !unknown);
  }
}

TEST_F(CaptureCableTest, PulledAndPutBack) {
  const std::vector<std::string> cards = {"slot3b", "slot4", "slot7", "e1000", "rtl8139"};
  const auto expectCarrier = [&](bool carrier) {
    for (const std::string& card : cards) ASSERT_TRUE(awaitCarrier(card, carrier)) << card;
    const json all = capture();
    for (const std::string& card : cards) {
      const json link = linkOf(all, card);
      EXPECT_THAT(link.at("flags"), Contains("UP")) << card;
      EXPECT_EQ(link.at("carrier"), carrier) << card;
      EXPECT_EQ(link.at("operState"), carrier ? "UP" : "DOWN") << card;
    }
  };
  bringUp(cards);
  for (const std::string& card : cards) guest().setLink(card, false);
  expectCarrier(false);
  for (const std::string& card : cards) guest().setLink(card, true);
  expectCarrier(true);
}

TEST_F(CaptureCableTest, NoSpeedWithoutCarrier) {
  bringUp({"slot3a"});
  ASSERT_EQ(linkOf(capture(), "slot3a").at("ethtool").at("speed"), 1000);
  guest().setLink("slot3a", false);
  ASSERT_TRUE(awaitCarrier("slot3a", false));
  const json facts = linkOf(capture(), "slot3a").at("ethtool");
  EXPECT_FALSE(facts.contains("speed"));
  EXPECT_FALSE(facts.contains("fullDuplex"));
  EXPECT_EQ(facts.at("linkDetected"), false);
}

using CapturePlugTest = CaptureFixture;

TEST_F(CapturePlugTest, ACardComesAndGoes) {
  const std::size_t links = capture().at("links").size();
  guest().plug({.name = "late", .model = kE1000e, .slot = kFreeSlot});
  const json all = capture();
  EXPECT_EQ(all.at("links").size(), links + 1);
  EXPECT_EQ(linkOf(all, "late").at("hardware").at("slot"), kFreeSlot);
  EXPECT_EQ(linkOf(all, "late").at("permanentAddress"), guest().addressOf("late"));
  guest().unplug("late");
  EXPECT_EQ(capture().at("links").size(), links);
}

struct BondMode {
  std::string name;
  int number;
};

void PrintTo(const BondMode& mode, std::ostream* stream) {
  *stream << mode.name;
}

class CaptureBondTest : public CaptureFixture, public testing::WithParamInterface<BondMode> {
 protected:
  static void makeBond() {
    guest().must("set -e\nip link add bond0 type bond mode " + GetParam().name + R"( miimon 100
      ip link set slot3a master bond0
      ip link set slot3b master bond0
      ip link set bond0 up)");
    for (const std::string member : {"slot3a", "slot3b"}) {
      ASSERT_TRUE(guest().await("grep -qx up /sys/class/net/" + member + "/bonding_slave/mii_status"));
    }
  }

  static void expectModeAndMembers() {
    const json all = capture();
    const json bond = linkOf(all, "bond0");
    EXPECT_EQ(bond.at("kind"), "bond");
    EXPECT_EQ(bond.at("bond").at("mode"), GetParam().number);
    EXPECT_EQ(fileLine("/sys/class/net/bond0/bonding/mode"),
              GetParam().name + " " + std::to_string(GetParam().number));
    for (const std::string member : {"slot3a", "slot3b"}) {
      const json link = linkOf(all, member);
      EXPECT_EQ(link.at("masterIndex"), bond.at("index"));
      EXPECT_EQ(link.at("bondMember").at("miiStatus"), 0);
      EXPECT_EQ(link.at("bondMember").at("permanentAddress"), guest().addressOf(member));
      EXPECT_EQ(link.at("bondMember").at("state"),
                fileLine("/sys/class/net/" + member + "/bonding_slave/state") == "active" ? 0 : 1);
    }
  }
};

TEST_P(CaptureBondTest, ModeAndMembersOfWhichOneLosesItsLink) {
  makeBond();
  expectModeAndMembers();
  guest().setLink("slot3b", false);
  ASSERT_TRUE(guest().await("grep -qx down /sys/class/net/slot3b/bonding_slave/mii_status"));
  const json all = capture();
  EXPECT_EQ(linkOf(all, "slot3b").at("bondMember").at("miiStatus"), 2);
  EXPECT_EQ(linkOf(all, "slot3a").at("bondMember").at("miiStatus"), 0);
  EXPECT_EQ(linkOf(all, "bond0").at("operState"), "UP");
}

INSTANTIATE_TEST_SUITE_P(Modes, CaptureBondTest,
                         testing::Values(BondMode{"active-backup", 1}, BondMode{"802.3ad", 4},
                                         BondMode{"balance-alb", 6}),
                         [](const auto& row) { return "Mode" + std::to_string(row.param.number); });

using CaptureVlanTest = CaptureFixture;

TEST_F(CaptureVlanTest, OnPortBondAndVlan) {
  guest().must(R"(set -e
    ip link add bond1 type bond mode active-backup miimon 100
    ip link set slot3a master bond1; ip link set bond1 up
    ip link add link bond1 name bond1.20 type vlan id 20
    ip link add link lom1 name lom1.10 type vlan id 10
    ip link add link lom1.10 name lom1.10.4094 type vlan id 4094)");
  const json all = capture();
  const auto expectVlan = [&](const std::string& name, int id, const std::string& below) {
    const json link = linkOf(all, name);
    EXPECT_EQ(link.at("kind"), "vlan") << name;
    EXPECT_EQ(link.at("vlanId"), id) << name;
    EXPECT_EQ(link.at("lowerIndex"), linkOf(all, below).at("index")) << name;
    EXPECT_FALSE(link.contains("hardware")) << name;
  };
  expectVlan("bond1.20", 20, "bond1");
  expectVlan("lom1.10", 10, "lom1");
  expectVlan("lom1.10.4094", 4094, "lom1.10");
}

TEST_F(CaptureVlanTest, FollowsItsPort) {
  guest().must(R"(set -e
    ip link set lom1 up
    ip link add link lom1 name lom1.10 type vlan id 10
    ip link set lom1.10 up)");
  ASSERT_TRUE(awaitCarrier("lom1.10", true));
  EXPECT_EQ(linkOf(capture(), "lom1.10").at("operState"), "UP");
  guest().setLink("lom1", false);
  ASSERT_TRUE(guest().await("grep -qx lowerlayerdown /sys/class/net/lom1.10/operstate"));
  EXPECT_EQ(linkOf(capture(), "lom1.10").at("operState"), "LOWERLAYERDOWN");
}

using CaptureAddressTest = CaptureFixture;

/// Every address as index, address and prefix length, in the order of the interfaces.
std::vector<std::string> kernelAddresses(const json& links, const std::string& family) {
  std::vector<std::string> found;
  for (const json& link : links) {
    for (const json& address : link.at("addr_info")) {
      if (address.at("family") != family) continue;
      found.push_back(link.at("ifindex").dump() + " " + address.at("local").get<std::string>() + "/" +
                      address.at("prefixlen").dump());
    }
  }
  return found;
}

std::vector<std::string> capturedAddresses(const json& snapshot, bool ipv6) {
  std::vector<std::string> found;
  for (const json& address : snapshot.at("addresses")) {
    const std::string text = address.at("address");
    if ((text.find(':') != std::string::npos) != ipv6) continue;
    found.push_back(address.at("index").dump() + " " + text + "/" + address.at("prefixLength").dump());
  }
  return found;
}

TEST_F(CaptureAddressTest, BothFamilies) {
  bringUp({"lom1", "e1000"});
  guest().must(R"(set -e
    ip address add 192.0.2.10/24 dev lom1
    ip address add 198.51.100.7/28 dev lom1
    ip address add 203.0.113.1/32 dev e1000
    ip address add 2001:db8::10/56 dev lom1 nodad)");
  const json all = capture();
  const json kernel = jsonOf("ip -j address show");
  EXPECT_EQ(capturedAddresses(all, false), kernelAddresses(kernel, "inet"));
  EXPECT_EQ(capturedAddresses(all, true), kernelAddresses(kernel, "inet6"));
  const std::string lom1 = linkOf(all, "lom1").at("index").dump();
  EXPECT_THAT(capturedAddresses(all, false), Contains(lom1 + " 198.51.100.7/28"));
  EXPECT_THAT(capturedAddresses(all, true), Contains(lom1 + " 2001:db8::10/56"));
}

TEST_F(CaptureAddressTest, DefaultRoutesOfBothFamilies) {
  bringUp({"lom1", "e1000"});
  guest().must(R"(set -e
    ip address add 192.0.2.10/24 dev lom1
    ip address add 2001:db8:1::10/64 dev e1000 nodad
    ip route add default via 192.0.2.1 metric 100
    ip route add default via 192.0.2.2 table 77
    ip -6 route add default via 2001:db8:1::1 metric 200)");
  const json all = capture();
  const json lom1 = linkOf(all, "lom1").at("index"), e1000 = linkOf(all, "e1000").at("index");
  EXPECT_THAT(all.at("routes"),
              testing::UnorderedElementsAre(
                  json{{"index", lom1}, {"gateway", "192.0.2.1"}, {"metric", 100}, {"table", 254}},
                  json{{"index", lom1}, {"gateway", "192.0.2.2"}, {"metric", 0}, {"table", 77}},
                  json{{"index", e1000}, {"gateway", "2001:db8:1::1"}, {"metric", 200}, {"table", 254}}));
}

using CaptureManyTest = CaptureFixture;

TEST_F(CaptureManyTest, AThousandInterfaces) {
  guest().must("for n in $(seq 1000); do echo link add dummy$n group 1000 type dummy; done | ip -batch -");
  const json all = capture();
  EXPECT_EQ(all.at("links").size(), jsonOf("ip -j link show").size());
  EXPECT_EQ(linkOf(all, "dummy1000").at("kind"), "dummy");
}

}  // namespace
}  // namespace ZEB::guest
