#include "AdapterFixture.h"
#include "DataLibrary.h"
#include "classes/team/ZEB_EthernetPortController.h"

namespace ZEB::test {
namespace {

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

}  // namespace
}  // namespace ZEB::test
