// Cables, hot-plug and everything that is built above cards.
#include <gmock/gmock.h>

#include <iterator>
#include <nlohmann/json.hpp>
#include <sstream>

#include "GuestFixture.h"

namespace ZEB::guest {
namespace {

using testing::HasSubstr;
using testing::UnorderedElementsAre;

using CableTest = GuestFixture;

TEST_F(CableTest, APortThatIsDownTellsNothing) {
  for (const char* fact : {"speed", "duplex", "carrier"}) {
    const Result result = guest().run(std::string("cat /sys/class/net/slot3a/") + fact);
    EXPECT_NE(result.status, 0);
    EXPECT_THAT(result.errors, HasSubstr("Invalid argument")) << fact;
  }
}

TEST_F(CableTest, PulledAndPutBack) {
  const std::vector<std::string> cards = {"slot3a", "slot3b", "lom1", "slot4", "slot7", "e1000", "rtl8139"};
  bringUp(cards);
  for (const std::string& card : cards) guest().setLink(card, false);
  for (const std::string& card : cards) EXPECT_TRUE(awaitCarrier(card, false)) << card;
  for (const std::string& card : cards) guest().setLink(card, true);
  for (const std::string& card : cards) EXPECT_TRUE(awaitCarrier(card, true)) << card;
}

TEST_F(CableTest, WithoutCarrierThereIsNoSpeed) {
  bringUp({"slot3a"});
  guest().setLink("slot3a", false);
  ASSERT_TRUE(awaitCarrier("slot3a", false));
  EXPECT_EQ(fileLine("/sys/class/net/slot3a/speed"), "-1");
  EXPECT_EQ(fileLine("/sys/class/net/slot3a/duplex"), "unknown");
}

TEST_F(CableTest, ResetPutsItBack) {
  guest().setLink("slot3a", false);
  guest().must(
      "ip link set slot3a up; ip address add 192.0.2.1/24 dev slot3a; ip link add dummy7 type dummy");
  guest().reset();
  EXPECT_EQ(guest().must("ip -o address show dev slot3a; ls /sys/class/net | grep dummy7 || true"), "");
  bringUp({"slot3a"});
}

using PlugTest = GuestFixture;

TEST_F(PlugTest, ACardComesAndGoes) {
  guest().plug({.name = "late", .model = kE1000e, .slot = kFreeSlot});
  EXPECT_EQ(fileLine("/sys/class/net/late/address"), guest().addressOf("late"));
  EXPECT_EQ(guest().must("basename $(readlink /sys/class/net/late/device)"),
            fileLine("/sys/bus/pci/slots/9/address") + ".0\n");
  bringUp({"late"});
  guest().setLink("late", false);
  EXPECT_TRUE(awaitCarrier("late", false));
  guest().unplug("late");
  EXPECT_TRUE(guest().await("! test -e /sys/class/net/late"));
}

TEST_F(PlugTest, AnotherDriverInTheSameSlot) {
  guest().plug({.name = "other", .model = kVirtioNet, .slot = kFreeSlot});
  EXPECT_THAT(guest().must("ethtool -i other"), HasSubstr("driver: virtio_net\n"));
}

using BondTest = GuestFixture;

/// Names of the members that bonding itself lists.
std::vector<std::string> members(Guest& guest, const std::string& bond) {
  std::istringstream words(guest.must("cat /sys/class/net/" + bond + "/bonding/slaves"));
  return {std::istream_iterator<std::string>(words), {}};
}

TEST_F(BondTest, ActiveBackupFailsOver) {
  guest().must(R"(
    ip link add bond1 type bond mode active-backup miimon 100
    ip link set slot3a master bond1; ip link set e1000 master bond1; ip link set bond1 up)");
  EXPECT_EQ(fileLine("/sys/class/net/bond1/bonding/mode"), "active-backup 1");
  EXPECT_THAT(members(guest(), "bond1"), UnorderedElementsAre("slot3a", "e1000"));
  ASSERT_TRUE(awaitCarrier("slot3a", true));
  ASSERT_TRUE(awaitCarrier("e1000", true));
  guest().must("ip link set bond1 type bond active_slave slot3a");
  guest().setLink("slot3a", false);
  EXPECT_TRUE(guest().await("grep -qx e1000 /sys/class/net/bond1/bonding/active_slave"));
  EXPECT_TRUE(guest().await("grep -qx down /sys/class/net/slot3a/bonding_slave/mii_status"));
  EXPECT_EQ(fileLine("/sys/class/net/bond1/operstate"), "up");
}

TEST_F(BondTest, AggregationNegotiatesWithThePartner) {
  guest().must(R"(
    ip -n partner link add bond4 type bond mode 802.3ad miimon 100 lacp_rate fast
    for port in slot3a slot3b; do
      ip -n partner link set $port-peer down
      ip -n partner link set $port-peer master bond4
    done
    ip -n partner link set bond4 up
    ip link add bond4 type bond mode 802.3ad miimon 100 lacp_rate fast
    ip link set slot3a master bond4; ip link set slot3b master bond4; ip link set bond4 up)");
  EXPECT_EQ(fileLine("/sys/class/net/bond4/bonding/mode"), "802.3ad 4");
  EXPECT_TRUE(guest().await("grep -q ^52:54:00:00:01: /sys/class/net/bond4/bonding/ad_partner_mac",
                            std::chrono::seconds(30)));
  EXPECT_TRUE(
      guest().await("grep -qx 2 /sys/class/net/bond4/bonding/ad_num_ports", std::chrono::seconds(30)));
}

TEST_F(BondTest, AdaptiveLoadBalancingComesUp) {
  guest().must(R"(
    ip link add bond6 type bond mode balance-alb miimon 100
    ip link set slot4 master bond6; ip link set e1000 master bond6; ip link set bond6 up)");
  EXPECT_EQ(fileLine("/sys/class/net/bond6/bonding/mode"), "balance-alb 6");
  EXPECT_THAT(members(guest(), "bond6"), UnorderedElementsAre("slot4", "e1000"));
  EXPECT_TRUE(awaitCarrier("bond6", true));
}

TEST_F(BondTest, VlansAreOnPortAndBond) {
  guest().must(R"(
    ip link add bond1 type bond mode active-backup miimon 100
    ip link set slot3a master bond1; ip link set slot3b master bond1; ip link set bond1 up
    ip link add link bond1 name bond1.20 type vlan id 20; ip link set bond1.20 up
    ip link set lom1 up
    ip link add link lom1 name lom1.10 type vlan id 10; ip link set lom1.10 up)");
  ASSERT_TRUE(awaitCarrier("bond1.20", true));
  ASSERT_TRUE(awaitCarrier("lom1.10", true));
  const auto carrierAndId = [](const std::string& link) {
    const auto found = jsonOf("ip -j -d link show dev " + link).at(0);
    return std::pair<std::string, int>(found.at("link"), found.at("linkinfo").at("info_data").at("id"));
  };
  EXPECT_EQ(carrierAndId("bond1.20"), std::pair(std::string("bond1"), 20));
  EXPECT_EQ(carrierAndId("lom1.10"), std::pair(std::string("lom1"), 10));
  guest().setLink("lom1", false);
  EXPECT_TRUE(guest().await("grep -qx lowerlayerdown /sys/class/net/lom1.10/operstate"));
}

using AddressTest = GuestFixture;

TEST_F(AddressTest, BothFamiliesReachThePartner) {
  bringUp({"lom1"});
  guest().must(R"(
    ip address add 192.0.2.10/24 dev lom1
    ip address add 2001:db8::10/64 dev lom1 nodad
    ip -n partner address add 192.0.2.1/24 dev lom1-peer
    ip -n partner address add 2001:db8::1/64 dev lom1-peer nodad
    ip route add default via 192.0.2.1 metric 100
    ip -6 route add default via 2001:db8::1 metric 200)");
  EXPECT_TRUE(guest().await("busybox ping -c 1 -W 1 192.0.2.1"));
  EXPECT_TRUE(guest().await("busybox ping -c 1 -W 1 2001:db8::1"));
  const auto routes = jsonOf("ip -j route show default");
  EXPECT_EQ(routes.at(0).at("gateway"), "192.0.2.1");
  EXPECT_EQ(routes.at(0).at("metric"), 100);
  const auto routes6 = jsonOf("ip -j -6 route show default");
  EXPECT_EQ(routes6.at(0).at("gateway"), "2001:db8::1");
  EXPECT_EQ(routes6.at(0).at("metric"), 200);
}

using ManyTest = GuestFixture;

TEST_F(ManyTest, AThousandInterfaces) {
  guest().must("for n in $(seq 1000); do echo link add dummy$n group 1000 type dummy; done | ip -batch -");
  EXPECT_EQ(guest().must("ls /sys/class/net | grep -c '^dummy'"), "1000\n");
}

TEST_F(ManyTest, AreGoneAfterwards) {
  EXPECT_EQ(guest().run("ls /sys/class/net | grep -c '^dummy'").output, "0\n");
}

using SharedFilesTest = GuestFixture;

TEST_F(SharedFilesTest, TheHostIsThereAndSafe) {
  // This very program, where the host has it.
  EXPECT_EQ(guest().run("test -x " GUEST_TEST_PROGRAM).status, 0);
  EXPECT_EQ(guest().run("touch /only-in-the-guest && test -e /only-in-the-guest").status, 0);
  EXPECT_FALSE(std::filesystem::exists("/only-in-the-guest"));
}

TEST_F(SharedFilesTest, ResultsReachTheHost) {
  guest().must("echo found >/results/answer");
  EXPECT_EQ(std::filesystem::file_size(guest().results() / "answer"), 6U);
}

}  // namespace
}  // namespace ZEB::guest
