#include <gtest/gtest.h>

#include "snapshot/HardwareAddress.h"
#include "snapshot/IpAddress.h"
#include "snapshot/LinkModes.h"
#include "snapshot/PciAddress.h"

namespace ZEB::ethernet::test {
namespace {

IpAddress ip(const char* text) {
  return *parseIpAddress(text);
}

TEST(LinkModes, NamesAndBitsAgree) {
  EXPECT_EQ(linkModeName(5), "1000baseT/Full");
  EXPECT_EQ(linkModeName(0), "10baseT/Half");
  EXPECT_EQ(linkModeName(92), "10baseT1L/Full");
  EXPECT_EQ(linkModeName(98), "800000baseVR8/Full");
  EXPECT_EQ(linkModeName(120), "800000baseVR4/Full");
  EXPECT_EQ(linkModeName(127), "");
  EXPECT_EQ(linkModeName(100000), "");
  EXPECT_EQ(linkModeBit("800000baseKR4/Full"), 116u);
  EXPECT_FALSE(linkModeBit("1baseT/Full"));
}

TEST(LinkModes, SpeedAndMediumComeFromTheName) {
  EXPECT_EQ(linkModeSpeed("800000baseDR8_2/Full"), 800000u);
  EXPECT_EQ(linkModeMedium("800000baseDR8_2/Full"), "DR8_2");
  EXPECT_EQ(linkModeMedium("100baseT/Half"), "T");
  EXPECT_EQ(linkModeSpeed("Autoneg"), 0u);
  EXPECT_EQ(linkModeMedium("FIBRE"), "");
  EXPECT_EQ(linkModeSpeed(""), 0u);
}

TEST(LinkModes, FastestOfASet) {
  LinkModes modes;
  EXPECT_EQ(fastestSpeed(modes), 0u);
  modes.set(kLinkModeAutoneg).set(kLinkModeFibre);
  EXPECT_EQ(fastestSpeed(modes), 0u) << "bits that are no mode have no speed";
  modes.set(*linkModeBit("25000baseSR/Full")).set(*linkModeBit("800000baseSR8/Full")).set(0);
  EXPECT_EQ(fastestSpeed(modes), 800000u);
}

TEST(LinkModes, FullDuplexIsThatOfTheSpeed) {
  LinkModes modes;
  EXPECT_FALSE(hasFullDuplex(modes, 100));
  modes.set(*linkModeBit("10baseT/Full")).set(*linkModeBit("100baseT/Half"));
  EXPECT_FALSE(hasFullDuplex(modes, 100));
  modes.set(*linkModeBit("100baseT/Full"));
  EXPECT_TRUE(hasFullDuplex(modes, 100));
}

TEST(HardwareAddress, TextForm) {
  EXPECT_EQ(toText({0, 0x1A, 0x2B, 0x3C, 0x4D, 0x5E}), "00:1a:2b:3c:4d:5e");
  EXPECT_EQ(parseHardwareAddress("00:1A:2b:3c:4d:5e"), (HardwareAddress{0, 0x1A, 0x2B, 0x3C, 0x4D, 0x5E}));
  for (const char* text :
       {"", "00:1a:2b:3c:4d", "00:1a:2b:3c:4d:5e:6f", "00-1a-2b-3c-4d-5e", "g0:1a:2b:3c:4d:5e"}) {
    EXPECT_FALSE(parseHardwareAddress(text)) << text;
  }
}

TEST(PciAddress, Parses) {
  EXPECT_EQ(parsePciAddress("0000:03:00.1"), (PciAddress{0, 3, 0, 1}));
  EXPECT_EQ(parsePciAddress("10000:ff:1f.7"), (PciAddress{0x10000, 0xFF, 0x1F, 7}));
  for (const char* text :
       {"", "03:00.1", "0000:03:00", "0000:03:00.", "0000:03:0g.1", "virtio2", "0000:03:00.12", ":::."}) {
    EXPECT_FALSE(parsePciAddress(text)) << text;
  }
}

TEST(IpAddress, TextForm) {
  EXPECT_EQ(toText(ip("192.168.1.1")), "192.168.1.1");
  EXPECT_EQ(toText(ip("2001:0DB8:0:0::1")), "2001:db8::1");
  for (const char* text : {"", "1.2.3", "256.1.1.1", "1.2.3.4/24", ":::"})
    EXPECT_FALSE(parseIpAddress(text)) << text;
}

TEST(IpAddress, NetmaskOfEachPrefix) {
  EXPECT_EQ(toText(netmask(0)), "0.0.0.0");
  EXPECT_EQ(toText(netmask(1)), "128.0.0.0");
  EXPECT_EQ(toText(netmask(17)), "255.255.128.0");
  EXPECT_EQ(toText(netmask(24)), "255.255.255.0");
  EXPECT_EQ(toText(netmask(32)), "255.255.255.255");
  EXPECT_EQ(toText(netmask(200)), "255.255.255.255");
}

TEST(IpAddress, SameNetwork) {
  EXPECT_TRUE(sameNetwork(ip("10.1.2.3"), ip("10.1.2.200"), 24));
  EXPECT_FALSE(sameNetwork(ip("10.1.2.3"), ip("10.1.3.3"), 24));
  EXPECT_TRUE(sameNetwork(ip("10.1.2.3"), ip("10.1.3.3"), 23));
  EXPECT_FALSE(sameNetwork(ip("10.1.2.3"), ip("10.1.4.3"), 23));
  EXPECT_TRUE(sameNetwork(ip("2001:db8::1"), ip("2001:db8::ffff"), 64));
  EXPECT_FALSE(sameNetwork(ip("2001:db8::1"), ip("2001:db8:0:1::1"), 64));
  EXPECT_TRUE(sameNetwork(ip("1.2.3.4"), ip("200.2.3.4"), 0));
  EXPECT_FALSE(sameNetwork(ip("1.2.3.4"), ip("::1"), 0)) << "families never share a network";
  EXPECT_FALSE(sameNetwork(ip("1.2.3.4"), ip("1.2.3.4"), 33));
}

TEST(IpAddress, LinkLocal) {
  EXPECT_TRUE(isLinkLocal(ip("169.254.0.1")));
  EXPECT_FALSE(isLinkLocal(ip("169.253.0.1")));
  EXPECT_TRUE(isLinkLocal(ip("fe80::1")));
  EXPECT_TRUE(isLinkLocal(ip("febf::1")));
  EXPECT_FALSE(isLinkLocal(ip("fec0::1")));
}

}  // namespace
}  // namespace ZEB::ethernet::test
