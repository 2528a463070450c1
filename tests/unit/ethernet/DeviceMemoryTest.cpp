#include <gtest/gtest.h>

#include "FakeDriver.h"
#include "SnapshotBuilder.h"
#include "kernel/DeviceMemory.h"

namespace ZEB::ethernet::test {
namespace {

TEST(DeviceMemory, MergesTheDriversCountersOneByOne) {
  FakeDriver driver;
  driver.counters = {{"rx_packets", 1}, {"rx_crc_errors", 20}, {"tx_deferred", 30}};
  EthtoolIoctl ioctl(driver.call());
  DeviceMemory memory(ioctl);

  LinkFacts link = pciPort(2, "eth0", "0000:ff:1f.7");
  link.ethtool.mac.fcsErrors = 5;
  memory.complete(link);
  EXPECT_EQ(link.ethtool.mac.fcsErrors, 5u) << "the standard group has it";
  EXPECT_EQ(link.ethtool.mac.deferred, 30u) << "only the driver has it";
  EXPECT_FALSE(link.ethtool.mac.alignmentErrors) << "nobody has it";

  std::vector<InterfaceCounters> counters = {{2, {}, {}}, {3, {}, {}}};
  counters[0].mac.deferred = 6;
  memory.addCounters(counters);
  EXPECT_EQ(counters[0].mac.deferred, 6u);
  EXPECT_EQ(counters[0].mac.fcsErrors, 20u);
  EXPECT_EQ(counters[1].mac, MacStatistics{});
}

TEST(DeviceMemory, DoesNotAskForCountersThatTheStandardGroupHas) {
  FakeDriver driver;
  driver.counters = {{"rx_crc_errors", 20}, {"tx_deferred", 30}};
  EthtoolIoctl ioctl(driver.call());
  DeviceMemory memory(ioctl);
  LinkFacts link = pciPort(2, "eth0", "0000:ff:1f.7");
  link.ethtool.mac.fcsErrors = 0;
  link.ethtool.mac.deferred = 0;
  memory.complete(link);
  EXPECT_EQ(driver.counterReads, 0);
  EXPECT_EQ(link.ethtool.mac.fcsErrors, 0u);
}

TEST(DeviceMemory, AsksForVersionsAgainWhenTheLinkComesUp) {
  FakeDriver driver;
  driver.firmwareVersion = "1.0";
  EthtoolIoctl ioctl(driver.call());
  DeviceMemory memory(ioctl);
  const auto firmwareWith = [&](std::uint32_t flags) {
    LinkFacts link = pciPort(2, "eth0", "0000:ff:1f.7");
    link.flags = flags;
    memory.complete(link);
    return link.driver->firmwareVersion;
  };
  EXPECT_EQ(firmwareWith(IFF_UP | IFF_LOWER_UP), "1.0");
  driver.firmwareVersion = "2.0";
  EXPECT_EQ(firmwareWith(IFF_UP | IFF_LOWER_UP), "1.0") << "nothing happened";
  EXPECT_EQ(firmwareWith(IFF_UP), "1.0");
  EXPECT_EQ(firmwareWith(IFF_UP | IFF_LOWER_UP), "2.0");
  driver.firmwareVersion = "3.0";
  EXPECT_EQ(firmwareWith(0), "2.0");
  EXPECT_EQ(firmwareWith(IFF_UP), "3.0");
}

TEST(DeviceMemory, KnowsTheAddressBurntInWhereTheLinkDoesNot) {
  FakeDriver driver;
  driver.permanentAddress = {0x00, 0x1A, 0x2B, 0x3C, 0x4D, 0x5E};
  EthtoolIoctl ioctl(driver.call());
  DeviceMemory memory(ioctl);
  LinkFacts silent = pciPort(2, "eth0", "0000:ff:1f.7");
  memory.complete(silent);
  EXPECT_EQ(silent.permanentAddress, parseHardwareAddress("00:1a:2b:3c:4d:5e"));
  LinkFacts outspoken = pciPort(3, "eth1", "0000:ff:1f.6");
  outspoken.permanentAddress = parseHardwareAddress("02:00:00:00:00:01");
  memory.complete(outspoken);
  EXPECT_EQ(outspoken.permanentAddress, parseHardwareAddress("02:00:00:00:00:01"));
}

}  // namespace
}  // namespace ZEB::ethernet::test
