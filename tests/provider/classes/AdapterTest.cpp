#include "ClassTest.h"
#include "DataLibrary.h"
#include "classes/team/ZEB_EthernetControllerLocation.h"
#include "classes/team/ZEB_EthernetPortController.h"
#include "classes/team/ZEB_EthernetPortControllerFirmwareIdentity.h"
#include "classes/team/ZEB_EthernetPortControllerPhysicalPackage.h"
#include "classes/team/ZEB_EthernetPortControllerSoftwareIdentity.h"

namespace ZEB::test {
namespace {

using ethernet::AdapterFacts;
using ethernet::HardwareFacts;
using ethernet::SlotKind;

/// Port 1 has a product of its own, so that first and last port can be told apart.
std::vector<EthernetPort> twoPorts() {
  auto first = everyPortFacts();
  forgetHardware(first.link, [](HardwareFacts& hardware) { hardware.deviceName = "First Port"; });
  first.link.type = 1;
  auto second = everyPortFacts();
  forgetHardware(second.link, [](HardwareFacts& hardware) { hardware.deviceName = "Last Port"; });
  second.link.type = 32;
  return {portOf(first), portOf(second)};
}

template <std::optional<std::string> HardwareFacts::*text>
void forgetText(AdapterFacts& facts) {
  forgetHardware(facts, [](HardwareFacts& hardware) { (hardware.*text).reset(); });
}
template <std::optional<std::string> ethernet::DriverFacts::*text>
void forgetDriverText(AdapterFacts& facts) {
  auto driver = *facts.driver;
  (driver.*text).reset();
  facts.driver = std::make_shared<const ethernet::DriverFacts>(driver);
}
void forgetModel(AdapterFacts& facts) {
  forgetText<&HardwareFacts::productName>(facts);
  forgetText<&HardwareFacts::deviceName>(facts);
}
void forgetRevision(AdapterFacts& facts) {
  forgetHardware(facts, [](HardwareFacts& hardware) { hardware.revision.reset(); });
}
void forgetLocation(AdapterFacts& facts) {
  forgetHardware(facts, [](HardwareFacts& hardware) { hardware.slot.reset(); });
}
template <SlotKind kind>
void putIntoSlot(AdapterFacts& facts) {
  forgetHardware(facts, [](HardwareFacts& hardware) { hardware.slotKind = kind; });
}
void putOnBoard(AdapterFacts& facts) {
  forgetHardware(facts, [](HardwareFacts& hardware) {
    hardware.slot.reset();
    hardware.onboardIndex = 2;
  });
}

/// A place, but neither a slot nor on the board.
constexpr physloc_t kNoKnownKind{.bytes = {0x07, 0x01}};

/// Instances of one class for adapter 5.
template <class Class>
class AdapterTest : public ClassTest {
 protected:
  Class make(AdapterFacts facts, std::vector<EthernetPort> ports = twoPorts()) {
    return {recorded.logger, nameSpace, 5, adapterOf(std::move(facts), std::move(ports))};
  }
  Class makeUnknown() { return {recorded.logger, nameSpace, 5, EthernetAdapterDataObject()}; }
  Table read(AdapterFacts facts) { return propertiesOf(make(std::move(facts)).makeInstance()); }
  Table readWithout(const UnknownRow<AdapterFacts>& row) {
    AdapterFacts facts = everyAdapterFacts();
    row.forget(facts);
    return read(facts);
  }
};

// The controller.

using ControllerTest = AdapterTest<ZEB_EthernetPortController>;

Table controller() {
  return {
      {"CreationClassName", "string \"ZEB_EthernetPortController\""},
      {"SystemName", "string \"" + hostName() + "\""},
      {"SystemCreationClassName", "string \"ZEB_ComputerSystem\""},
      {"DeviceID", "string \"JXV:ZEB_EthernetPortController:5\""},
      {"Name", "string \"Ethernet Controller 5\""},
      {"Caption", "string \"Ethernet Controller 5\""},
      {"Description", "string \"Ethernet Controller 5\""},
      {"ElementName", "string \"Ethernet Controller 5\""},
      {"ControllerType", "uint16 2"},
      {"ControllerVersion", "uint16 3"},
      {"HealthState", "uint16 5"},
      {"StatusDescriptions", "string[] {\"Ethernet Controller Status: OK\"}"},
      {"OperationalStatus", "uint16[] {2}"},
  };
}

TEST_F(ControllerTest, ShowsEverythingThatIsKnown) {
  EXPECT_EQ(read(everyAdapterFacts()), controller());
}

TEST_F(ControllerTest, HasTheKeysOfADevice) {
  EXPECT_EQ(keysOf(makeUnknown().makeObjectPath()),
            (Table{{"CreationClassName", "string \"ZEB_EthernetPortController\""},
                   {"SystemCreationClassName", "string \"ZEB_ComputerSystem\""},
                   {"SystemName", "string \"" + hostName() + "\""},
                   {"DeviceID", "string \"JXV:ZEB_EthernetPortController:5\""}}));
}

TEST_F(ControllerTest, TakesItsTypeFromTheFirstPort) {
  auto first = everyPortFacts();
  first.link.type.reset();
  const auto last = everyPortFacts();
  EXPECT_EQ(propertiesOf(make(everyAdapterFacts(), {portOf(first), portOf(last)}).makeInstance()),
            edited(controller(), {{"ControllerType", "uint16 0"}}));
}

TEST_F(ControllerTest, WithoutPortsHasNoType) {
  EXPECT_EQ(propertiesOf(make(everyAdapterFacts(), {}).makeInstance()),
            edited(controller(), {{"ControllerType", "uint16 0"}}));
}

TEST_F(ControllerTest, InErrorStillSaysThatItIsHealthy) {
  auto facts = everyAdapterFacts();
  facts.status = operationalStatus::Error;
  EXPECT_EQ(read(facts), edited(controller(), {{"OperationalStatus", "uint16[] {6}"}}));
}

TEST_F(ControllerTest, WhoseVersionIsNoNumberOfSixteenBitsHasNone) {
  DataLibrary library;
  for (const char* text : {"", "B1", "1B", "65536", "-1"}) {
    library.hardwareVersion = text;
    EXPECT_EQ(read(everyAdapterFacts()), edited(controller(), {{"ControllerVersion", ""}})) << text;
  }
  library.hardwareVersion = "65535";
  EXPECT_EQ(read(everyAdapterFacts()), edited(controller(), {{"ControllerVersion", "uint16 65535"}}));
}

TEST_F(ControllerTest, OfWhichNothingIsKnownShowsEveryStandIn) {
  EXPECT_EQ(propertiesOf(makeUnknown().makeInstance()),
            edited(controller(), {{"ControllerType", "uint16 0"},
                                  {"ControllerVersion", ""},
                                  {"OperationalStatus", "uint16[] {0}"}}));
}

class ControllerRow : public ControllerTest, public testing::WithParamInterface<UnknownRow<AdapterFacts>> {};
TEST_P(ControllerRow, StandsInOrIsLeftOut) {
  EXPECT_EQ(readWithout(GetParam()), edited(controller(), GetParam().changes));
}
INSTANTIATE_TEST_SUITE_P(
    Rows, ControllerRow,
    testing::Values(UnknownRow<AdapterFacts>{"Version", forgetRevision, {{"ControllerVersion", ""}}},
                    UnknownRow<AdapterFacts>{"Status",
                                             [](AdapterFacts& f) { f.status.reset(); },
                                             {{"OperationalStatus", "uint16[] {0}"}}}),
    kByName);

// The package.

using PackageTest = AdapterTest<ZEB_EthernetPortControllerPhysicalPackage>;

Table package() {
  return {
      {"CreationClassName", "string \"ZEB_EthernetPortControllerPhysicalPackage\""},
      {"ElementName", "string \"Ethernet Controller Package\""},
      {"Tag", "string \"JXV:ZEB_EthernetPortControllerPhysicalPackage:5\""},
      {"Name", "string \"Ethernet Controller Package\""},
      {"Manufacturer", "string \"Maker\""},
      {"Version", "string \"3\""},
      {"Caption", "string \"Controller (2-port): Model M\""},
      {"Description", "string \"Controller (2-port): Model M\""},
      {"HealthState", "uint16 5"},
      {"OperationalStatus", "uint16[] {2}"},
      {"StatusDescriptions", "string[] {\"Ethernet Controller Package Status: OK\"}"},
      {"CanBeFRUed", "boolean true"},
      {"PackageType", "uint16 9"},
  };
}

Table embeddedPackage() {
  Table table = edited(package(), {{"CanBeFRUed", "boolean false"}, {"PackageType", "uint16 1"}});
  table.emplace_back("OtherPackageType", "string \"Embedded Controller\"");
  return table;
}

TEST_F(PackageTest, ShowsEverythingThatIsKnown) {
  EXPECT_EQ(read(everyAdapterFacts()), package());
}

TEST_F(PackageTest, IsKeyedByItsTag) {
  EXPECT_EQ(keysOf(makeUnknown().makeObjectPath()),
            (Table{{"CreationClassName", "string \"ZEB_EthernetPortControllerPhysicalPackage\""},
                   {"Tag", "string \"JXV:ZEB_EthernetPortControllerPhysicalPackage:5\""}}));
}

TEST_F(PackageTest, CountsThePortsOfTheListAndNotTheReportedOnes) {
  auto facts = everyAdapterFacts();
  facts.portCount = 4;
  EXPECT_EQ(read(facts), package());
}

TEST_F(PackageTest, InAnyPlaceButAPciExpressSlotIsEmbedded) {
  for (auto* put : {putIntoSlot<SlotKind::Pci>, putIntoSlot<SlotKind::PciX>, putOnBoard}) {
    auto facts = everyAdapterFacts();
    put(facts);
    EXPECT_EQ(read(facts), embeddedPackage());
  }
}

TEST_F(PackageTest, InAPlaceOfAnyOtherKindIsEmbeddedToo) {
  DataLibrary library;
  library.location = kNoKnownKind;
  EXPECT_EQ(read(everyAdapterFacts()), embeddedPackage());
}

TEST_F(PackageTest, ShowsAVersionThatIsNoNumber) {
  DataLibrary library;
  library.hardwareVersion = "B1";
  EXPECT_EQ(read(everyAdapterFacts()), edited(package(), {{"Version", "string \"B1\""}}));
}

class PackageRow : public PackageTest, public testing::WithParamInterface<UnknownRow<AdapterFacts>> {};
TEST_P(PackageRow, StandsInOrIsLeftOut) {
  EXPECT_EQ(readWithout(GetParam()), edited(package(), GetParam().changes));
}
INSTANTIATE_TEST_SUITE_P(
    Rows, PackageRow,
    testing::Values(UnknownRow<AdapterFacts>{"Manufacturer",
                                             forgetText<&HardwareFacts::vendorName>,
                                             {{"Manufacturer", "string \"\""}}},
                    UnknownRow<AdapterFacts>{"Version", forgetRevision, {{"Version", ""}}},
                    UnknownRow<AdapterFacts>{
                        "Model", forgetModel, {{"Caption", "string \"\""}, {"Description", "string \"\""}}},
                    UnknownRow<AdapterFacts>{"Location",
                                             forgetLocation,
                                             {{"CanBeFRUed", "boolean false"}, {"PackageType", "uint16 0"}}}),
    kByName);

// The location.

using LocationTest = AdapterTest<ZEB_EthernetControllerLocation>;

Table location() {
  return {
      {"ElementLocationTagDesc", "uint16 23"},
      {"Caption", "string \"Ethernet Controller in PCI Express slot 7\""},
      {"Description", "string \"Ethernet Controller in PCI Express slot 7\""},
      {"ElementLocationTag", "string \"PCI Express slot 7\""},
      {"ElementName", "string \"2 port controller: Last Port\""},
      {"LocationInfoDesc", "uint16[] {2, 23}"},
      {"LocationInformation", "string[] {\"System chassis\", \"PCI Express slot 7\"}"},
      {"Name", "string \"PCISLOT\""},
      {"PhysicalPosition", "string \"0507\""},
  };
}

TEST_F(LocationTest, ShowsEverythingThatIsKnown) {
  EXPECT_EQ(read(everyAdapterFacts()), location());
}

TEST_F(LocationTest, IsKeyedByTagAndPosition) {
  EXPECT_EQ(keysOf(make(everyAdapterFacts()).makeObjectPath()),
            (Table{{"Name", "string \"PCISLOT\""}, {"PhysicalPosition", "string \"0507\""}}));
}

TEST_F(LocationTest, OfAPciOrPciXSlotIsASlotToo) {
  auto facts = everyAdapterFacts();
  putIntoSlot<SlotKind::PciX>(facts);
  EXPECT_EQ(read(facts),
            edited(location(), {{"Caption", "string \"Ethernet Controller in PCI-X slot 7\""},
                                {"Description", "string \"Ethernet Controller in PCI-X slot 7\""},
                                {"ElementLocationTag", "string \"PCI-X slot 7\""},
                                {"LocationInformation", "string[] {\"System chassis\", \"PCI-X slot 7\"}"},
                                {"PhysicalPosition", "string \"0407\""}}));
  putIntoSlot<SlotKind::Pci>(facts);
  EXPECT_EQ(read(facts),
            edited(location(), {{"Caption", "string \"Ethernet Controller in PCI slot 7\""},
                                {"Description", "string \"Ethernet Controller in PCI slot 7\""},
                                {"ElementLocationTag", "string \"PCI slot 7\""},
                                {"LocationInformation", "string[] {\"System chassis\", \"PCI slot 7\"}"},
                                {"PhysicalPosition", "string \"0307\""}}));
}

TEST_F(LocationTest, OnTheBoardIsEmbedded) {
  auto facts = everyAdapterFacts();
  putOnBoard(facts);
  EXPECT_EQ(
      read(facts),
      edited(location(), {{"ElementLocationTagDesc", "uint16 18"},
                          {"Caption", "string \"Embedded device 2\""},
                          {"Description", "string \"Embedded device 2\""},
                          {"ElementLocationTag", "string \"Embedded device 2\""},
                          {"LocationInfoDesc", "uint16[] {2, 18}"},
                          {"LocationInformation", "string[] {\"System chassis\", \"Embedded device 2\"}"},
                          {"Name", "string \"EMBEDDED ETHERNET\""},
                          {"PhysicalPosition", "string \"0802\""}}));
}

TEST_F(LocationTest, OnTheBoardIsCalledAsItIsLabelled) {
  auto facts = everyAdapterFacts();
  putOnBoard(facts);
  forgetHardware(facts, [](HardwareFacts& hardware) { hardware.onboardLabel = "Onboard LAN 2"; });
  const Table labelled = propertiesOf(make(facts).makeInstance());
  EXPECT_EQ(edited(labelled, {{"ElementLocationTagDesc", ""},
                              {"ElementName", ""},
                              {"LocationInfoDesc", ""},
                              {"Name", ""},
                              {"PhysicalPosition", ""}}),
            (Table{{"Caption", "string \"Onboard LAN 2\""},
                   {"Description", "string \"Onboard LAN 2\""},
                   {"ElementLocationTag", "string \"Onboard LAN 2\""},
                   {"LocationInformation", "string[] {\"System chassis\", \"Onboard LAN 2\"}"}}));
  EXPECT_EQ(keysOf(make(facts).makeObjectPath()),
            (Table{{"Name", "string \"EMBEDDED ETHERNET\""}, {"PhysicalPosition", "string \"0802\""}}));
}

TEST_F(LocationTest, ThatIsNotKnownIsNumberedAfterTheAdapter) {
  auto facts = everyAdapterFacts();
  forgetLocation(facts);
  EXPECT_EQ(read(facts), (Table{{"Caption", "string \"\""},
                                {"Description", "string \"\""},
                                {"ElementLocationTag", "string \"\""},
                                {"ElementName", "string \"2 port controller: Last Port\""}}));
  EXPECT_EQ(keysOf(make(facts).makeObjectPath()),
            (Table{{"Name", "string \"UNKNOWN-5\""}, {"PhysicalPosition", "string \"unknown-5\""}}));
}

TEST_F(LocationTest, OfAnyOtherKindIsAnUnknownOne) {
  DataLibrary library;
  library.location = kNoKnownKind;
  EXPECT_EQ(read(everyAdapterFacts()), (Table{{"Caption", "string \"\""},
                                              {"Description", "string \"\""},
                                              {"ElementLocationTag", "string \"\""},
                                              {"ElementName", "string \"2 port controller: Last Port\""}}));
  EXPECT_EQ(
      keysOf(make(everyAdapterFacts()).makeObjectPath()),
      (Table{{"Name", "string \"UNKNOWN PHYSICAL LOCATION\""}, {"PhysicalPosition", "string \"0507\""}}));
}

TEST_F(LocationTest, IsNamedAfterThePortThatThePortCountNames) {
  auto facts = everyAdapterFacts();
  facts.portCount = 1;
  EXPECT_EQ(read(facts), edited(location(), {{"ElementName", "string \"1 port controller: First Port\""}}));
}

TEST_F(LocationTest, WithAPortCountThatDiffersFromTheListIsNamedAfterNoPort) {
  for (const std::uint32_t count : {0U, 3U}) {
    auto facts = everyAdapterFacts();
    facts.portCount = count;
    const std::string name = "string \"" + std::to_string(count) + " port controller: \"";
    EXPECT_EQ(read(facts), edited(location(), {{"ElementName", name}}));
  }
}

TEST_F(LocationTest, WithoutPortsIsNamedAfterNoPort) {
  EXPECT_EQ(propertiesOf(make(everyAdapterFacts(), {}).makeInstance()),
            edited(location(), {{"ElementName", "string \"2 port controller: \""}}));
}

TEST_F(LocationTest, WithoutAPortCountIsNamedAfterTheFirstPort) {
  ZEB_EthernetControllerLocation unknown(
      recorded.logger, nameSpace, 5,
      EthernetAdapterDataObject(ethernet::FactsHandle<AdapterFacts>(), twoPorts()));
  EXPECT_EQ(textOf(unknown.makeInstance().getProperty("ElementName")), "string \"First Port\"");
}

TEST_F(LocationTest, WithPartsThatDoNotMatchIsAnError) {
  DataLibrary library;
  library.unevenLocationInfo = true;
  auto made = make(everyAdapterFacts());
  try {
    made.makeInstance();
    FAIL() << "made an instance";
  } catch (const CmpiCpp::CmpiStatus& status) {
    EXPECT_EQ(status.rc(), 100);
    EXPECT_STREQ(status.what(), "lengths do not match for indexed arrays LocationInfo and LocationInfoDesc.");
  }
  EXPECT_TRUE(recorded.sink->has(
      LogLevel::Error, "lengths do not match for indexed arrays locationInfo and LocationInfoDesc."));
}

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
