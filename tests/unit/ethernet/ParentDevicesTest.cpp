#include <gtest/gtest.h>

#include "SnapshotBuilder.h"
#include "SysTree.h"
#include "kernel/ParentDevices.h"

namespace ZEB::ethernet::test {
namespace {

class ParentDevicesTest : public SysTree {
 protected:
  LinkFacts completed(LinkFacts link) {
    parents.complete(link);
    return link;
  }
  static Announcements about(std::uint32_t index) {
    Announcements announced;
    announced.interfaces.insert(index);
    return announced;
  }

  ParentDevices parents{root};
};

TEST_F(ParentDevicesTest, AreThoseThatSysfsHas) {
  interface("eth0", 2, pci(root / "sys/devices/pci0000:00", "0000:01:00.0", "0x8086", "0x10d3"));
  interface("eth1", 3, device(root / "sys/devices/pci0000:00", "virtio", "virtio2"));
  interface("lo", 1);
  const LinkFacts card = completed(ethernetLink(2, "eth0"));
  EXPECT_EQ(card.parentBus, "pci");
  EXPECT_EQ(card.parentDevice, "0000:01:00.0");
  EXPECT_EQ(completed(ethernetLink(3, "eth1")).parentBus, "virtio");
  EXPECT_EQ(completed(ethernetLink(3, "eth1")).parentDevice, "virtio2");
  EXPECT_FALSE(completed(ethernetLink(1, "lo")).parentDevice);
  EXPECT_FALSE(completed(ethernetLink(9, "gone")).parentDevice);
}

TEST_F(ParentDevicesTest, WhatTheKernelSaysStands) {
  interface("eth0", 2, pci(root / "sys/devices/pci0000:00", "0000:01:00.0", "0x8086", "0x10d3"));
  const LinkFacts said = completed(pciPort(2, "eth0", "0000:09:00.0"));
  EXPECT_EQ(said.parentDevice, "0000:09:00.0");
}

TEST_F(ParentDevicesTest, VirtualInterfacesHaveNone) {
  const fs::path card = pci(root / "sys/devices/pci0000:00", "0000:01:00.0", "0x8086", "0x10d3");
  interface("eth0.5", 5, card);
  interface("lan1", 6, card);
  EXPECT_FALSE(completed(vlanLink(5, "eth0.5", 2, 5)).parentDevice);
  LinkFacts switchPort = ethernetLink(6, "lan1");
  switchPort.kind = "dsa";
  EXPECT_TRUE(completed(switchPort).parentDevice);
}

TEST_F(ParentDevicesTest, AnotherInterfaceOfThatNameIsNotAsked) {
  interface("eth0", 7, pci(root / "sys/devices/pci0000:00", "0000:01:00.0", "0x8086", "0x10d3"));
  EXPECT_FALSE(completed(ethernetLink(2, "eth0")).parentDevice);
}

TEST_F(ParentDevicesTest, AreLookedForOncePerInterfaceAndAnnouncement) {
  interface("eth0", 2, pci(root / "sys/devices/pci0000:00", "0000:01:00.0", "0x8086", "0x10d3"));
  const auto device = [&] { return completed(ethernetLink(2, "eth0")).parentDevice; };
  EXPECT_EQ(device(), "0000:01:00.0");
  interface("eth0", 2, pci(root / "sys/devices/pci0000:00", "0000:02:00.0", "0x8086", "0x10d3"));
  EXPECT_EQ(device(), "0000:01:00.0");
  parents.forget(about(3));
  EXPECT_EQ(device(), "0000:01:00.0");
  parents.forget(about(2));
  EXPECT_EQ(device(), "0000:02:00.0");
  fs::remove_all(root / "sys/class/net/eth0");
  Announcements lost;
  lost.everything = true;
  parents.forget(lost);
  EXPECT_FALSE(device());
  interface("eth0", 2, pci(root / "sys/devices/pci0000:00", "0000:03:00.0", "0x8086", "0x10d3"));
  EXPECT_FALSE(device()) << "none is remembered as well";
}

}  // namespace
}  // namespace ZEB::ethernet::test
