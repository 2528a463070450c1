#include <gmock/gmock.h>
#include <sys/resource.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <thread>

#include "EventSettingsFixture.h"
#include "posix/ChildProcess.h"
#include "posix/Pipe.h"

// The settings: what a client may change and how.

namespace ZEB::test {
namespace {

using CmpiCpp::CmpiData;
using CmpiCpp::CmpiInstance;
using CmpiCpp::CmpiStatus;
using testing::ElementsAre;

TEST_F(EventSettingsTest, theInstanceHasItsPropertiesInOrder) {
  const CmpiInstance instance = make().makeInstance();
  EXPECT_EQ(instance.path().str(),
            "//" + ZEBUtil::getHostName() + "/root/jxv:ZEB_EthEventSettings.InstanceId=\"JXV:0\"");
  std::vector<Expected> expected = {
      {"InstanceId", "JXV:0"},
      {"ElementName", "QV Ethernet Event Provider configurable settings"},
      {"Caption", "QV Ethernet Event Provider configurable settings"},
      {"Description", "QV Ethernet Event Provider configurable settings"},
  };
  expected.insert(expected.end(), expectedSettings().begin(), expectedSettings().end());
  ASSERT_EQ(instance.properties().size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    EXPECT_EQ(instance.properties()[i].name.view(), expected[i].name);
    EXPECT_EQ(instance.properties()[i].value, expected[i].initial) << expected[i].name;
  }
}

TEST_F(EventSettingsTest, aNullListWithCurrentValuesChangesNothing) {
  ZEB_EthEventSettings settings = make();
  const CmpiInstance current = settings.makeInstance();
  recorded.sink->clear();
  settings.modify(current, nullptr);
  EXPECT_THAT(recorded.sink->texts(), ElementsAre("::modifyInstance() start", "property list is NULL"));
  EXPECT_FALSE(settings.pollingDisabled());
}

TEST_F(EventSettingsTest, everySettingCanBeChangedAndIsKept) {
  for (std::size_t i = 0; i < expectedSettings().size(); ++i) {
    const Expected& setting = expectedSettings()[i];
    const CmpiData wanted = setting.initial.type() == CMPI_uint32 ? CmpiData(std::uint32_t{4000000000u})
                                                                  : CmpiData(!setting.initial.asBoolean());
    ZEB_EthEventSettings settings = make();
    recorded.sink->clear();
    ASSERT_EQ(modify(settings, changed({{setting.name, wanted}}), {setting.name}), CMPI_RC_OK);
    EXPECT_THAT(recorded.sink->texts(),
                ElementsAre("::modifyInstance() start", "property list is NOT NULL",
                            "Change in " + std::string(setting.name) + " property detected..."));
    EXPECT_EQ(settings.makeInstance().getProperty(setting.name), wanted);
    EXPECT_EQ(make().makeInstance().getProperty(setting.name), wanted);
  }
}

TEST_F(EventSettingsTest, aListNamesWhatIsChanged) {
  ZEB_EthEventSettings settings = make();
  ASSERT_EQ(
      modify(settings, changed({{"PollInterval", std::uint32_t{5}}, {"FloodThreshold", std::uint32_t{6}}}),
             {"FloodThreshold"}),
      CMPI_RC_OK);
  EXPECT_EQ(settings.number(EventSetting::PollInterval), 200u);
  EXPECT_EQ(settings.number(EventSetting::FloodThreshold), 6u);
}

TEST_F(EventSettingsTest, anEmptyListChangesNothing) {
  ZEB_EthEventSettings settings = make();
  EXPECT_EQ(modify(settings, changed({{"PollInterval", std::uint32_t{5}}}), {}), CMPI_RC_OK);
  EXPECT_EQ(settings.number(EventSetting::PollInterval), 200u);
}

TEST_F(EventSettingsTest, anUnknownFirstNameFailsBeforeAnyChange) {
  for (const char* name : {"NoSuchSetting", "InstanceId", "ElementName", "pollinterval", ""}) {
    ZEB_EthEventSettings settings = make();
    EXPECT_EQ(modify(settings, changed({{"PollInterval", std::uint32_t{5}}}), {name, "PollInterval"}),
              CMPI_RC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(settings.number(EventSetting::PollInterval), 200u);
  }
}

TEST_F(EventSettingsTest, aFlagGivenAsANumberFails) {
  ZEB_EthEventSettings settings = make();
  recorded.sink->clear();
  EXPECT_EQ(modify(settings, changed({{"MonitorPorts", std::uint32_t{1}}}), {"MonitorPorts"}),
            CMPI_RC_ERR_INVALID_PARAMETER);
  EXPECT_THAT(recorded.sink->texts(), ElementsAre("::modifyInstance() start", "property list is NOT NULL",
                                                  "data type is not boolean.  throw CmpiStatus error!"));
  EXPECT_TRUE(settings.isOn(EventSetting::MonitorPorts));
}

TEST_F(EventSettingsTest, aNumberGivenAsAnythingElseFails) {
  for (const CmpiData& wrong : {CmpiData(true), CmpiData("5"), CmpiData(std::uint16_t{5}),
                                CmpiData(std::uint64_t{5}), CmpiData(std::int32_t{5})}) {
    ZEB_EthEventSettings settings = make();
    recorded.sink->clear();
    EXPECT_EQ(modify(settings, changed({{"PollInterval", wrong}}), {"PollInterval"}),
              CMPI_RC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(recorded.sink->count("data type is not uint32.  throw CmpiStatus error!"), 1u);
    EXPECT_EQ(settings.number(EventSetting::PollInterval), 200u);
  }
}

TEST_F(EventSettingsTest, whatWasChangedBeforeAFailureStays) {
  ZEB_EthEventSettings settings = make();
  EXPECT_EQ(modify(settings,
                   changed({{"MaxFloodLevel", std::uint32_t{6}},
                            {"MonitorPorts", std::uint32_t{0}},
                            {"PollInterval", std::uint32_t{5}},
                            {"MonitorRedundancySets", false}}),
                   {"MonitorRedundancySets", "MonitorPorts", "MaxFloodLevel", "PollInterval"}),
            CMPI_RC_ERR_INVALID_PARAMETER);
  EXPECT_EQ(settings.number(EventSetting::PollInterval), 5u) << "settings go by index, not by the list";
  EXPECT_EQ(settings.number(EventSetting::MaxFloodLevel), 6u);
  EXPECT_TRUE(settings.isOn(EventSetting::MonitorRedundancySets));
  EXPECT_EQ(make().number(EventSetting::MaxFloodLevel), 6u);
}

TEST_F(EventSettingsTest, aListedPropertyThatTheInstanceLacksFails) {
  ZEB_EthEventSettings settings = make();
  try {
    const char* names[] = {"PollInterval", nullptr};
    settings.modify(CmpiInstance(), names);
    ADD_FAILURE();
  } catch (const CmpiStatus& status) {
    EXPECT_EQ(status.rc(), CMPI_RC_ERR_NO_SUCH_PROPERTY);
  }
}

TEST_F(EventSettingsTest, aNullOfTheRightTypeIsZero) {
  ZEB_EthEventSettings settings = make();
  ASSERT_EQ(modify(settings,
                   changed({{"PollInterval", CmpiData::null(CMPI_uint32)},
                            {"MonitorPorts", CmpiData::null(CMPI_boolean)}}),
                   {"PollInterval", "MonitorPorts"}),
            CMPI_RC_OK);
  EXPECT_EQ(settings.number(EventSetting::PollInterval), 0u);
  EXPECT_FALSE(settings.isOn(EventSetting::MonitorPorts));
}

TEST_F(EventSettingsTest, aChangeOfAnotherNumberEnablesPollingAgain) {
  ZEB_EthEventSettings settings = make();
  modify(settings, changed({{"PollInterval", std::uint32_t{0}}}), {"PollInterval"});
  EXPECT_TRUE(settings.pollingDisabled());
  modify(settings, changed({{"FloodThreshold", std::uint32_t{10}}}), {"FloodThreshold"});
  EXPECT_TRUE(settings.pollingDisabled()) << "the value did not change";
  modify(settings, changed({{"MonitorPorts", false}}), {"MonitorPorts"});
  EXPECT_TRUE(settings.pollingDisabled()) << "a flag is no number";
  modify(settings, changed({{"FloodThreshold", std::uint32_t{11}}}), {"FloodThreshold"});
  EXPECT_FALSE(settings.pollingDisabled());
  EXPECT_EQ(settings.number(EventSetting::PollInterval), 0u);
}

TEST_F(EventSettingsTest, anUnknownNameFurtherDownDoesNotReturnAndBurnsNothing) {
  const Pipe started = makePipe();
  ChildProcess child([&] {
    ZEB_EthEventSettings settings = make();
    const char* names[] = {"PollInterval", "NoSuchSetting", nullptr};
    if (write(started.writing.get(), "x", 1) != 1) return 1;
    settings.modify(changed({{"PollInterval", std::uint32_t{5}}}), names);
    return 0;
  });
  char byte = 0;
  ASSERT_EQ(read(started.reading.get(), &byte, 1), 1);
  std::this_thread::sleep_for(std::chrono::milliseconds(2500));
  EXPECT_FALSE(child.ended());
  child.kill();
  rusage used{};
  const int status = child.wait();
  ASSERT_EQ(getrusage(RUSAGE_CHILDREN, &used), 0);
  EXPECT_EQ(status, -SIGKILL);
  EXPECT_LT(used.ru_utime.tv_sec, 1);
  EXPECT_EQ(make().number(EventSetting::PollInterval), 200u) << "nothing is changed before the walk is over";
}

}  // namespace
}  // namespace ZEB::test
