#include "AdapterFixture.h"
#include "DataLibrary.h"
#include "classes/team/ZEB_EthernetControllerLocation.h"

namespace ZEB::test {
namespace {

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

}  // namespace
}  // namespace ZEB::test
