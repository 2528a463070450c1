#include "AdapterFixture.h"
#include "classes/team/ZEB_EthernetPortControllerFirmwareIdentity.h"
#include "classes/team/ZEB_EthernetPortControllerSoftwareIdentity.h"

namespace ZEB::test {
namespace {

// The driver.

using DriverTest = AdapterTest<ZEB_EthernetPortControllerSoftwareIdentity>;

Table driver() {
  return {
      {"Caption", "string \"Ethernet Port Controller Driver\""},
      {"ElementName", "string \"Ethernet Port Controller Driver\""},
      {"ClassificationDescriptions", "string[] {\"Ethernet Port Controller Driver\"}"},
      {"Classifications", "uint16[] {2}"},
      {"Name", "string \"tg3\""},
      {"Description", "string \"Model M Device Driver\""},
      {"InstanceID", "string \"JXV:ZEB_EthernetPortControllerSoftwareIdentity:5\""},
      {"Manufacturer", "string \"Maker\""},
      {"VersionString", "string \"3.137\""},
      {"IdentityInfoType", "string[] {\"CIM:SoftwareFamily\", \"JXV:SoftwareCategory\"}"},
      {"IdentityInfoValue", "string[] {\"JXV:Model M\", \"Network\"}"},
  };
}

TEST_F(DriverTest, ShowsEverythingThatIsKnown) {
  EXPECT_EQ(read(everyAdapterFacts()), driver());
}

TEST_F(DriverTest, IsKeyedByItsIdAlone) {
  EXPECT_EQ(keysOf(makeUnknown().makeObjectPath()),
            (Table{{"InstanceID", "string \"JXV:ZEB_EthernetPortControllerSoftwareIdentity:5\""}}));
}

TEST_F(DriverTest, OfAnEmptyModelIsOfAnUnknownFamily) {
  auto facts = everyAdapterFacts();
  forgetHardware(facts, [](HardwareFacts& hardware) { hardware.productName = ""; });
  EXPECT_EQ(read(facts),
            edited(driver(), {{"Description", "string \" Device Driver\""},
                              {"IdentityInfoValue", "string[] {\"JXV:Unknown\", \"Network\"}"}}));
}

class DriverRow : public DriverTest, public testing::WithParamInterface<UnknownRow<AdapterFacts>> {};
TEST_P(DriverRow, IsLeftOut) {
  EXPECT_EQ(readWithout(GetParam()), edited(driver(), GetParam().changes));
}
INSTANTIATE_TEST_SUITE_P(
    Rows, DriverRow,
    testing::Values(
        UnknownRow<AdapterFacts>{"Name", forgetDriverText<&ethernet::DriverFacts::name>, {{"Name", ""}}},
        UnknownRow<AdapterFacts>{
            "Model",
            forgetModel,
            {{"Description", ""}, {"IdentityInfoValue", "string[] {\"JXV:Unknown\", \"Network\"}"}}},
        UnknownRow<AdapterFacts>{
            "Manufacturer", forgetText<&HardwareFacts::vendorName>, {{"Manufacturer", ""}}},
        UnknownRow<AdapterFacts>{
            "Version", forgetDriverText<&ethernet::DriverFacts::version>, {{"VersionString", ""}}}),
    kByName);

// The firmware.

using FirmwareTest = AdapterTest<ZEB_EthernetPortControllerFirmwareIdentity>;

Table firmware() {
  return {
      {"Caption", "string \"Ethernet Port Controller Firmware\""},
      {"ClassificationDescriptions", "string[] {\"Ethernet Port Controller Firmware\"}"},
      {"Classifications", "uint16[] {10}"},
      {"Name", "string \"Ethernet Port Controller Firmware details for Model M\""},
      {"Description", "string \"Ethernet Port Controller Firmware details for Model M\""},
      {"InstanceID", "string \"JXV:ZEB_EthernetPortControllerFirmwareIdentity:5\""},
      {"ElementName", "string \"14e4:1657\""},
      {"IdentityInfoType", "string[] {\"CIM:SoftwareFamily\", \"JXV:SoftwareCategory\"}"},
      {"IdentityInfoValue", "string[] {\"JXV:Model M\", \"NIC\"}"},
      {"Manufacturer", "string \"Maker\""},
      {"VersionString", "string \"5719-v1.46\""},
  };
}

TEST_F(FirmwareTest, ShowsEverythingThatIsKnown) {
  EXPECT_EQ(read(everyAdapterFacts()), firmware());
}

TEST_F(FirmwareTest, IsKeyedByItsIdAlone) {
  EXPECT_EQ(keysOf(makeUnknown().makeObjectPath()),
            (Table{{"InstanceID", "string \"JXV:ZEB_EthernetPortControllerFirmwareIdentity:5\""}}));
}

class FirmwareRow : public FirmwareTest, public testing::WithParamInterface<UnknownRow<AdapterFacts>> {};
TEST_P(FirmwareRow, StandsInOrIsLeftOut) {
  EXPECT_EQ(readWithout(GetParam()), edited(firmware(), GetParam().changes));
}
INSTANTIATE_TEST_SUITE_P(
    Rows, FirmwareRow,
    testing::Values(
        UnknownRow<AdapterFacts>{"Model",
                                 forgetModel,
                                 {{"Name", ""},
                                  {"Description", ""},
                                  {"IdentityInfoValue", "string[] {\"JXV:Unknown\", \"NIC\"}"}}},
        UnknownRow<AdapterFacts>{
            "VendorId",
            [](AdapterFacts& f) { forgetHardware(f, [](HardwareFacts& h) { h.vendorId.reset(); }); },
            {{"ElementName", "string \"0:1657\""}}},
        UnknownRow<AdapterFacts>{
            "DeviceId",
            [](AdapterFacts& f) { forgetHardware(f, [](HardwareFacts& h) { h.deviceId.reset(); }); },
            {{"ElementName", "string \"14e4:0\""}}},
        UnknownRow<AdapterFacts>{
            "Manufacturer", forgetText<&HardwareFacts::vendorName>, {{"Manufacturer", ""}}},
        UnknownRow<AdapterFacts>{
            "Version", forgetDriverText<&ethernet::DriverFacts::firmwareVersion>, {{"VersionString", ""}}}),
    kByName);

}  // namespace
}  // namespace ZEB::test
