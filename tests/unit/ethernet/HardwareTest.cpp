#include <gtest/gtest.h>
#include <linux/pci_regs.h>

#include "SnapshotBuilder.h"
#include "SysTree.h"
#include "kernel/DriverCounters.h"
#include "kernel/Hardware.h"

namespace ZEB::ethernet::test {
namespace {

class HardwareTest : public SysTree {
 protected:
  /// A function's configuration space, with that capability as its only one.
  void configuration(const fs::path& function, int capability) {
    std::string space(256, '\0');
    space[PCI_STATUS] = PCI_STATUS_CAP_LIST;
    space[PCI_CAPABILITY_LIST] = 0x40;
    space[0x40] = static_cast<char>(capability);
    binary(function / "config", space);
  }

  std::shared_ptr<const HardwareFacts> read(const char* bus, const char* name) {
    LinkFacts link = ethernetLink(2, "eth0");
    link.parentBus = bus;
    link.parentDevice = name;
    return HardwareReader(root).read(link);
  }
};

TEST_F(HardwareTest, CardInASlotOfTheKernels) {
  const fs::path bridge = pci(root / "sys/devices/pci0000:00", "0000:00:10.0", "0x8086", "0x3420");
  const fs::path card = pci(bridge, "0000:01:00.0", "0x8086", "0x10d3");
  file(root / "sys/bus/pci/slots/3/address", "0000:01:00");
  file(root / "sys/bus/pci/slots/4/address", "0000:02:00");
  file(card / "max_link_speed", "2.5 GT/s PCIe");
  file(card / "net/eth0/dev_port", "1");
  const auto facts = read("pci", "0000:01:00.0");
  ASSERT_TRUE(facts);
  EXPECT_EQ(facts->pci, (PciAddress{0, 1, 0, 0}));
  EXPECT_EQ(facts->vendorId, 0x8086);
  EXPECT_EQ(facts->deviceId, 0x10D3);
  EXPECT_EQ(facts->vendorName, "Intel Corporation");
  EXPECT_EQ(facts->deviceName, "82574L Gigabit Network Connection");
  EXPECT_EQ(facts->revision, 11);
  EXPECT_EQ(facts->slot, 3);
  EXPECT_EQ(facts->slotKind, SlotKind::PciExpress);
  EXPECT_EQ(facts->devicePort, 1);
  EXPECT_FALSE(facts->onboardIndex || facts->partNumber || facts->physicalFunction || facts->wireless);
}

TEST_F(HardwareTest, SlotOfABridgeAboveTheCard) {
  const fs::path bridge = pci(root / "sys/devices/pci0000:00", "0000:01:00.0", "0x8086", "0x3420");
  pci(bridge, "0000:02:04.1", "0x8086", "0x10d3");
  file(root / "sys/bus/pci/slots/7-1/address", "0000:01:00");
  EXPECT_EQ(read("pci", "0000:02:04.1")->slot, 7);
}

TEST_F(HardwareTest, SlotKindIsThatOfTheDeviceInTheSlot) {
  const fs::path port = pci(root / "sys/devices/pci0000:00", "0000:00:10.0", "0x8086", "0x3420");
  const fs::path bridge = pci(port, "0000:01:00.0", "0x10b5", "0x8114");
  const fs::path card = pci(bridge, "0000:02:04.0", "0x8086", "0x1010");
  configuration(bridge, PCI_CAP_ID_EXP);
  configuration(card, PCI_CAP_ID_PCIX);
  file(root / "sys/bus/pci/slots/3/address", "0000:01:00");
  EXPECT_EQ(read("pci", "0000:02:04.0")->slotKind, SlotKind::PciExpress);
  file(root / "sys/bus/pci/slots/4/address", "0000:02:04");
  EXPECT_EQ(read("pci", "0000:02:04.0")->slot, 4);
  EXPECT_EQ(read("pci", "0000:02:04.0")->slotKind, SlotKind::PciX);
}

TEST_F(HardwareTest, SlotOfTheFirmwareWhereTheKernelHasNone) {
  pci(root / "sys/devices/pci0000:00", "0000:05:00.0", "0x8086", "0x10d3");
  const char slot[] = {9, 0x11, 0, 0, 1, char(0xA5), 13, 4, 4, 6, 0, 0, 0, 0, 0, 5, 0, 'S', 0, 0};
  fs::create_directories(root / "sys/firmware/dmi/tables");
  std::ofstream(root / "sys/firmware/dmi/tables/DMI", std::ios::binary).write(slot, sizeof slot);
  const auto facts = read("pci", "0000:05:00.0");
  EXPECT_EQ(facts->slot, 6);
  EXPECT_EQ(facts->slotKind, SlotKind::PciExpress);
}

TEST_F(HardwareTest, OnBoardWithALabel) {
  const fs::path card = pci(root / "sys/devices/pci0000:00", "0000:00:19.0", "0x8086", "0x10d3");
  file(card / "label", "Onboard LAN 1");
  file(card / "index", "1");
  const auto facts = read("pci", "0000:00:19.0");
  EXPECT_EQ(facts->onboardLabel, "Onboard LAN 1");
  EXPECT_EQ(facts->onboardIndex, 1);
  EXPECT_FALSE(facts->slot);
}

TEST_F(HardwareTest, OnBoardAsAcpiCountsIt) {
  const fs::path card = pci(root / "sys/devices/pci0000:00", "0000:00:19.0", "0x8086", "0x10d3");
  file(card / "acpi_index", "3");
  EXPECT_EQ(read("pci", "0000:00:19.0")->onboardIndex, 3);
  file(card / "index", "1");
  EXPECT_EQ(read("pci", "0000:00:19.0")->onboardIndex, 1) << "what is printed on the board comes first";
}

TEST_F(HardwareTest, VitalProductData) {
  const fs::path card = pci(root / "sys/devices/pci0000:00", "0000:05:00.0", "0x8086", "0x10d3");
  // All bytes up to the last of the keyword RV add up to a multiple of 256.
  std::string data(
      "\x82\x03\x00"
      "NIC"
      "\x90\x0E\x00"
      "PN\x03"
      "A-1"
      "SN\x01"
      "7"
      "RV\x01",
      22);
  unsigned sum = 0;
  for (const char c : data) sum += static_cast<unsigned char>(c);
  binary(card / "vpd", data + static_cast<char>(-sum & 0xFF) + "\x78");
  const auto facts = read("pci", "0000:05:00.0");
  EXPECT_EQ(facts->productName, "NIC");
  EXPECT_EQ(facts->partNumber, "A-1");
  EXPECT_EQ(facts->serialNumber, "7");
}

TEST_F(HardwareTest, FilesThatCannotBeLookedAtAreNotThere) {
  const fs::path card = pci(root / "sys/devices/pci0000:00", "0000:05:00.0", "0x8086", "0x10d3");
  fs::create_directories(card / "net/eth0");
  const auto loop = [](const fs::path& path) { fs::create_symlink(path.filename(), path); };
  for (const char* name : {"net/eth0/phy80211", "max_link_speed", "label", "vpd", "physfn", "config"})
    loop(card / name);
  file(root / "sys/bus/pci/slots/3/address", "0000:05:00");
  const auto facts = read("pci", "0000:05:00.0");
  EXPECT_FALSE(facts->wireless || facts->slotKind || facts->onboardLabel || facts->productName);
  EXPECT_EQ(facts->slot, 3);

  const fs::path usb = device(root / "sys/devices/pci0000:00", "usb", "1-1");
  loop(usb / "idVendor");
  EXPECT_FALSE(read("usb", "1-1")->vendorId);
}

TEST_F(HardwareTest, VirtioOnPci) {
  const fs::path card = pci(root / "sys/devices/pci0000:00", "0000:00:03.0", "0x1af4", "0x1041");
  device(card, "virtio", "virtio2");
  const auto facts = read("virtio", "virtio2");
  EXPECT_EQ(facts->bus, "virtio");
  EXPECT_EQ(facts->device, "virtio2");
  EXPECT_EQ(facts->pci, (PciAddress{0, 0, 3, 0}));
  EXPECT_EQ(facts->vendorId, 0x1AF4);
}

TEST_F(HardwareTest, VirtualFunction) {
  const fs::path physical = pci(root / "sys/devices/pci0000:00", "0000:01:00.1", "0x8086", "0x1521");
  const fs::path first = pci(root / "sys/devices/pci0000:00", "0000:01:10.1", "0x8086", "0x1520");
  const fs::path second = pci(root / "sys/devices/pci0000:00", "0000:01:10.5", "0x8086", "0x1520");
  fs::create_directory_symlink(first, physical / "virtfn0");
  fs::create_directory_symlink(second, physical / "virtfn1");
  fs::create_directory_symlink(physical, second / "physfn");
  const auto facts = read("pci", "0000:01:10.5");
  EXPECT_EQ(facts->physicalFunction, (PciAddress{0, 1, 0, 1}));
  EXPECT_EQ(facts->virtualFunction, 1);
}

TEST_F(HardwareTest, UsbOnPci) {
  const fs::path controller = pci(root / "sys/devices/pci0000:00", "0000:00:14.0", "0x8086", "0xa36d");
  const fs::path usb = device(controller, "usb", "1-1");
  file(usb / "idVendor", "0bda");
  file(usb / "idProduct", "8153");
  file(usb / "manufacturer", "Realtek");
  file(usb / "product", "USB 10/100/1000 LAN");
  file(usb / "serial", "0123");
  device(usb, "usb", "1-1:1.0");
  const auto facts = read("usb", "1-1:1.0");
  EXPECT_FALSE(facts->pci) << "the card is the USB device, not its controller";
  EXPECT_EQ(facts->vendorId, 0x0BDA);
  EXPECT_EQ(facts->deviceId, 0x8153);
  EXPECT_EQ(facts->vendorName, "Realtek");
  EXPECT_EQ(facts->deviceName, "USB 10/100/1000 LAN");
  EXPECT_EQ(facts->serialNumber, "0123");
}

TEST_F(HardwareTest, DeviceThatVanishedIsKnownByNameAlone) {
  const auto facts = read("pci", "0000:09:00.0");
  ASSERT_TRUE(facts);
  EXPECT_EQ(facts->device, "0000:09:00.0");
  EXPECT_FALSE(facts->pci || facts->vendorId || facts->slot);
  EXPECT_FALSE(HardwareReader(root).read(ethernetLink(2, "veth0")));
}

TEST_F(HardwareTest, UnknownIdsHaveNoNames) {
  pci(root / "sys/devices/pci0000:00", "0000:06:00.0", "0xfbad", "0xfbad");
  const auto facts = read("pci", "0000:06:00.0");
  EXPECT_EQ(facts->vendorId, 0xFBAD);
  EXPECT_FALSE(facts->vendorName || facts->deviceName);
}

TEST(Counters, AreFoundByTheNamesOfManyDrivers) {
  const auto value = [](const std::vector<std::string>& names,
                        std::optional<std::uint64_t> MacStatistics::*counter) {
    for (const auto& place : findCounters(names).places) {
      if (place.counter == counter) return static_cast<int>(place.position);
    }
    return -1;
  };
  const std::vector<std::string> e1000e = {"rx_packets",         "tx_aborted_errors", "rx_crc_errors",
                                           "tx_abort_late_coll", "tx_deferred_ok",    "tx_single_coll_ok",
                                           "tx_multi_coll_ok",   "rx_align_errors",   "rx_frame_errors"};
  EXPECT_EQ(value(e1000e, &MacStatistics::excessiveCollisions), 1);
  EXPECT_EQ(value(e1000e, &MacStatistics::fcsErrors), 2);
  EXPECT_EQ(value(e1000e, &MacStatistics::lateCollisions), 3);
  EXPECT_EQ(value(e1000e, &MacStatistics::deferred), 4);
  EXPECT_EQ(value(e1000e, &MacStatistics::singleCollisions), 5);
  EXPECT_EQ(value(e1000e, &MacStatistics::multipleCollisions), 6);
  EXPECT_EQ(value(e1000e, &MacStatistics::alignmentErrors), 7) << "the plainer of two names";
  EXPECT_EQ(value(e1000e, &MacStatistics::transmitErrors), -1);
  const std::vector<std::string> realtek = {"tx_ok", "frame_align", "tx_ok_1col", "tx_ok_mcol"};
  EXPECT_EQ(value(realtek, &MacStatistics::alignmentErrors), 1);
  EXPECT_EQ(value(realtek, &MacStatistics::singleCollisions), 2);
  EXPECT_EQ(value(realtek, &MacStatistics::multipleCollisions), 3);
  EXPECT_TRUE(findCounters({"rx_queue_0_packets"}).places.empty());
  EXPECT_EQ(findCounters(realtek).total, 4u);
}

}  // namespace
}  // namespace ZEB::ethernet::test
