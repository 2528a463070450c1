#include <gtest/gtest.h>
#include <linux/ethtool.h>

#include "FakeDriver.h"
#include "MessageBuilder.h"
#include "SnapshotBuilder.h"
#include "kernel/IoctlDecoders.h"

// What kernels without ethtool's netlink have in its place.

namespace ZEB::ethernet::test {
namespace {

ethtool_link_settings gigabit() {
  ethtool_link_settings settings{};
  settings.speed = 1000;
  settings.duplex = DUPLEX_FULL;
  settings.port = PORT_FIBRE;
  settings.autoneg = AUTONEG_ENABLE;
  return settings;
}

/// Bits 5 (1000baseT/Full), 6 (Autoneg) and 35 (50000baseKR2/Full) are supported, 5 and 6 advertised; the
/// other end offers 3 (100baseT/Full).
MessageBuilder settingsOf(ethtool_link_settings fixed) {
  MessageBuilder builder;
  fixed.link_mode_masks_nwords = 2;
  builder.append(&fixed, sizeof fixed);
  for (const std::uint32_t word : {0x60u, 0x8u, 0x60u, 0u, 0x8u, 0u}) builder.raw(word);
  return builder;
}

TEST(IoctlDecoders, LinkSettings) {
  EthtoolFacts facts;
  mergeLinkSettings(settingsOf(gigabit()).view(), facts);
  ASSERT_TRUE(facts.supported && facts.advertised);
  EXPECT_EQ(facts.supported->count(), 3u);
  EXPECT_TRUE(facts.supported->test(35));
  EXPECT_EQ(facts.advertised->count(), 2u);
  EXPECT_EQ(facts.partner, LinkModes(0x8));
  EXPECT_EQ(facts.speed, 1000u);
  EXPECT_EQ(facts.fullDuplex, true);
  EXPECT_EQ(facts.autonegotiation, true);
  EXPECT_EQ(facts.media, PORT_FIBRE);
}

TEST(IoctlDecoders, SpeedAndDuplexThatAreUnknown) {
  ethtool_link_settings settings = gigabit();
  settings.speed = static_cast<std::uint32_t>(SPEED_UNKNOWN);
  settings.duplex = DUPLEX_UNKNOWN;
  EthtoolFacts facts;
  mergeLinkSettings(settingsOf(settings).view(), facts);
  EXPECT_FALSE(facts.speed || facts.fullDuplex);
  EXPECT_TRUE(facts.supported);
}

TEST(IoctlDecoders, WhatIsCutShortSaysNothing) {
  const MessageBuilder whole = settingsOf(gigabit());
  const std::size_t allSets = sizeof(ethtool_link_settings) + 6 * sizeof(std::uint32_t);
  for (std::size_t size = 0; size < allSets; ++size) {
    EthtoolFacts facts;
    mergeLinkSettings(whole.view().first(size), facts);
    EXPECT_EQ(facts, EthtoolFacts{}) << size;
  }
  EthtoolFacts facts;
  ethtool_link_settings refused = gigabit();
  refused.link_mode_masks_nwords = -4;
  mergeLinkSettings(Bytes(reinterpret_cast<const std::byte*>(&refused), sizeof refused), facts);
  mergeWakeOnLan(whole.view().first(5), facts);
  mergeEnergyEfficiency(whole.view().first(5), facts);
  EXPECT_EQ(facts, EthtoolFacts{});
  EXPECT_FALSE(decodePermanentAddress(whole.view().first(7)));
  MessageBuilder address;
  address.raw(std::uint32_t{ETHTOOL_GPERMADDR}).raw(std::uint32_t{6}).raw(std::uint32_t{1});
  EXPECT_FALSE(decodePermanentAddress(address.view())) << "six bytes are announced and four there";
}

TEST(EthtoolIoctl, SettingsOfACard) {
  FakeDriver driver;
  driver.speed = 1000;
  driver.supported = {0x60, 0, 0};
  driver.advertised = {0x40, 0, 0};
  driver.linkDetected = true;
  driver.wakeOnLan = {WAKE_MAGIC | WAKE_PHY, WAKE_MAGIC};
  driver.energyEfficient = {0x20, false};
  EthtoolIoctl ioctl(driver.call());
  for (int i = 0; i < 2; ++i) {
    LinkFacts card = pciPort(2, "eth0", "0000:01:00.0");
    ioctl.addSettings(card);
    const EthtoolFacts& facts = card.ethtool;
    ASSERT_TRUE(facts.supported && facts.advertised);
    EXPECT_EQ(*facts.supported, LinkModes(0x60));
    EXPECT_EQ(*facts.advertised, LinkModes(0x40));
    EXPECT_FALSE(facts.partner) << "no set is nothing offered";
    EXPECT_EQ(facts.speed, 1000u);
    EXPECT_EQ(facts.media, PORT_FIBRE);
    EXPECT_EQ(facts.linkDetected, true);
    EXPECT_EQ(facts.wakeOnLanSupported, static_cast<std::uint32_t>(WAKE_MAGIC | WAKE_PHY));
    EXPECT_EQ(facts.wakeOnLanEnabled, static_cast<std::uint32_t>(WAKE_MAGIC));
    EXPECT_EQ(facts.eeeSupported, true);
    EXPECT_EQ(facts.eeeEnabled, false);
  }
}

TEST(EthtoolIoctl, VirtualInterfacesHaveModesAlone) {
  FakeDriver driver;
  driver.speed = 1000;
  driver.supported = driver.advertised = {0};
  driver.linkDetected = true;
  EthtoolIoctl ioctl(driver.call());
  LinkFacts link = ethernetLink(2, "veth0");
  ioctl.addSettings(link);
  EXPECT_EQ(link.ethtool.speed, 1000u);
  EXPECT_FALSE(link.ethtool.media || link.ethtool.linkDetected);
}

TEST(EthtoolIoctl, ADriverThatSaysNothing) {
  FakeDriver driver;
  EthtoolIoctl ioctl(driver.call());
  LinkFacts card = pciPort(2, "eth0", "0000:01:00.0");
  ioctl.addSettings(card);
  EXPECT_EQ(card.ethtool, EthtoolFacts{});
}

}  // namespace
}  // namespace ZEB::ethernet::test
