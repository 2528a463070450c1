#include "ClassTest.h"
#include "DataLibrary.h"
#include "MemoryHost.h"
#include "classes/port/ZEB_EthernetPort.h"

namespace ZEB::test {
namespace {

using ethernet::PortFacts;

const physloc_t kLocation = makeSlotPhysloc(PhyslocType::PciExpressSlot, 7);

class PortTest : public ClassTest {
 protected:
  /// Port 3 on controller 5.
  ZEB_EthernetPort make(const EthernetPort& record) {
    return {recorded.logger, nameSpace, 3, 5, kLocation, "PN-1", record};
  }
  Table read(const EthernetPort& record) { return propertiesOf(make(record).makeInstance()); }
};

Table everythingOfPort() {
  return {
      {"CreationClassName", "string \"ZEB_EthernetPort\""},
      {"SystemName", "string \"" + hostName() + "\""},
      {"SystemCreationClassName", "string \"ZEB_ComputerSystem\""},
      {"DeviceID", "string \"JXV:ZEB_EthernetPort:3\""},
      {"Caption", "string \"Gigabit Adapter\""},
      {"ElementName", "string \"Gigabit Adapter\""},
      {"TimeOfLastStateChange", "datetime 00000000000000.000000:000"},
      {"PermanentAddress", "string \"001a2b3c4d5e\""},
      {"Name", "string \"001a2b3c4d5e\""},
      {"PortType", "uint16 62"},
      {"LinkTechnology", "uint16 2"},
      {"PortNumber", "uint16 2"},
      {"VirtualPortNumber", "uint16 4"},
      {"Description", "string \"Ethernet port 2 on ethernet controller 5\""},
      {"MaxSpeed", "uint64 1000000000"},
      {"Speed", "uint64 100000000"},
      {"SupportedMaximumTransmissionUnit", "uint64 9000"},
      {"ActiveMaximumTransmissionUnit", "uint64 9000"},
      {"FullDuplex", "boolean true"},
      {"AutoSense", "boolean true"},
      {"RequestedState", "uint16 12"},
      {"EnabledState", "uint16 5"},
      {"Capabilities", "uint16[] {3, 8}"},
      {"CapabilityDescriptions", "string[] {\"Wake On LAN\", \"Unknown\"}"},
      {"EnabledCapabilities", "uint16[] {3}"},
      {"NetworkAddresses", "string[] {\"001a2b3c4d5e\"}"},
      {"HealthState", "uint16 5"},
      {"OperationalStatus", "uint16[] {2}"},
      {"StatusDescriptions", "string[] {\"OK\"}"},
  };
}

TEST_F(PortTest, ShowsEverythingThatIsKnown) {
  EXPECT_EQ(read(portOf(everyPortFacts())), everythingOfPort());
}

TEST_F(PortTest, HasTheKeysOfADevice) {
  const auto path = make(portOf(everyPortFacts())).makeObjectPath();
  EXPECT_EQ(path.className().str(), "ZEB_EthernetPort");
  EXPECT_EQ(path.nameSpace(), "root/jxv");
  EXPECT_EQ(path.host(), hostName());
  EXPECT_EQ(keysOf(path), (Table{{"CreationClassName", "string \"ZEB_EthernetPort\""},
                                 {"SystemCreationClassName", "string \"ZEB_ComputerSystem\""},
                                 {"SystemName", "string \"" + hostName() + "\""},
                                 {"DeviceID", "string \"JXV:ZEB_EthernetPort:3\""}}));
}

class PortRow : public PortTest, public testing::WithParamInterface<UnknownRow<PortFacts>> {};

TEST_P(PortRow, StandsInOrIsLeftOut) {
  PortFacts facts = everyPortFacts();
  GetParam().forget(facts);
  EXPECT_EQ(read(portOf(facts)), edited(everythingOfPort(), GetParam().changes));
}

void forgetVirtualFunction(PortFacts& facts) {
  forgetHardware(facts.link, [](auto& hardware) { hardware.virtualFunction.reset(); });
}

INSTANTIATE_TEST_SUITE_P(
    Rows, PortRow,
    testing::Values(
        UnknownRow<PortFacts>{
            "Caption",
            forgetProduct,
            {{"Caption", "string \"Ethernet Port\""}, {"ElementName", "string \"Ethernet Port\""}}},
        UnknownRow<PortFacts>{"PermanentAddress",
                              [](PortFacts& f) { f.link.permanentAddress.reset(); },
                              {{"PermanentAddress", "string \"\""}, {"Name", ""}}},
        // The fastest mode is known exactly when there are modes.
        UnknownRow<PortFacts>{"PortTypeAndMaxSpeed",
                              [](PortFacts& f) { f.link.ethtool.supported.reset(); },
                              {{"PortType", "uint16 0"}, {"MaxSpeed", "uint64 0"}}},
        UnknownRow<PortFacts>{
            "LinkTechnology", [](PortFacts& f) { f.link.type.reset(); }, {{"LinkTechnology", "uint16 0"}}},
        UnknownRow<PortFacts>{"PortNumber",
                              [](PortFacts& f) { f.number.reset(); },
                              {{"PortNumber", "uint16 0"},
                               {"Description", "string \"Ethernet port on ethernet controller 5\""}}},
        UnknownRow<PortFacts>{"VirtualPortNumber", forgetVirtualFunction, {{"VirtualPortNumber", ""}}},
        UnknownRow<PortFacts>{
            "Speed", [](PortFacts& f) { f.link.ethtool.speed.reset(); }, {{"Speed", "uint64 0"}}},
        UnknownRow<PortFacts>{"MaxFrameSize",
                              [](PortFacts& f) { f.link.mtu.reset(); },
                              {{"SupportedMaximumTransmissionUnit", "uint64 0"},
                               {"ActiveMaximumTransmissionUnit", "uint64 0"}}},
        UnknownRow<PortFacts>{
            "FullDuplex", [](PortFacts& f) { f.link.ethtool.fullDuplex.reset(); }, {{"FullDuplex", ""}}},
        UnknownRow<PortFacts>{
            "AutoSense", [](PortFacts& f) { f.link.ethtool.autonegotiation.reset(); }, {{"AutoSense", ""}}},
        UnknownRow<PortFacts>{
            "Capabilities",
            [](PortFacts& f) {
              f.link.ethtool.wakeOnLanSupported.reset();
              f.link.ethtool.eeeSupported.reset();
            },
            {{"Capabilities", "uint16[] {0}"}, {"CapabilityDescriptions", "string[] {\"Unknown\"}"}}},
        UnknownRow<PortFacts>{"EnabledCapabilities",
                              [](PortFacts& f) { f.link.ethtool.wakeOnLanEnabled.reset(); },
                              {{"EnabledCapabilities", "uint16[] {0}"}}},
        UnknownRow<PortFacts>{"NetworkAddresses",
                              [](PortFacts& f) { f.link.address.reset(); },
                              {{"NetworkAddresses", "string[] {\"\"}"}}},
        UnknownRow<PortFacts>{"Status",
                              forgetStatus<PortFacts>,
                              {{"HealthState", "uint16 0"},
                               {"OperationalStatus", "uint16[] {0}"},
                               {"StatusDescriptions", "string[] {\"Unknown\"}"}}}),
    kByName);

TEST_F(PortTest, OfWhichNothingIsKnownShowsEveryStandIn) {
  EXPECT_EQ(read(EthernetPort()),
            edited(everythingOfPort(), {{"Caption", "string \"Ethernet Port\""},
                                        {"ElementName", "string \"Ethernet Port\""},
                                        {"PermanentAddress", "string \"\""},
                                        {"Name", ""},
                                        {"PortType", "uint16 0"},
                                        {"LinkTechnology", "uint16 0"},
                                        {"PortNumber", "uint16 0"},
                                        {"VirtualPortNumber", ""},
                                        {"Description", "string \"Ethernet port on ethernet controller 5\""},
                                        {"MaxSpeed", "uint64 0"},
                                        {"Speed", "uint64 0"},
                                        {"SupportedMaximumTransmissionUnit", "uint64 0"},
                                        {"ActiveMaximumTransmissionUnit", "uint64 0"},
                                        {"FullDuplex", ""},
                                        {"AutoSense", ""},
                                        {"Capabilities", "uint16[] {0}"},
                                        {"CapabilityDescriptions", "string[] {\"Unknown\"}"},
                                        {"EnabledCapabilities", "uint16[] {0}"},
                                        {"NetworkAddresses", "string[] {\"\"}"},
                                        {"HealthState", "uint16 0"},
                                        {"OperationalStatus", "uint16[] {0}"},
                                        {"StatusDescriptions", "string[] {\"Unknown\"}"}}));
}

TEST_F(PortTest, HasATextForEveryCapability) {
  DataLibrary library;
  library.capabilities = {0, 1, 2, 3, 4, 11, 999};
  EXPECT_EQ(
      read(portOf(everyPortFacts())),
      edited(everythingOfPort(), {{"Capabilities", "uint16[] {0, 1, 2, 3, 4, 11, 999}"},
                                  {"CapabilityDescriptions",
                                   "string[] {\"Unknown\", \"Other\", \"Alert On LAN\", \"Wake On LAN\", "
                                   "\"Unknown\", \"Unknown\", \"Unknown\"}"}}));
}

struct StatusTexts {
  const char* name;
  operationalStatus status;
  Table changes;
};

class PortStatus : public PortTest, public testing::WithParamInterface<StatusTexts> {};

TEST_P(PortStatus, FillsTheStatusBlock) {
  PortFacts facts = everyPortFacts();
  setStatus(facts.link, GetParam().status);
  EXPECT_EQ(read(portOf(facts)), edited(everythingOfPort(), GetParam().changes));
}

INSTANTIATE_TEST_SUITE_P(All, PortStatus,
                         testing::Values(StatusTexts{"Degraded",
                                                     operationalStatus::Degraded,
                                                     {{"HealthState", "uint16 10"},
                                                      {"OperationalStatus", "uint16[] {3}"},
                                                      {"StatusDescriptions", "string[] {\"Degraded\"}"}}},
                                         StatusTexts{"Error",
                                                     operationalStatus::Error,
                                                     {{"HealthState", "uint16 20"},
                                                      {"OperationalStatus", "uint16[] {6}"},
                                                      {"StatusDescriptions", "string[] {\"Error\"}"}}},
                                         StatusTexts{"Dormant",
                                                     operationalStatus::Dormant,
                                                     {{"HealthState", "uint16 5"},
                                                      {"OperationalStatus", "uint16[] {15}"},
                                                      {"StatusDescriptions", "string[] {\"Dormant\"}"}}}),
                         kByName);

std::string statusOf(ZEB_EthernetPort& port) {
  return textOf(port.makeInstance().getProperty("OperationalStatus"));
}

TEST_F(PortTest, DegradedFromTheStartStaysDegraded) {
  PortFacts facts = everyPortFacts();
  setStatus(facts.link, operationalStatus::Degraded);
  auto port = make(portOf(facts));
  EXPECT_EQ(statusOf(port), "uint16[] {3}");
  EXPECT_EQ(statusOf(port), "uint16[] {3}");
}

TEST_F(PortTest, ThatTurnsDegradedShowsAsInErrorForAsLongAsTheChangeIsNotRecorded) {
  MemoryHost host;
  host.addPort("eth0");
  auto port = make(host.port(0));
  EXPECT_EQ(statusOf(port), "uint16[] {2}");
  setStatus(host.link("eth0"), operationalStatus::Degraded);
  EXPECT_EQ(statusOf(port), "uint16[] {6}");
  EXPECT_EQ(statusOf(port), "uint16[] {6}");
  EXPECT_EQ(port.lastStatus(), operationalStatus::OK);
  setStatus(host.link("eth0"), operationalStatus::OK);
  EXPECT_EQ(statusOf(port), "uint16[] {2}");
}

TEST_F(PortTest, TheFirstReportAfterAChangeIsAsItIs) {
  MemoryHost host;
  host.addPort("eth0");
  auto port = make(host.port(0));
  setStatus(host.link("eth0"), operationalStatus::Degraded);
  EXPECT_EQ(statusOf(port), "uint16[] {3}");
  EXPECT_EQ(statusOf(port), "uint16[] {6}");
}

TEST_F(PortTest, IsReadAnewForEveryInstance) {
  MemoryHost host;
  host.addPort("eth0");
  auto port = make(host.port(0));
  host.link("eth0").mtu = 1280;
  EXPECT_EQ(textOf(port.makeInstance().getProperty("ActiveMaximumTransmissionUnit")), "uint64 1280");
}

/// Not those alone that stand behind the first few.
TEST_F(PortTest, ReadsEveryRowAnew) {
  MemoryHost host;
  host.addPort("eth0");
  auto port = make(host.port(0));
  auto& link = host.link("eth0");
  auto facts = everyPortFacts().link;
  facts.index = link.index;
  facts.name = link.name;
  facts.parentBus = link.parentBus;
  facts.parentDevice = link.parentDevice;
  link = facts;
  const auto shown = port.makeInstance();
  EXPECT_EQ(textOf(shown.getProperty("Caption")), "string \"Gigabit Adapter\"");
  EXPECT_EQ(textOf(shown.getProperty("ElementName")), "string \"Gigabit Adapter\"");
  EXPECT_EQ(textOf(shown.getProperty("PermanentAddress")), "string \"001a2b3c4d5e\"");
  EXPECT_EQ(textOf(shown.getProperty("Name")), "string \"001a2b3c4d5e\"");
}

TEST_F(PortTest, APassTakesTheFirstReport) {
  MemoryHost host;
  host.addPort("eth0");
  auto port = make(host.port(0));
  bool visible = false;
  port.manageDynamic(visible, 0, 0, {});
  setStatus(host.link("eth0"), operationalStatus::Degraded);
  EXPECT_EQ(statusOf(port), "uint16[] {6}");
}

TEST_F(PortTest, ThatWasTakenOverHasHadItsFirstReport) {
  MemoryHost host;
  host.addPort("eth0");
  auto port = make(host.port(0));
  port.resume("2 0");
  setStatus(host.link("eth0"), operationalStatus::Degraded);
  EXPECT_EQ(statusOf(port), "uint16[] {6}");
}

TEST_F(PortTest, ReadingIsNoChange) {
  MemoryHost host;
  host.addPort("eth0");
  auto port = make(host.port(0));
  setStatus(host.link("eth0"), operationalStatus::Error);
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(textOf(port.makeInstance().getProperty("TimeOfLastStateChange")),
              "datetime 00000000000000.000000:000");
  }
}

TEST_F(PortTest, RecordsTheTimeOfAChange) {
  MemoryHost host;
  host.addPort("eth0");
  auto port = make(host.port(0));
  setStatus(host.link("eth0"), operationalStatus::Error);
  const std::int64_t before = std::time(nullptr);
  bool visible = false;
  port.manageDynamic(visible, 0, 0, {});
  const auto time = port.makeInstance().getProperty("TimeOfLastStateChange").asDateTime();
  EXPECT_FALSE(time.isInterval());
  EXPECT_GE(time.microseconds(), static_cast<std::uint64_t>(before) * 1'000'000);
}

TEST_F(PortTest, LogsItsLife) {
  { auto port = make(EthernetPort()); }
  const std::vector<RecordingLogSink::Line> expected{{LogLevel::Info, "Test:ZEB_EthernetPort", "cxtor()"},
                                                     {LogLevel::Info, "Test:ZEB_EthernetPort", "dxtor()"}};
  EXPECT_EQ(recorded.sink->lines(), expected);
}

TEST_F(PortTest, PathsOfTwoDifferInTheIdentifyingKeyOnly) {
  ZEB_EthernetPort other(recorded.logger, nameSpace, 4, 5, kLocation, "PN-1", EthernetPort());
  const auto mine = keysOf(make(EthernetPort()).makeObjectPath());
  EXPECT_EQ(keysOf(other.makeObjectPath()),
            edited(mine, {{"DeviceID", "string \"JXV:ZEB_EthernetPort:4\""}}));
}

}  // namespace
}  // namespace ZEB::test
