#include <gmock/gmock.h>
#include <sys/resource.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <thread>

#include "cmpicpp/CmpiStatus.h"
#include "common/ZEBUtil.h"
#include "monitor/ZEB_EthEventSettings.h"
#include "posix/ChildProcess.h"
#include "posix/Pipe.h"
#include "support/Environment.h"
#include "support/ProcessLog.h"
#include "support/TestFolder.h"

// The settings: what a first start writes, what a client may change and how, and what survives.

namespace ZEB::test {
namespace {

using CmpiCpp::CmpiData;
using CmpiCpp::CmpiInstance;
using CmpiCpp::CmpiStatus;
using testing::ElementsAre;

struct Expected {
  const char* name;
  CmpiData initial;
};

/// The settings in their order, with their types and defaults.
const std::vector<Expected>& expectedSettings() {
  static const std::vector<Expected> kSettings = {
      {"PollInterval", std::uint32_t{200}},
      {"FloodThreshold", std::uint32_t{10}},
      {"MaxFloodLevel", std::uint32_t{100}},
      {"ActiveAdapterCountChanged", false},
      {"MemberRoleChanged", false},
      {"MemberStatusChanged", false},
      {"MemberJoinedTeam", false},
      {"MemberLeftTeam", false},
      {"InterfaceAvailable", false},
      {"InterfaceUnAvailable", false},
      {"MonitorPorts", true},
      {"MonitorLANEndpoints", false},
      {"MonitorRedundancySets", true},
  };
  return kSettings;
}

class EventSettingsTest : public testing::Test {
 protected:
  ZEB_EthEventSettings make() { return {recorded.logger, "root/jxv"}; }

  static CmpiInstance changed(std::initializer_list<CmpiInstance::Property> properties) {
    CmpiInstance instance;
    for (const auto& property : properties) instance.addProperty(property.name, property.value);
    return instance;
  }

  static CMPIrc modify(ZEB_EthEventSettings& settings, const CmpiInstance& instance,
                       std::vector<const char*> names) {
    names.push_back(nullptr);
    try {
      settings.modify(instance, names.data());
      return CMPI_RC_OK;
    } catch (const CmpiStatus& status) {
      EXPECT_EQ(status.msg(), "");
      return status.rc();
    }
  }

  TestFolder directory;
  Environment storeDirectory{"ZEB_STORE_DIR", directory.file("stores")};
  ProcessLog processLog;
  RecordedLogger recorded;
};

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

TEST_F(EventSettingsTest, theFirstStartWritesAllThirteenDefaults) {
  make();
  const auto store = makeDataStore("ZEB_EthEventSettings");
  for (const Expected& setting : expectedSettings()) {
    ASSERT_TRUE(store->exists(setting.name)) << setting.name;
    if (setting.initial.type() == CMPI_uint32) {
      EXPECT_EQ(store->getUInt32(setting.name), setting.initial.asUnsigned()) << setting.name;
    } else {
      EXPECT_EQ(store->getBool(setting.name), setting.initial.asBoolean()) << setting.name;
    }
  }
}

TEST_F(EventSettingsTest, saysWhatItDoesWhenItIsMade) {
  make();
  std::vector<std::string> expected = {"cxtor()", "calling makeDataStore..."};
  for (const Expected& setting : expectedSettings()) {
    expected.push_back("initialize evSetting " + std::string(setting.name) + "...");
  }
  expected.emplace_back("dxtor()");
  EXPECT_EQ(recorded.sink->texts(), expected);
  EXPECT_EQ(recorded.sink->lines()[0].source, "Test:ZEB_EthEventSettings");
}

TEST_F(EventSettingsTest, laterStartsTakeTheStoredValues) {
  {
    ZEB_EthEventSettings settings = make();
    ASSERT_EQ(
        modify(
            settings,
            changed({{"PollInterval", std::uint32_t{77}}, {"MemberLeftTeam", true}, {"MonitorPorts", false}}),
            {"PollInterval", "MemberLeftTeam", "MonitorPorts"}),
        CMPI_RC_OK);
  }
  const ZEB_EthEventSettings settings = make();
  EXPECT_EQ(settings.number(EventSetting::PollInterval), 77u);
  EXPECT_TRUE(settings.isOn(EventSetting::MemberLeftTeam));
  EXPECT_FALSE(settings.isOn(EventSetting::MonitorPorts));
  EXPECT_TRUE(settings.isOn(EventSetting::MonitorRedundancySets));
}

TEST_F(EventSettingsTest, theLastPollTimeStartsAtZero) {
  EXPECT_EQ(make().lastPollTime(), 0);
}

TEST_F(EventSettingsTest, aStoredPollIntervalOfZeroDisablesPolling) {
  EXPECT_FALSE(make().pollingDisabled());
  makeDataStore("ZEB_EthEventSettings")->setUInt32("PollInterval", 0);
  EXPECT_TRUE(make().pollingDisabled());
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

// --- stores that another process has, too ---

TEST_F(EventSettingsTest, whatAnotherProcessHasKeptIsServed) {
  ZEB_EthEventSettings settings = make();
  const auto other = makeDataStore("ZEB_EthEventSettings");
  other->setUInt32("PollInterval", 5);
  other->setBool("MonitorPorts", false);
  const CmpiInstance instance = settings.makeInstance();
  EXPECT_EQ(instance.getProperty("PollInterval"), CmpiData(std::uint32_t{5}));
  EXPECT_EQ(instance.getProperty("MonitorPorts"), CmpiData(false));
}

TEST_F(EventSettingsTest, whatAnotherProcessHasKeptIsFollowed) {
  ZEB_EthEventSettings settings = make();
  makeDataStore("ZEB_EthEventSettings")->setUInt32("PollInterval", 0);
  EXPECT_EQ(settings.number(EventSetting::PollInterval), 200u);
  settings.follow();
  EXPECT_EQ(settings.number(EventSetting::PollInterval), 0u);
  EXPECT_TRUE(settings.pollingDisabled());
  makeDataStore("ZEB_EthEventSettings")->setUInt32("MaxFloodLevel", 101);
  settings.follow();
  EXPECT_FALSE(settings.pollingDisabled()) << "as after such a change of a client";
}

TEST_F(EventSettingsTest, aChangeIsComparedWithWhatAnotherProcessHasKept) {
  ZEB_EthEventSettings settings = make();
  makeDataStore("ZEB_EthEventSettings")->setUInt32("PollInterval", 5);
  recorded.sink->clear();
  ASSERT_EQ(modify(settings, changed({{"PollInterval", std::uint32_t{200}}}), {"PollInterval"}), CMPI_RC_OK);
  EXPECT_EQ(recorded.sink->count("Change in PollInterval property detected..."), 1u);
  EXPECT_EQ(make().number(EventSetting::PollInterval), 200u);

  makeDataStore("ZEB_EthEventSettings")->setUInt32("PollInterval", 5);
  recorded.sink->clear();
  ASSERT_EQ(modify(settings, changed({{"PollInterval", std::uint32_t{5}}}), {"PollInterval"}), CMPI_RC_OK);
  EXPECT_THAT(recorded.sink->texts(), ElementsAre("::modifyInstance() start", "property list is NOT NULL"));
}

// --- stores that do not work ---

TEST_F(EventSettingsTest, withoutAStoreTheDefaultsHoldAndChangesAreNotKept) {
  directory.write("stores", "a file where the directory should be");
  ZEB_EthEventSettings settings = make();
  EXPECT_TRUE(recorded.sink->has(LogLevel::Error, "unable to open datastore ZEB_EthEventSettings"));
  EXPECT_EQ(settings.makeInstance().getProperty("PollInterval"), CmpiData(std::uint32_t{200}));
  recorded.sink->clear();
  EXPECT_EQ(modify(settings, changed({{"PollInterval", std::uint32_t{5}}}), {"PollInterval"}), CMPI_RC_OK);
  EXPECT_EQ(settings.number(EventSetting::PollInterval), 5u);
  EXPECT_THAT(recorded.sink->texts(), ElementsAre("::modifyInstance() start", "property list is NOT NULL",
                                                  "Change in PollInterval property detected..."));
}

TEST_F(EventSettingsTest, aWriteThatFailsTellsTheClientAndChangesNothing) {
  ZEB_EthEventSettings settings = make();
  const int result = ChildProcess([&] {
                       ZEB_EthEventSettings mine = make();
                       signal(SIGXFSZ, SIG_IGN);
                       const rlimit limit{100, RLIM_INFINITY};
                       if (setrlimit(RLIMIT_FSIZE, &limit) != 0) return 1;
                       const char* names[] = {"PollInterval", nullptr};
                       try {
                         mine.modify(changed({{"PollInterval", std::uint32_t{0}}}), names);
                         return 2;
                       } catch (const CmpiStatus& status) {
                         if (status.rc() != CMPI_RC_ERR_FAILED || status.msg().empty()) return 3;
                       }
                       if (mine.number(EventSetting::PollInterval) != 200 || mine.pollingDisabled()) return 4;
                       return 0;
                     }).wait();
  EXPECT_EQ(result, 0);
  EXPECT_EQ(make().number(EventSetting::PollInterval), 200u);
}

TEST_F(EventSettingsTest, aFirstStartOnAFullDiskSaysSoOnceAndHasTheDefaults) {
  makeDataStore("ZEB_EthEventSettings");
  const int result = ChildProcess([&] {
                       signal(SIGXFSZ, SIG_IGN);
                       const rlimit limit{100, RLIM_INFINITY};
                       if (setrlimit(RLIMIT_FSIZE, &limit) != 0) return 1;
                       ZEB_EthEventSettings settings = make();
                       if (settings.number(EventSetting::MaxFloodLevel) != 100) return 2;
                       int errors = 0;
                       for (const auto& sink : {recorded.sink, processLog.sink}) {
                         for (const auto& line : sink->lines())
                           errors += line.level == LogLevel::Error ? 1 : 0;
                       }
                       return errors == 1 ? 0 : 3;
                     }).wait();
  EXPECT_EQ(result, 0);
}

TEST_F(EventSettingsTest, aRebuildThatCannotReadTheStoreKeepsWhatWasKnown) {
  ZEB_EthEventSettings before = make();
  ASSERT_EQ(modify(before, changed({{"PollInterval", std::uint32_t{7}}, {"MonitorPorts", false}}),
                   {"PollInterval", "MonitorPorts"}),
            CMPI_RC_OK);
  std::filesystem::remove_all(directory.file("stores"));
  directory.write("stores", "a file");
  ZEB_EthEventSettings after = make();
  EXPECT_EQ(after.number(EventSetting::PollInterval), 200u);
  after.remember(before.memory());
  EXPECT_EQ(after.number(EventSetting::PollInterval), 7u);
  EXPECT_FALSE(after.isOn(EventSetting::MonitorPorts));
}

}  // namespace
}  // namespace ZEB::test
