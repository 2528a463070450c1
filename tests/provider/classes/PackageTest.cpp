#include "AdapterFixture.h"
#include "DataLibrary.h"
#include "classes/team/ZEB_EthernetPortControllerPhysicalPackage.h"

namespace ZEB::test {
namespace {

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

}  // namespace
}  // namespace ZEB::test
