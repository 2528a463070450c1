#include <gtest/gtest.h>

#include <string>

#include "kernel/PciDecoders.h"

namespace ZEB::ethernet::test {
namespace {

std::vector<std::byte> bytes(std::initializer_list<int> values) {
  std::vector<std::byte> result;
  for (const int value : values) result.push_back(static_cast<std::byte>(value));
  return result;
}

void append(std::vector<std::byte>& to, std::string_view text) {
  for (const char c : text) to.push_back(static_cast<std::byte>(c));
}

std::vector<std::byte> configuration(std::initializer_list<std::pair<int, int>> bytesAt) {
  std::vector<std::byte> space(256);
  for (const auto& [at, value] : bytesAt) space[static_cast<std::size_t>(at)] = static_cast<std::byte>(value);
  return space;
}

TEST(SlotKind, FromTheCapabilities) {
  EXPECT_EQ(slotKindOf(configuration({})), SlotKind::Pci);
  EXPECT_EQ(slotKindOf(configuration({{6, 0x10}, {0x34, 0x40}, {0x40, 0x01}, {0x41, 0}})), SlotKind::Pci);
  EXPECT_EQ(slotKindOf(configuration({{6, 0x10}, {0x34, 0x40}, {0x40, 0x01}, {0x41, 0x50}, {0x50, 0x07}})),
            SlotKind::PciX);
  EXPECT_EQ(slotKindOf(configuration({{6, 0x10}, {0x34, 0x40}, {0x40, 0x07}, {0x41, 0x50}, {0x50, 0x10}})),
            SlotKind::PciExpress);
  EXPECT_EQ(slotKindOf(configuration({{0x34, 0x40}, {0x40, 0x10}})), SlotKind::Pci)
      << "no list, says the status";
}

TEST(SlotKind, HostileSpaces) {
  EXPECT_FALSE(slotKindOf(Bytes(configuration({})).first(64)));
  EXPECT_FALSE(slotKindOf({}));
  EXPECT_EQ(slotKindOf(configuration({{6, 0x10}, {0x34, 0x40}, {0x41, 0x40}})), SlotKind::Pci)
      << "a list that loops";
  EXPECT_EQ(slotKindOf(configuration({{6, 0x10}, {0x34, 0x04}})), SlotKind::Pci)
      << "a list inside the header";
  EXPECT_EQ(slotKindOf(configuration({{6, 0x10}, {0x34, 0xFC}, {0xFD, 0xFC}})), SlotKind::Pci);
}

std::vector<std::byte> vitalProductData() {
  auto data = bytes({0x82, 7, 0});
  append(data, "Adapter");
  auto keywords = bytes({'P', 'N', 8});
  append(keywords, " AB-12  ");
  append(keywords, std::string_view("SN\x04", 3));
  append(keywords, "X001");
  data.push_back(std::byte{0x90});
  data.push_back(static_cast<std::byte>(keywords.size()));
  data.push_back(std::byte{0});
  data.insert(data.end(), keywords.begin(), keywords.end());
  data.push_back(std::byte{0x78});
  return data;
}

TEST(VitalProductData, NamesAndNumbers) {
  const VitalProductData data = decodeVitalProductData(vitalProductData());
  EXPECT_EQ(data.productName, "Adapter");
  EXPECT_EQ(data.partNumber, "AB-12");
  EXPECT_EQ(data.serialNumber, "X001");
}

TEST(VitalProductData, EveryTruncationIsHarmless) {
  const auto whole = vitalProductData();
  for (std::size_t size = 0; size < whole.size() - 1; ++size) {
    EXPECT_FALSE(decodeVitalProductData(Bytes(whole).first(size)).serialNumber) << size;
  }
}

TEST(VitalProductData, IsOnlyUsedWhenItsChecksumHolds) {
  auto data = bytes({0x82, 3, 0});
  append(data, "NIC");
  append(data, std::string_view("\x90\x0A\0", 3));
  append(data, std::string_view("SN\x02"
                                "X1"
                                "RV\x02",
                                8));
  // The bytes so far add up to 0x3CF, with this one to 0x400.
  data.push_back(std::byte{0x31});
  data.push_back(std::byte{0});
  data.push_back(std::byte{0x78});
  EXPECT_EQ(decodeVitalProductData(data).serialNumber, "X1");
  EXPECT_EQ(decodeVitalProductData(data).productName, "NIC");
  for (const std::size_t at : {std::size_t{4}, std::size_t{12}, std::size_t{17}}) {
    auto damaged = data;
    damaged[at] ^= std::byte{1};
    EXPECT_FALSE(decodeVitalProductData(damaged).serialNumber) << at;
    EXPECT_FALSE(decodeVitalProductData(damaged).productName) << at;
  }
}

TEST(VitalProductData, WhatIsNoTextIsLeftOut) {
  EXPECT_FALSE(decodeVitalProductData(bytes({0x82, 2, 0, 0xFF, 0xFF, 0x78})).productName);
  EXPECT_FALSE(decodeVitalProductData(bytes({0x82, 2, 0, ' ', ' ', 0x78})).productName);
  EXPECT_FALSE(decodeVitalProductData(bytes({0x90, 4, 0, 'P', 'N', 0, 'x', 0x78})).partNumber);
  EXPECT_FALSE(decodeVitalProductData(bytes({0x90, 4, 0, 'P', 'N', 9, 'x', 0x78})).partNumber);
  EXPECT_FALSE(decodeVitalProductData(std::vector<std::byte>(4096, std::byte{0xFF})).productName);
  EXPECT_FALSE(decodeVitalProductData(std::vector<std::byte>(4096)).productName);
}

std::vector<std::byte> slot(int type, int number, int bus, int place, int length = 0x11) {
  auto structure =
      bytes({9, length, 0, 0, 1, type, 0x0D, 4, 4, number & 0xFF, number >> 8, 0, 0, 0, 0, bus, place});
  structure.resize(static_cast<std::size_t>(length));
  append(structure, std::string_view("Slot\0\0", 6));
  return structure;
}

TEST(FirmwareSlots, KnowWhatSitsInThem) {
  auto table = bytes({0, 5, 0, 0, 1});
  append(table, std::string_view("Vendor\0Version\0\0", 16));
  for (const auto& part : {slot(0xA5, 3, 4, 0), slot(0x06, 0x101, 2, 0x1F << 3), slot(0x12, 9, 5, 8),
                           slot(0xB0, 8, 0xFF, 0xFF), bytes({127, 4, 0, 0, 0, 0}), slot(0xA5, 77, 7, 0)}) {
    table.insert(table.end(), part.begin(), part.end());
  }
  const auto slots = decodeFirmwareSlots(table);
  ASSERT_EQ(slots.size(), 3u) << "neither the empty one nor what follows the end";
  EXPECT_EQ(slots[0].number, 3);
  EXPECT_EQ(slots[0].kind, SlotKind::PciExpress);
  EXPECT_EQ(slots[0].address, (PciAddress{0, 4, 0, 0}));
  EXPECT_EQ(slots[1].number, 0x101);
  EXPECT_EQ(slots[1].kind, SlotKind::Pci);
  EXPECT_EQ(slots[1].address.device, 0x1F);
  EXPECT_EQ(slots[2].kind, SlotKind::PciX);
  EXPECT_EQ(slots[2].address.device, 1);
}

TEST(FirmwareSlots, OldShortAndBrokenTables) {
  EXPECT_TRUE(decodeFirmwareSlots(slot(0xA5, 3, 4, 0, 0x0D)).empty()) << "does not say what sits in it";
  EXPECT_TRUE(decodeFirmwareSlots(bytes({9, 3, 0, 0})).empty());
  EXPECT_TRUE(decodeFirmwareSlots(bytes({9, 200, 0, 0})).empty());
  EXPECT_TRUE(decodeFirmwareSlots({}).empty());
  const auto whole = slot(0xA5, 3, 4, 0);
  for (std::size_t size = 0; size < 0x11; ++size)
    EXPECT_TRUE(decodeFirmwareSlots(Bytes(whole).first(size)).empty());
}

}  // namespace
}  // namespace ZEB::ethernet::test
