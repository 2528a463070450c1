#include <gmock/gmock.h>
#include <sys/resource.h>

#include <csignal>

#include "EventSettingsFixture.h"
#include "posix/ChildProcess.h"
#include "support/Content.h"

// The settings and their store: what a first start writes, what survives, and what others do to it.

namespace ZEB::test {
namespace {

using CmpiCpp::CmpiData;
using CmpiCpp::CmpiInstance;
using CmpiCpp::CmpiStatus;
using testing::ElementsAre;

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

/// How often a database file was changed, which its header counts.
std::uint32_t changesOf(const std::string& file) {
  const std::string header = contentOf(file).substr(24, 4);
  std::uint32_t count = 0;
  for (const char byte : header) count = count << 8 | static_cast<unsigned char>(byte);
  return count;
}

TEST_F(EventSettingsTest, theDefaultsAreOneTransaction) {
  makeDataStore("Empty");
  make();
  EXPECT_EQ(changesOf(directory.file("stores/ZEB_EthEventSettings.db")),
            changesOf(directory.file("stores/Empty.db")) + 1);
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
