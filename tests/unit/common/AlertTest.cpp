#include <gmock/gmock.h>

#include "common/QVAlertIndication.h"
#include "common/ZEBUtil.h"
#include "support/FakeBroker.h"
#include "support/RecordingLogSink.h"

namespace ZEB {
namespace {

using CmpiCpp::CmpiData;
using CmpiCpp::CmpiInstance;
using testing::ElementsAre;

class AlertTest : public testing::Test {
 protected:
  static std::vector<std::string> names(const CmpiInstance& instance) {
    std::vector<std::string> all;
    for (const auto& property : instance.properties()) all.push_back(property.name.str());
    return all;
  }

  test::RecordedLogger recorded;
  QVAlertIndication alert{recorded.logger, "Some_Alert", "root/some", 5};
};

TEST_F(AlertTest, beginsWithWhatItKnowsItself) {
  const CmpiInstance& instance = alert.getInstance();
  EXPECT_EQ(instance.path().str(), "root/some:Some_Alert");
  EXPECT_THAT(names(instance),
              ElementsAre("IndicationIdentifier", "IndicationTime", "SystemName", "PerceivedSeverity"));
  EXPECT_EQ(instance.getProperty("PerceivedSeverity"), CmpiData(std::uint16_t{5}));
  EXPECT_EQ(instance.getProperty("SystemName"), CmpiData(ZEBUtil::getHostName()));
}

TEST_F(AlertTest, everySetterSetsItsProperty) {
  alert.setDescription("d");
  alert.setAlertingManagedElement("e");
  alert.setAlertingElementFormat(2);
  alert.setEventID("3");
  alert.setAlertType(4);
  alert.setProviderName("p");
  alert.setRecommendedActions({"one", "two"});
  alert.setSystemCreationClassName("s");
  alert.setProbableCause(30);
  alert.setProbableCauseDescription("c");
  alert.setSummary("sum");
  alert.setEventCategory(6);
  alert.setOtherEventCategory("o");
  alert.setEventSubCategory(11);
  alert.setHWPhysicalLocation("l");
  alert.setHWEncodingPhysicalLocation("x");
  alert.setHWPartNumber("n");
  alert.setUserComment("u");
  CmpiCpp::CmpiArray actions(2, CMPI_string);
  actions.setElementAt(0, "one");
  actions.setElementAt(1, "two");
  const std::vector<std::pair<std::string, CmpiData>> expected = {
      {"Description", "d"},
      {"AlertingManagedElement", "e"},
      {"AlertingElementFormat", std::uint16_t{2}},
      {"EventID", "3"},
      {"AlertType", std::uint16_t{4}},
      {"ProviderName", "p"},
      {"RecommendedActions", actions},
      {"SystemCreationClassName", "s"},
      {"ProbableCause", std::uint16_t{30}},
      {"ProbableCauseDescription", "c"},
      {"Summary", "sum"},
      {"EventCategory", std::uint16_t{6}},
      {"OtherEventCategory", "o"},
      {"EventSubCategory", std::uint16_t{11}},
      {"HWPhysicalLocation", "l"},
      {"HWEncodingPhysicalLocation", "x"},
      {"HWPartNumber", "n"},
      {"UserComment", "u"},
  };
  const auto& properties = alert.getInstance().properties();
  ASSERT_EQ(properties.size(), expected.size() + 4);
  for (std::size_t i = 0; i < expected.size(); ++i) {
    EXPECT_EQ(properties[i + 4].name.view(), expected[i].first);
    EXPECT_EQ(properties[i + 4].value, expected[i].second) << expected[i].first;
  }
}

TEST_F(AlertTest, theNetworkAddressIsTheContextsIfItHasOne) {
  alert.setNetworkIPAddress(CmpiCpp::CmpiContext());
  EXPECT_FALSE(alert.getInstance().findProperty("NetworkIPAddress"));
  test::FakeBroker broker;
  test::FakeBroker::Call call(broker);
  call.context().entries[kNetworkAddressEntry] = "2001:db8::1";
  alert.setNetworkIPAddress(CmpiCpp::CmpiContext(&call.context()));
  EXPECT_EQ(alert.getInstance().getProperty("NetworkIPAddress"), CmpiData("2001:db8::1"));
}

TEST_F(AlertTest, idsCountUpAndEndTheIdentifier) {
  const QVAlertIndication next(recorded.logger, "Some_Alert", "root/some", 5);
  EXPECT_EQ(next.getId(), alert.getId() + 1);
  const std::string identifier = next.getInstance().getProperty("IndicationIdentifier").asString();
  EXPECT_THAT(identifier, testing::StartsWith("JXV:Some_Alert:"));
  EXPECT_THAT(identifier, testing::EndsWith("-" + std::to_string(next.getId())));
}

}  // namespace
}  // namespace ZEB
