#include <gmock/gmock.h>

#include "common/Physloc.h"

namespace ZEB {
namespace {

struct LocationRow {
  physloc_t location;
  std::string encoded;
  std::string text;
  std::vector<std::string> parts;
  std::vector<std::uint16_t> codes;
};

physloc_t raw(std::uint8_t first, std::uint8_t second = 0, std::uint8_t last = 0) {
  physloc_t location;
  location.bytes[0] = first;
  location.bytes[1] = second;
  location.bytes[7] = last;
  return location;
}

const std::vector<LocationRow>& rows() {
  static const std::vector<LocationRow> kRows = {
      {BMC_physloc_NULL, "", "", {}, {}},
      {makeSlotPhysloc(PhyslocType::PciSlot, 1),
       "0301",
       "PCI slot 1",
       {"System chassis", "PCI slot 1"},
       {2, 23}},
      {makeSlotPhysloc(PhyslocType::PciXSlot, 2),
       "0402",
       "PCI-X slot 2",
       {"System chassis", "PCI-X slot 2"},
       {2, 23}},
      {makeSlotPhysloc(PhyslocType::PciExpressSlot, 300),
       "052c01",
       "PCI Express slot 300",
       {"System chassis", "PCI Express slot 300"},
       {2, 23}},
      {makeEmbeddedPhysloc(1), "0801", "Embedded device 1", {"System chassis", "Embedded device 1"}, {2, 18}},
      {makeEmbeddedPhysloc(0), "08", "Embedded device 0", {"System chassis", "Embedded device 0"}, {2, 18}},
      {makeEmbeddedPhysloc(2, "Onboard LAN 1"),
       "0802",
       "Onboard LAN 1",
       {"System chassis", "Onboard LAN 1"},
       {2, 18}},
      {withPart(makeSlotPhysloc(PhyslocType::PciSlot, 1), 0x0102),
       "0301000201",
       "PCI slot 1",
       {"System chassis", "PCI slot 1"},
       {2, 23}},
      {withPart(makeEmbeddedPhysloc(1), 0),
       "0801",
       "Embedded device 1",
       {"System chassis", "Embedded device 1"},
       {2, 18}},
      // Only the low four bits of the first byte are the type.
      {raw(0xF5, 3), "f503", "PCI Express slot 3", {"System chassis", "PCI Express slot 3"}, {2, 23}},
      {raw(0x01, 3), "0103", "", {}, {}},
      {raw(0x0F), "0f", "", {}, {}},
      {raw(0x05, 0, 1),
       "0500000000000001",
       "PCI Express slot 0",
       {"System chassis", "PCI Express slot 0"},
       {2, 23}},
  };
  return kRows;
}

TEST(PhyslocTest, encodedForm) {
  for (const LocationRow& row : rows()) {
    char text[32] = "before";
    EXPECT_EQ(BMC_physloc_to_str(row.location, text, sizeof text), text);
    EXPECT_EQ(std::string(text), row.encoded);
  }
}

TEST(PhyslocTest, theEncodedFormFitsAnyBuffer) {
  const physloc_t location = makeSlotPhysloc(PhyslocType::PciExpressSlot, 300);
  for (std::size_t size = 0; size <= 8; ++size) {
    char text[10] = "#########";
    BMC_physloc_to_str(location, text, size);
    EXPECT_EQ(text[size], '#') << "nothing behind the buffer is touched";
    if (size == 0) continue;
    EXPECT_EQ(std::string(text), std::string("052c01").substr(0, (size - 1) / 2 * 2));
  }
}

TEST(PhyslocTest, hardwareLocation) {
  for (const LocationRow& row : rows()) EXPECT_EQ(ZEBPhysloc::physlocToHWLocation(row.location), row.text);
}

TEST(PhyslocTest, locationVectors) {
  for (const LocationRow& row : rows()) {
    std::vector<std::string> texts;
    std::vector<std::uint16_t> codes;
    EXPECT_EQ(ZEBPhysloc::createLocationInfoVectors(row.location, texts, codes) == 0, !row.parts.empty());
    EXPECT_EQ(texts, row.parts);
    EXPECT_EQ(codes, row.codes);
  }
}

TEST(PhyslocTest, ofALongLabelTheBeginningIsKept) {
  const std::string label(100, 'x');
  EXPECT_EQ(ZEBPhysloc::physlocToHWLocation(makeEmbeddedPhysloc(1, label)), label.substr(0, 39));
}

TEST(PhyslocTest, numberAndType) {
  const physloc_t location = makeSlotPhysloc(PhyslocType::PciSlot, 0xFFFE);
  EXPECT_EQ(location.type(), PhyslocType::PciSlot);
  EXPECT_EQ(location.number(), 0xFFFE);
}

}  // namespace
}  // namespace ZEB
