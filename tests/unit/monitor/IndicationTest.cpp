#include <gmock/gmock.h>

#include <array>
#include <ctime>
#include <stdexcept>

#include "common/IndicationDB.h"
#include "common/QVAlertIndication.h"
#include "common/ZEBUtil.h"
#include "monitor/alerts/ZEB_EthernetIndication.h"
#include "support/Environment.h"
#include "support/FakeBroker.h"
#include "support/ProcessLog.h"
#include "support/TestFolder.h"

// Alerts as they are delivered: which properties, in which order, under which conditions.

namespace ZEB::test {
namespace {

using CmpiCpp::CmpiContext;
using CmpiCpp::CmpiData;
using CmpiCpp::CmpiInstance;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr std::array kEvents = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 15, 16, 20, 21, 100, 201};

/// A record whose every field tells which event and which field it is.
std::string recordOf(int event) {
  const std::string id = std::to_string(event);
  return "[ZEB_EthernetIndication." + id + "]\nseverity = " + std::to_string(event % 8) + "\nsummary = \"S" +
         id + "\"\ndescription = \"D" + id + "\"\nalert-type = " + std::to_string(1 + event % 8) +
         "\nprovider-name = \"P" + id + "\"\nrecommended-actions = [\"first " + id + "\", \"second " + id +
         "\"]\ncategory = " + std::to_string(event + 1000) + "\nother-category = \"O" + id +
         "\"\nprobable-cause = " + std::to_string(event + 2000) + "\nprobable-cause-description = \"C" + id +
         "\"\n";
}

CmpiData texts(std::initializer_list<std::string> values) {
  CmpiCpp::CmpiArray array(values.size(), CMPI_string);
  std::size_t index = 0;
  for (const auto& value : values) array.setElementAt(index++, value);
  return array;
}

class IndicationTest : public testing::Test {
 protected:
  IndicationTest() {
    std::string text;
    for (const int event : kEvents) text += recordOf(event);
    directory.write("records.toml", text);
    ZEBUtil::setBroker(broker.handle());
  }
  ~IndicationTest() override { ZEBUtil::setBroker(CmpiCpp::CmpiBroker()); }

  struct Event {
    int id = 3;
    std::string element = "//h/root/jxv:ZEB_EthernetPort.DeviceID=\"x\"";
    std::string detail = "";
    int subCategory = 0;
    physloc_t location = BMC_physloc_NULL;
    std::string partNumber = "";
    std::string comment = "";
  };

  /// Sends in a call of the object manager's; returns what was delivered in it.
  std::vector<FakeBroker::Delivery> send(const Event& event) {
    const std::size_t before = broker.deliveries().size();
    FakeBroker::Call call(broker);
    if (!networkAddress.empty()) call.context().entries[kNetworkAddressEntry] = networkAddress;
    ZEB_EthernetIndication sender(recorded.logger, "root/jxv");
    sender.send(event.id, event.element, event.detail, event.subCategory, event.location, event.partNumber,
                event.comment, CmpiContext(&call.context()));
    auto deliveries = broker.deliveries();
    deliveries.erase(deliveries.begin(), deliveries.begin() + static_cast<std::ptrdiff_t>(before));
    return deliveries;
  }

  CmpiInstance sent(const Event& event) {
    const auto deliveries = send(event);
    EXPECT_EQ(deliveries.size(), 1u);
    return deliveries.empty() ? CmpiInstance() : deliveries[0].indication;
  }

  static std::vector<std::string> names(const CmpiInstance& instance) {
    std::vector<std::string> all;
    for (const auto& property : instance.properties()) all.push_back(property.name.str());
    return all;
  }

  FakeBroker broker;
  TestFolder directory;
  Environment records{"ZEB_RECORDS", directory.file("records.toml")};
  RecordedLogger recorded;
  std::string networkAddress;
};

class EventTest : public IndicationTest, public testing::WithParamInterface<int> {};

// The first four are the indication's own: identifier, time, system and severity.
TEST_P(EventTest, everyPropertyInOrder) {
  const int event = GetParam();
  const std::string id = std::to_string(event);
  networkAddress = "192.0.2.7";
  const auto began = static_cast<std::uint64_t>(std::time(nullptr)) * 1'000'000;
  const CmpiInstance alert =
      sent({event, "//h/n:C.K=1", "detail", 12, makeSlotPhysloc(PhyslocType::PciExpressSlot, 3), "PN-7",
            "the link is down"});

  std::vector<std::pair<std::string, CmpiData>> expected = {
      {"SystemName", ZEBUtil::getHostName()},
      {"PerceivedSeverity", static_cast<std::uint16_t>(event % 8)},
  };
  const auto add = [&](const char* name, CmpiData value) { expected.emplace_back(name, std::move(value)); };
  const bool heartbeat = event == 100;
  if (!heartbeat) {
    add("AlertingManagedElement", "//h/n:C.K=1");
    add("AlertingElementFormat", std::uint16_t{2});
  }
  add("Description", heartbeat ? "D100" : "D" + id + "(detail)");
  add("EventID", id);
  add("AlertType", static_cast<std::uint16_t>(1 + event % 8));
  add("ProviderName", "P" + id);
  add("RecommendedActions", texts({"first " + id, "second " + id}));
  add("SystemCreationClassName", "ZEB_ComputerSystem");
  const std::string identifier = alert.getProperty("IndicationIdentifier").asString();
  add("Summary", heartbeat ? "S100" + identifier.substr(identifier.rfind('-') + 1) : "S" + id);
  add("EventCategory", static_cast<std::uint16_t>(event + 1000));
  if (event == 201) add("OtherEventCategory", "O201");
  add("ProbableCause", static_cast<std::uint16_t>(event + 2000));
  add("ProbableCauseDescription", "C" + id);
  add("NetworkIPAddress", "192.0.2.7");
  add("EventSubCategory", std::uint16_t{12});
  add("HWPhysicalLocation", "PCI Express slot 3");
  add("HWEncodingPhysicalLocation", "0503");
  add("HWPartNumber", "PN-7");
  add("UserComment", "the link is down");

  ASSERT_EQ(alert.properties().size(), expected.size() + 2);
  EXPECT_EQ(alert.properties()[0].name.view(), "IndicationIdentifier");
  EXPECT_THAT(identifier, StartsWith("JXV:ZEB_EthernetIndication:"));
  EXPECT_EQ(alert.properties()[1].name.view(), "IndicationTime");
  EXPECT_GE(alert.properties()[1].value.asDateTime().microseconds(), began);
  EXPECT_FALSE(alert.properties()[1].value.asDateTime().isInterval());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    EXPECT_EQ(alert.properties()[i + 2].name.view(), expected[i].first);
    EXPECT_EQ(alert.properties()[i + 2].value, expected[i].second) << expected[i].first;
  }
}

INSTANTIATE_TEST_SUITE_P(Events, EventTest, testing::ValuesIn(kEvents));

TEST_F(IndicationTest, isOfItsClassAndGoesToItsNamespaceWithTheContext) {
  FakeBroker::Call call(broker);
  ZEB_EthernetIndication sender(recorded.logger, "root/other");
  sender.send(3, "", "", 0, BMC_physloc_NULL, "", "", CmpiContext(&call.context()));
  const auto deliveries = broker.deliveries();
  ASSERT_EQ(deliveries.size(), 1u);
  EXPECT_EQ(deliveries[0].context, &call.context());
  EXPECT_EQ(deliveries[0].nameSpace, "root/other");
  EXPECT_EQ(deliveries[0].indication.path().str(), "root/other:ZEB_EthernetIndication");
}

TEST_F(IndicationTest, whatIsEmptyIsLeftOut) {
  EXPECT_THAT(names(sent({})),
              ElementsAre("IndicationIdentifier", "IndicationTime", "SystemName", "PerceivedSeverity",
                          "AlertingManagedElement", "AlertingElementFormat", "Description", "EventID",
                          "AlertType", "ProviderName", "RecommendedActions", "SystemCreationClassName",
                          "Summary", "EventCategory", "ProbableCause", "ProbableCauseDescription"));
}

TEST_F(IndicationTest, aDetailStandsInParenthesesBehindTheDescription) {
  EXPECT_EQ(sent({.detail = "x y"}).getProperty("Description"), CmpiData("D3(x y)"));
  EXPECT_EQ(sent({.detail = ""}).getProperty("Description"), CmpiData("D3"));
}

TEST_F(IndicationTest, aHeartbeatNamesNeitherElementNorDetail) {
  const CmpiInstance alert = sent({.id = 100, .detail = "heartbeat baby"});
  EXPECT_EQ(alert.getProperty("Description"), CmpiData("D100"));
  EXPECT_FALSE(alert.findProperty("AlertingManagedElement"));
  EXPECT_FALSE(alert.findProperty("AlertingElementFormat"));
}

TEST_F(IndicationTest, aHeartbeatsSummaryEndsWithItsNumber) {
  Logger& logger = recorded.logger;
  const unsigned last = QVAlertIndication(logger, "C", "n", 0).getId();
  EXPECT_EQ(sent({.id = 100}).getProperty("Summary"), CmpiData("S100" + std::to_string(last + 1)));
  EXPECT_EQ(sent({.id = 100}).getProperty("Summary"), CmpiData("S100" + std::to_string(last + 2)));
}

TEST_F(IndicationTest, aSubCategoryOfZeroOrLessIsLeftOut) {
  EXPECT_FALSE(sent({.subCategory = 0}).findProperty("EventSubCategory"));
  EXPECT_FALSE(sent({.subCategory = -1}).findProperty("EventSubCategory"));
  EXPECT_EQ(sent({.subCategory = 11}).getProperty("EventSubCategory"), CmpiData(std::uint16_t{11}));
}

TEST_F(IndicationTest, aLocationOfUnknownKindHasItsEncodingAlone) {
  physloc_t odd;
  odd.bytes = {0x01, 0xFF, 0, 0, 0, 0, 0, 0};
  const CmpiInstance alert = sent({.location = odd});
  EXPECT_FALSE(alert.findProperty("HWPhysicalLocation"));
  EXPECT_EQ(alert.getProperty("HWEncodingPhysicalLocation"), CmpiData("01ff"));
}

TEST_F(IndicationTest, onlyTheCollectionsStateHasAnotherCategory) {
  for (const int event : kEvents) {
    EXPECT_EQ(sent({.id = event}).findProperty("OtherEventCategory") != nullptr, event == 201) << event;
  }
}

TEST_F(IndicationTest, everyAlertHasAnotherIdentifier) {
  const CmpiData first = sent({}).getProperty("IndicationIdentifier");
  EXPECT_FALSE(sent({}).getProperty("IndicationIdentifier") == first);
}

TEST_F(IndicationTest, saysWhatItDoes) {
  send({});
  EXPECT_THAT(recorded.sink->texts(), ElementsAre("cxtor", "Creating Ethernet Indication DB",
                                                  "Send ethernet indication: 3", "dxtor"));
  EXPECT_EQ(recorded.sink->lines()[0].source, "Test:ZEB_EthernetIndication");
}

TEST_F(IndicationTest, anEventWithoutARecordIsNotSent) {
  for (const int event : {0, 14, 17, 18, 19, 22, 99, 101, 202, -1}) {
    EXPECT_TRUE(send({.id = event}).empty());
    EXPECT_EQ(recorded.sink->count("No DB record for EventID: " + std::to_string(event)), 1u);
  }
}

TEST_F(IndicationTest, aRefusalIsLoggedAndNothingElse) {
  broker.answerDeliveries(CMPI_RC_ERR_FAILED, "no room");
  EXPECT_TRUE(send({}).empty());
  EXPECT_TRUE(recorded.sink->has(LogLevel::Error, "indication send failure: no room"));
  broker.answerDeliveries(CMPI_RC_OK);
  EXPECT_EQ(send({}).size(), 1u);
}

TEST_F(IndicationTest, aRefusalWithoutAMessageIsNamedByItsCode) {
  broker.answerDeliveries(CMPI_RC_ERR_ACCESS_DENIED);
  send({});
  EXPECT_TRUE(recorded.sink->has(LogLevel::Error, "indication send failure: access denied"));
}

TEST_F(IndicationTest, anObjectManagerThatTakesNoneIsARefusal) {
  broker.bft.deliverIndication = nullptr;
  EXPECT_TRUE(send({}).empty());
  EXPECT_TRUE(recorded.sink->mentions(LogLevel::Error, "indication send failure: "));
}

TEST_F(IndicationTest, anythingButARefusalGoesToTheCaller) {
  broker.bft.deliverIndication = [](const CMPIBroker*, const CMPIContext*, const char*,
                                    const CMPIInstance*) -> CMPIStatus {
    throw std::runtime_error("broken");
  };
  EXPECT_THROW(send({}), std::runtime_error);
  EXPECT_FALSE(recorded.sink->mentions(LogLevel::Error, "indication send failure"));
}

TEST_F(IndicationTest, severalSendsOfOneSenderAreSeveralAlerts) {
  FakeBroker::Call call(broker);
  ZEB_EthernetIndication sender(recorded.logger, "root/jxv");
  for (int i = 0; i < 3; ++i) {
    sender.send(3, "", "", 0, BMC_physloc_NULL, "", "", CmpiContext(&call.context()));
  }
  EXPECT_EQ(broker.deliveries().size(), 3u);
}

// --- records that are not what they should be ---

class BadRecordsTest : public IndicationTest, public testing::WithParamInterface<const char*> {};

TEST_P(BadRecordsTest, areALogLineAndNoAlert) {
  directory.write("records.toml", GetParam());
  EXPECT_TRUE(send({}).empty());
  EXPECT_EQ(recorded.sink->count("No DB record for EventID: 3"), 1u);
}

INSTANTIATE_TEST_SUITE_P(Files, BadRecordsTest,
                         testing::Values("", "[ZEB_EthernetIndication]", "[ZEB_EthernetIndication.3",
                                         "\xFF\xFE", "ZEB_EthernetIndication = 3",
                                         "[ZEB_EthernetIndication]\n3 = 4", "[ZEB_Other.3]\nsummary = \"x\"",
                                         "[ZEB_EthernetIndication.3]"));

TEST_F(IndicationTest, aMissingFileIsALogLineAndNoAlert) {
  std::filesystem::remove(directory.file("records.toml"));
  EXPECT_TRUE(send({}).empty());
  EXPECT_TRUE(recorded.sink->mentions(LogLevel::Error, directory.file("records.toml")));
}

}  // namespace
}  // namespace ZEB::test
