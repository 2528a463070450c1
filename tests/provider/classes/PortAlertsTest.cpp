#include <gmock/gmock.h>

#include <ctime>

#include "DataLibrary.h"
#include "ProviderFixture.h"
#include "Records.h"
#include "classes/port/ZEB_EthernetPort.h"
#include "common/IndicationDB.h"
#include "common/ZEBUtil.h"

namespace ZEB::test {
namespace {

using Status = operationalStatus;
using CmpiCpp::CmpiData;
using CmpiCpp::CmpiInstance;

/// Port 2 of controller 1 in PCI Express slot 3, whose status is what the test says.
class PortAlertsTest : public ProviderTest {
 protected:
  PortAlertsTest() {
    ZEBUtil::setBroker(broker.handle());
    broker.setIndicationsEnabled(true);
  }
  ~PortAlertsTest() override { ZEBUtil::setBroker({}); }

  /// The port, with `status` as the one seen last.
  std::unique_ptr<ZEB_EthernetPort> make(Status status, std::uint16_t portNumber = 2) {
    library.portStatus = status;
    ethernet::PortFacts facts = everyPortFacts();
    facts.number = portNumber;
    const EthernetPort record = portOf(std::move(facts));
    EXPECT_EQ(record.getPortLinkMessage(linkMessage), 0);
    return std::make_unique<ZEB_EthernetPort>(recorded.logger, "root/jxv", 7, 1,
                                              makeSlotPhysloc(PhyslocType::PciExpressSlot, 3), "P-1", record);
  }

  struct Switches {
    bool indications = true;
    bool monitorPorts = true;
  };

  /// Lets the port see a status; the indications that it sent.
  std::vector<CmpiInstance> see(ZEB_EthernetPort& port, Status status, Switches switches) {
    library.portStatus = status;
    recorded.sink->clear();
    const std::size_t before = broker.deliveries().size();
    FakeBroker::Call call(broker);
    bool visible = false;
    port.manageDynamic(visible, switches.indications, switches.monitorPorts,
                       CmpiCpp::CmpiContext(&call.context()));
    EXPECT_TRUE(visible);
    std::vector<CmpiInstance> sent;
    for (const auto& delivery : broker.deliveries()) sent.push_back(delivery.indication);
    sent.erase(sent.begin(), sent.begin() + static_cast<std::ptrdiff_t>(before));
    return sent;
  }
  std::vector<CmpiInstance> see(ZEB_EthernetPort& port, Status status) { return see(port, status, {}); }

  /// Position of a log line, or -1.
  std::ptrdiff_t lineOf(std::string_view text) const {
    const auto texts = recorded.sink->texts();
    const auto found = std::find(texts.begin(), texts.end(), text);
    return found == texts.end() ? -1 : found - texts.begin();
  }

  DataLibrary library;
  RecordedLogger recorded;
  std::string linkMessage;
};

struct PortTransition {
  const char* name;
  Status before;
  Status now;
  const char* event;  ///< null for none
  const char* logLine;
};

const PortTransition kTransitions[] = {
    {"DormantToOk", Status::Dormant, Status::OK, "20", "Send ethernet port activated indication"},
    {"DegradedToOk", Status::Degraded, Status::OK, "3", "Send ethernet port connectivity restored"},
    {"ErrorToOk", Status::Error, Status::OK, "3", "Send ethernet port connectivity restored"},
    {"OtherToOk", Status::Other, Status::OK, nullptr, "Unknown indication type status("},
    {"UnknownToOk", Status::Unknown, Status::OK, nullptr, "Unknown indication type status("},
    {"StressedToOk", Status::Stressed, Status::OK, nullptr, "Unknown indication type status("},
    {"OkToDegraded", Status::OK, Status::Degraded, "2", "Send ethernet port connectivity lost indication"},
    {"OkToError", Status::OK, Status::Error, "2", "Send ethernet port connectivity lost indication"},
    {"DormantToError", Status::Dormant, Status::Error, "1", "Send ethernet port failed indication"},
    {"DormantToDegraded", Status::Dormant, Status::Degraded, "1", "Send ethernet port failed indication"},
    {"DegradedToError", Status::Degraded, Status::Error, "1", "Send ethernet port failed indication"},
    {"ErrorToDegraded", Status::Error, Status::Degraded, "1", "Send ethernet port failed indication"},
    {"OtherToError", Status::Other, Status::Error, "1", "Send ethernet port failed indication"},
    {"OkToDormant", Status::OK, Status::Dormant, "21", "Send ethernet port deactivated indication"},
    {"DegradedToDormant", Status::Degraded, Status::Dormant, "21",
     "Send ethernet port deactivated indication"},
    {"ErrorToDormant", Status::Error, Status::Dormant, "21", "Send ethernet port deactivated indication"},
    {"OtherToDormant", Status::Other, Status::Dormant, "21", "Send ethernet port deactivated indication"},
    {"OkToOther", Status::OK, Status::Other, nullptr, "Unknown indication type status("},
    {"ErrorToStopped", Status::Error, Status::Stopped, nullptr, "Unknown indication type status("},
};

class TransitionTest : public PortAlertsTest, public testing::WithParamInterface<PortTransition> {};

TEST_P(TransitionTest, SendsItsAlertAndIsRemembered) {
  const PortTransition& transition = GetParam();
  const auto port = make(transition.before);
  const auto sent = see(*port, transition.now);
  EXPECT_NE(lineOf(transition.logLine), -1);
  EXPECT_NE(lineOf("old status: " + std::to_string(static_cast<int>(transition.before))), -1);
  EXPECT_NE(lineOf("new status: " + std::to_string(static_cast<int>(transition.now))), -1);
  ASSERT_EQ(sent.size(), transition.event ? 1U : 0U);
  if (transition.event) {
    EXPECT_EQ(sent.front().getProperty("EventID"), CmpiData(transition.event));
    EXPECT_EQ(sent.front().getProperty("AlertingManagedElement"), CmpiData(port->makeObjectPath().str()));
  }
  EXPECT_EQ(port->lastStatus(), transition.now);
  // Said once: the same status again is no change.
  EXPECT_TRUE(see(*port, transition.now).empty());
  EXPECT_EQ(lineOf("Creating EthernetIndication object"), -1);
}

INSTANTIATE_TEST_SUITE_P(EveryRow, TransitionTest, testing::ValuesIn(kTransitions),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(PortAlertsTest, ADormantPortThatComesUpIsActivatedWithItsTexts) {
  const auto port = make(Status::Dormant);
  const auto sent = see(*port, Status::OK);
  ASSERT_EQ(sent.size(), 1U);
  IndDBRec record;
  ASSERT_EQ(IndicationDB(recorded.logger, "ZEB_EthernetIndication").getRecord(20, record), 0);
  EXPECT_EQ(sent.front().getProperty("Description"),
            CmpiData(record.description + "(Ethernet port 2 on ethernet controller 1)"));
  EXPECT_EQ(sent.front().getProperty("EventSubCategory").asUnsigned(), 11U);
  EXPECT_EQ(sent.front().getProperty("HWPhysicalLocation"), CmpiData("PCI Express slot 3"));
  EXPECT_EQ(sent.front().getProperty("HWPartNumber"), CmpiData("P-1"));
  EXPECT_EQ(sent.front().getProperty("UserComment"), CmpiData(linkMessage));
}

TEST_F(PortAlertsTest, APortNumberOfZeroIsLeftOutOfTheDetail) {
  const auto port = make(Status::Dormant, 0);
  const auto sent = see(*port, Status::OK);
  ASSERT_EQ(sent.size(), 1U);
  EXPECT_THAT(sent.front().getProperty("Description").asString(),
              testing::EndsWith("(Ethernet port on ethernet controller 1)"));
}

TEST_F(PortAlertsTest, ALostConnectionIsLoggedAfterTheSend) {
  const auto port = make(Status::OK);
  see(*port, Status::Error);
  EXPECT_GT(lineOf("Send ethernet port connectivity lost indication"), lineOf("Send ethernet indication: 2"));
}

TEST_F(PortAlertsTest, OtherAlertsAreLoggedBeforeTheSend) {
  const auto port = make(Status::Dormant);
  see(*port, Status::OK);
  EXPECT_LT(lineOf("Send ethernet port activated indication"), lineOf("Send ethernet indication: 20"));
}

TEST_F(PortAlertsTest, PortsThatAreNotMonitoredAreSilentAndRemember) {
  const auto port = make(Status::OK);
  EXPECT_TRUE(see(*port, Status::Error, {.monitorPorts = false}).empty());
  EXPECT_NE(
      lineOf(
          "EthEventSettings MonitorPorst is 0; Port Status filter Included prop is 1. No Indications sent."),
      -1);
  EXPECT_EQ(port->lastStatus(), Status::Error);
  EXPECT_TRUE(see(*port, Status::Error).empty());
}

TEST_F(PortAlertsTest, AnExcludedPortIsSilentAndRemembers) {
  const auto port = make(Status::OK);
  port->setIncluded(false);
  EXPECT_TRUE(see(*port, Status::Error).empty());
  EXPECT_NE(
      lineOf(
          "EthEventSettings MonitorPorst is 1; Port Status filter Included prop is 0. No Indications sent."),
      -1);
  EXPECT_EQ(port->lastStatus(), Status::Error);
}

TEST_F(PortAlertsTest, WithIndicationsDisabledASenderIsMadeAndSendsNothing) {
  const auto port = make(Status::OK);
  EXPECT_TRUE(see(*port, Status::Error, {.indications = false}).empty());
  EXPECT_NE(lineOf("Creating EthernetIndication object"), -1);
  EXPECT_NE(lineOf("Done creating EthernetIndication object"), -1);
  EXPECT_EQ(lineOf("Send ethernet port connectivity lost indication"), -1);
  EXPECT_EQ(port->lastStatus(), Status::Error);
}

TEST_F(PortAlertsTest, AStatusThatCannotBeReadChangesNothing) {
  const auto port = make(Status::OK);
  ethernet::PortFacts nothing = everyPortFacts();
  forgetStatus(nothing);
  library.portStatus.reset();
  ZEB_EthernetPort silent(recorded.logger, "root/jxv", 8, 1, BMC_physloc_NULL, "",
                          portOf(std::move(nothing)));
  recorded.sink->clear();
  FakeBroker::Call call(broker);
  bool visible = false;
  silent.manageDynamic(visible, 1, 1, CmpiCpp::CmpiContext(&call.context()));
  EXPECT_TRUE(visible);
  EXPECT_EQ(recorded.sink->texts(), (std::vector<std::string>{"manageDynamic()", "indicationsEnabled: 1"}));
  EXPECT_EQ(silent.lastStatus(), Status::Unknown);
}

TEST_F(PortAlertsTest, TheTimeOfTheChangeIsShown) {
  const auto port = make(Status::OK);
  EXPECT_TRUE(port->makeInstance().getProperty("TimeOfLastStateChange").asDateTime().isInterval());
  const auto before = static_cast<std::uint64_t>(std::time(nullptr)) * 1'000'000;
  see(*port, Status::Error);
  const auto shown = port->makeInstance().getProperty("TimeOfLastStateChange").asDateTime();
  EXPECT_FALSE(shown.isInterval());
  EXPECT_GE(shown.microseconds(), before);
}

}  // namespace
}  // namespace ZEB::test
