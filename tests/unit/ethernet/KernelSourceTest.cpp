#include <gmock/gmock.h>
#include <linux/fib_rules.h>

#include "FakeKernel.h"
#include "SysTree.h"
#include "kernel/KernelSource.h"
#include "model/Model.h"

// A source over kernels that are not the one that runs here.

namespace ZEB::ethernet::test {
namespace {

class KernelSourceTest : public SysTree {
 protected:
  HostSnapshot readAll() {
    auto snapshot = source.readAll();
    EXPECT_TRUE(snapshot) << (snapshot ? "" : snapshot.failure().what);
    return std::move(*snapshot);
  }
  HostSnapshot readOne(std::uint32_t index) {
    auto snapshot = source.readOne(index);
    EXPECT_TRUE(snapshot) << (snapshot ? "" : snapshot.failure().what);
    return std::move(*snapshot);
  }

  FakeKernel kernel;
  KernelSource source = kernel.source(root);
};

/// One that says neither which device is behind an interface nor what address is burnt in, and has no
/// netlink for link settings.
class OldKernel : public KernelSourceTest {
 protected:
  OldKernel() {
    interface("lo", 1);
    interface("eth0", 2, pci(root / "sys/devices/pci0000:00", "0000:01:00.0", "0x8086", "0x10d3"));
    kernel.links[2] = linkPayload(2, "eth0");
    kernel.links[3] = kindPayload(3, "veth0", "veth");
    kernel.driver.name = "e1000e";
    kernel.driver.speed = 1000;
    kernel.driver.port = PORT_TP;
    // 10, 100 and 1000baseT/Full, Autoneg and TP.
    kernel.driver.supported = kernel.driver.advertised = {0xEA, 0};
    kernel.driver.wakeOnLan = {WAKE_MAGIC, WAKE_MAGIC};
    kernel.driver.permanentAddress = {0x00, 0x1A, 0x2B, 0x3C, 0x4D, 0x5E};
    kernel.driver.counters = {{"rx_crc_errors", 7}};
  }

  static void expectCard(const PortFacts& port) {
    EXPECT_EQ(port.link.parentBus, "pci");
    EXPECT_EQ(port.link.parentDevice, "0000:01:00.0");
    ASSERT_TRUE(port.link.hardware);
    EXPECT_EQ(port.link.hardware->deviceName, "82574L Gigabit Network Connection");
    EXPECT_EQ(port.link.driver->name, "e1000e");
    EXPECT_EQ(port.link.permanentAddress, parseHardwareAddress("00:1a:2b:3c:4d:5e"));
    EXPECT_EQ(port.link.ethtool.supported, LinkModes(0xEA));
    EXPECT_EQ(port.link.ethtool.speed, 1000u);
    EXPECT_EQ(port.link.ethtool.fullDuplex, true);
    EXPECT_EQ(port.link.ethtool.media, PORT_TP);
    EXPECT_EQ(port.link.ethtool.wakeOnLanEnabled, static_cast<std::uint32_t>(WAKE_MAGIC));
    EXPECT_EQ(port.link.ethtool.mac.fcsErrors, 7u);
  }
};

TEST_F(OldKernel, HasCardsWithSettingsAndVersions) {
  const auto model = buildModel(readAll(), false);
  ASSERT_EQ(model->adapters.size(), 1u);
  EXPECT_EQ(model->adapters[0].key, "pci 0000:01:00");
  ASSERT_EQ(model->adapters[0].ports.size(), 1u);
  expectCard(*model->adapters[0].ports[0].facts);
}

TEST_F(OldKernel, SaysTheSameOfOneInterface) {
  const auto whole = buildModel(readAll(), false);
  const auto one = onePort(readOne(2), *whole->ports.at(2));
  ASSERT_TRUE(one);
  expectCard(*one);
}

TEST_F(OldKernel, ACardThatIsPluggedInIsSeen) {
  (void)readAll();
  kernel.links[4] = linkPayload(4, "eth1");
  interface("eth1", 4, pci(root / "sys/devices/pci0000:00", "0000:02:00.0", "0x8086", "0x100e"));
  kernel.announce(RTM_NEWLINK, kernel.links[4]);
  EXPECT_TRUE(source.announced());
  EXPECT_EQ(buildModel(readAll(), false)->adapters.size(), 2u);
}

MessageBuilder rulePayload(std::uint8_t table) {
  fib_rule_hdr header{};
  header.family = AF_INET;
  header.table = table;
  header.action = FR_ACT_TO_TBL;
  MessageBuilder builder;
  return builder.raw(header);
}

TEST_F(KernelSourceTest, RulesAreAskedForOnceAndWhenTheyChange) {
  kernel.links[2] = kindPayload(2, "veth0", "veth");
  kernel.rules = {rulePayload(254), rulePayload(255), rulePayload(254)};
  const std::vector<RuleFacts> expected = {{IpFamily::V4, 254}, {IpFamily::V4, 255}};
  EXPECT_EQ(readAll().rules, expected);
  EXPECT_EQ(readAll().rules, expected);
  EXPECT_EQ(readOne(2).rules, expected);
  EXPECT_EQ(kernel.dumps[RTM_GETRULE], 1);

  kernel.rules.push_back(rulePayload(77));
  kernel.announce(RTM_NEWRULE, rulePayload(77));
  EXPECT_TRUE(source.announced());
  EXPECT_EQ(readOne(2).rules.size(), 3u);
  EXPECT_EQ(readAll().rules.size(), 3u);
  EXPECT_EQ(kernel.dumps[RTM_GETRULE], 2);
}

TEST_F(KernelSourceTest, ARouteThatCameIsThereForItsInterfaceAlone) {
  kernel.links[2] = kindPayload(2, "veth0", "veth");
  EXPECT_TRUE(readAll().routes.empty());
  kernel.routes = {routePayload(2, {10, 0, 0, 1})};
  kernel.announce(RTM_NEWROUTE, kernel.routes[0]);
  EXPECT_EQ(readOne(2).routes.size(), 1u);
}

TEST_F(KernelSourceTest, CountersAreOfAMomentInWhichNothingChanges) {
  kernel.links[2] = kindPayload(2, "veth0", "veth");
  kernel.counters = {countersPayload(2, 7)};
  (void)readAll();
  const auto counters = source.readCounters();
  ASSERT_TRUE(counters && *counters);
  EXPECT_EQ((*counters)->interfaces.size(), 1u);
  kernel.whenAsked = [&](std::uint16_t type) {
    if (type == RTM_GETSTATS) kernel.announce(RTM_NEWLINK, kernel.links[2]);
  };
  EXPECT_FALSE(*source.readCounters());
}

/// Whoever asks only after an announcement would never ask again.
TEST_F(KernelSourceTest, AFailedReadingIsLeftToBeAskedForAgain) {
  kernel.links[2] = kindPayload(2, "veth0", "veth");
  kernel.refused = {RTM_GETADDR};
  EXPECT_FALSE(source.readAll());
  EXPECT_TRUE(source.announced());
  kernel.refused.clear();
  EXPECT_EQ(readAll().links.size(), 1u);
  EXPECT_FALSE(source.announced());
}

TEST_F(KernelSourceTest, AKernelWithoutRulesHasNoneThatAreKnown) {
  kernel.links[2] = kindPayload(2, "veth0", "veth");
  kernel.routes = {routePayload(2, {10, 0, 0, 1}, 77)};
  kernel.refused = {RTM_GETRULE};
  const auto model = buildModel(readAll(), true);
  ASSERT_TRUE(model->ports.at(2)->gateway);
  EXPECT_EQ(model->ports.at(2)->gateway->gateway, "10.0.0.1");
}

TEST_F(KernelSourceTest, ARouteThatNoRuleSelectsIsNoGateway) {
  kernel.links[2] = kindPayload(2, "veth0", "veth");
  kernel.routes = {routePayload(2, {10, 0, 0, 1}, 77)};
  kernel.rules = {rulePayload(254)};
  const auto model = buildModel(readAll(), true);
  EXPECT_FALSE(model->ports.at(2)->gateway);
  EXPECT_FALSE(onePort(readOne(2), *model->ports.at(2))->gateway);
}

TEST_F(KernelSourceTest, ATeamInABridgeHasTheBridgesGatewayHoweverItIsAsked) {
  kernel.links[5] = kindPayload(5, "br0", "bridge");
  MessageBuilder team = kindPayload(6, "bond0", "bond");
  kernel.links[6] = team.number(IFLA_MASTER, 5u);
  kernel.addresses = {addressPayload(5, {10, 0, 0, 5}, 8)};
  kernel.routes = {routePayload(5, {10, 0, 0, 1})};
  const auto whole = buildModel(readAll(), false);
  ASSERT_EQ(whole->teams.size(), 1u);
  const route_t expected{"ipv4", "10.0.0.1", "255.0.0.0", 8};
  EXPECT_EQ(whole->teams[0].facts->gateway, expected);
  EXPECT_EQ(oneTeam(readOne(6), *whole->teams[0].facts)->gateway, expected);
}

}  // namespace
}  // namespace ZEB::ethernet::test
