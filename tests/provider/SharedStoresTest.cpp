#include <gmock/gmock.h>
#include <sys/resource.h>

#include <csignal>

#include "StoresFixture.h"

// Stores that another process writes to, that are damaged, or that have no room, as a client of the object
// manager sees it.

namespace ZEB::test {
namespace {

using CmpiCpp::CmpiData;
using std::chrono::milliseconds;

class SharedStoresTest : public StoresTest {
 protected:
  SharedStoresTest() : StoresTest(2) { start(); }
  ~SharedStoresTest() override { stop(); }
};

// --- two processes ---

TEST_F(SharedStoresTest, aSettingIsComparedWithWhatAnotherProcessHasKept) {
  setElsewhere(kSettings, "PollInterval", 5);
  EXPECT_EQ(set("PollInterval", std::uint32_t{200}), CMPI_RC_OK);
  EXPECT_EQ(setting("PollInterval"), CmpiData(std::uint32_t{200}));
  restart();
  EXPECT_EQ(setting("PollInterval"), CmpiData(std::uint32_t{200}));
}

TEST_F(SharedStoresTest, aSettingOfAnotherProcessIsServedAtOnceAndFollowedByAPass) {
  setElsewhere(kSettings, "PollInterval", 5);
  EXPECT_EQ(setting("PollInterval"), CmpiData(std::uint32_t{5}));
  setElsewhere(kSettings, "PollInterval", 4000);
  _netlinkEvent = false;
  log->clear();
  FakeBroker::Call call(broker);
  methods->ft->invokeMethod(methods, &call.context(), &call.result(),
                            call.path({"root/jxv", "ZEB_AutoStartEthernetPort"}), "PerformWork", call.args(),
                            call.args());
  EXPECT_TRUE(log->mentions(LogLevel::Info, ":: PollInterval of 4000s has not elapsed"));
}

TEST_F(SharedStoresTest, aFilterOfAnotherProcessIsServedAtOnceWithTheGroupsStatus) {
  EXPECT_EQ(groupStatus(), 6U);
  setElsewhere(kFilters, keyOf(2), false);
  EXPECT_EQ(groupStatus(), 2U);
  EXPECT_FALSE(included(2));
  setElsewhere(kFilters, keyOf(2), true);
  EXPECT_TRUE(included(2));
  EXPECT_EQ(groupStatus(), 6U);
}

TEST_F(SharedStoresTest, aFilterOfAnotherProcessIsServedToWhoAsksForOneInstance) {
  const auto path = membershipOfPort(2).path();
  setElsewhere(kFilters, keyOf(2), false);
  FakeBroker::Call call(broker);
  interface->ft->getInstance(interface, &call.context(), &call.result(), call.path(path), nullptr);
  ASSERT_EQ(call.result().instances.size(), 1U);
  EXPECT_EQ(call.result().instances[0].getProperty("Included"), CmpiData(false));
}

TEST_F(SharedStoresTest, aFilterIsComparedWithWhatAnotherProcessHasKept) {
  setElsewhere(kFilters, keyOf(2), false);
  EXPECT_EQ(include(2, true), CMPI_RC_OK);
  restart();
  EXPECT_TRUE(included(2));
}

TEST_F(SharedStoresTest, aPassFollowsTheFilterOfAnotherProcess) {
  const std::string key = keyOf(2);
  setElsewhere(kFilters, key, false);
  log->clear();
  pass();
  EXPECT_TRUE(log->mentions(LogLevel::Info, "ethport->_included is: 0"));
}

TEST_F(SharedStoresTest, aFirstBuildDoesNotOverwriteWhatAnotherProcessKeepsMeanwhile) {
  const std::string key = keyOf(1);
  for (int round = 0; round < 5; ++round) {
    stop();
    ASSERT_TRUE(runSql(file(kFilters), "DELETE FROM value"));
    // The build finds no key, and has to wait before it can write one.
    const Locker client(file(kFilters), milliseconds(100), "INSERT INTO value VALUES ('" + key + "', 0)");
    start();
    ASSERT_FALSE(included(1)) << "round " << round;
    ASSERT_FALSE(makeDataStore(kFilters)->getBool(key)) << "round " << round;
  }
}

TEST_F(SharedStoresTest, aFirstStartDoesNotOverwriteASettingOfAnotherProcess) {
  for (int round = 0; round < 5; ++round) {
    stop();
    ASSERT_TRUE(runSql(file(kSettings), "DELETE FROM value"));
    const Locker client(file(kSettings), milliseconds(100), "INSERT INTO value VALUES ('PollInterval', 7)");
    start();
    ASSERT_EQ(setting("PollInterval"), CmpiData(std::uint32_t{7})) << "round " << round;
  }
}

// --- damage ---

TEST_F(SharedStoresTest, aFilterStoreThatIsDamagedWhileItIsOpenHeals) {
  ASSERT_EQ(include(2, false), CMPI_RC_OK);
  EXPECT_EQ(groupStatus(), 2U);
  log->clear();
  std::ofstream(file(kFilters), std::ios::in | std::ios::out) << std::string(9000, 'n');
  EXPECT_EQ(include(1, false), CMPI_RC_OK);
  EXPECT_FALSE(included(2));
  host.addPort(4, "eth2");
  host.play();
  pass();
  EXPECT_EQ(enumerate("ZEB_EthernetPort").size(), 3U) << "all was built anew";
  EXPECT_EQ(groupStatus(), 2U);
  EXPECT_FALSE(included(1));
  EXPECT_FALSE(included(2));
  restart();
  EXPECT_FALSE(included(1));
  EXPECT_FALSE(included(2));
  EXPECT_EQ(
      std::ranges::count_if(log->lines(), [](const auto& line) { return line.level != LogLevel::Info; }), 1);
}

TEST_F(SharedStoresTest, aNegativeFormatIsDamage) {
  ASSERT_EQ(set("PollInterval", std::uint32_t{60}), CMPI_RC_OK);
  ASSERT_TRUE(runSql(file(kSettings), "PRAGMA user_version = -1"));
  EXPECT_EQ(set("PollInterval", std::uint32_t{61}), CMPI_RC_OK);
  ASSERT_TRUE(runSql(file(kSettings), "PRAGMA user_version = -1000000"));
  restart();
  EXPECT_TRUE(log->mentions(LogLevel::Error, "its format -1000000 is none"));
}

TEST_F(SharedStoresTest, aStoreThatWasCutToNothingIsSaid) {
  stop();
  std::filesystem::resize_file(file(kSettings), 0);
  log->clear();
  start();
  EXPECT_TRUE(log->mentions(LogLevel::Error, "ZEB_EthEventSettings.db was empty: a fresh one begins"));
}

// --- no room ---

/// In a process of its own, in which no file may grow.
int withoutRoom(const std::function<int(const std::function<void()>& makeRoom)>& body) {
  return ChildProcess([&] {
           signal(SIGXFSZ, SIG_IGN);
           const rlimit none{100, RLIM_INFINITY};
           if (setrlimit(RLIMIT_FSIZE, &none) != 0) return 99;
           return body([] {
             const rlimit all{RLIM_INFINITY, RLIM_INFINITY};
             if (setrlimit(RLIMIT_FSIZE, &all) != 0) throw std::runtime_error("setrlimit");
           });
         })
      .wait();
}

TEST_F(SharedStoresTest, aMissingKeyOnAFullDiskLeavesTheOtherSettingsAsTheyAreKept) {
  ASSERT_EQ(set("MonitorPorts", false), CMPI_RC_OK);
  stop();
  ASSERT_TRUE(runSql(file(kSettings), "DELETE FROM value WHERE key = 'FloodThreshold'"));
  EXPECT_EQ(withoutRoom([&](const std::function<void()>& makeRoom) {
              start();
              if (setting("MonitorPorts") != CmpiData(false)) return 1;
              if (setting("FloodThreshold") != CmpiData(std::uint32_t{10})) return 2;
              if (set("MonitorPorts", true) != CMPI_RC_ERR_FAILED) return 3;
              if (setting("MonitorPorts") != CmpiData(false)) return 4;
              makeRoom();
              if (set("MonitorPorts", true) != CMPI_RC_OK) return 5;
              return makeDataStore(kSettings)->getBool("MonitorPorts") ? 0 : 6;
            }),
            0);
  start();
}

TEST_F(SharedStoresTest, aRefusedChangeKeepsNobodyElseFromWriting) {
  stop();
  EXPECT_EQ(withoutRoom([&](const std::function<void()>& makeRoom) {
              start();
              if (set("PollInterval", std::uint32_t{60}) != CMPI_RC_ERR_FAILED) return 1;
              if (include(2, false) != CMPI_RC_ERR_FAILED) return 2;
              if (!included(2) || setting("PollInterval") != CmpiData(std::uint32_t{200})) return 3;
              makeRoom();
              const char* const lock = "PRAGMA busy_timeout = 0; BEGIN EXCLUSIVE";
              return runSql(file(kSettings), lock) && runSql(file(kFilters), lock) ? 0 : 4;
            }),
            0);
  start();
}

TEST_F(SharedStoresTest, aFilterWithoutAKeyIsSaidNotToBeKept) {
  const std::string key = keyOf(2);
  stop();
  ASSERT_TRUE(runSql(file(kFilters), "DELETE FROM value"));
  EXPECT_EQ(withoutRoom([&](const std::function<void()>&) {
              start();
              log->clear();
              if (include(2, false) != CMPI_RC_OK || included(2)) return 1;
              return log->has(LogLevel::Warn, "datastore has no key " + key + ", modify not persistent") ? 0
                                                                                                         : 2;
            }),
            0);
  start();
}

}  // namespace
}  // namespace ZEB::test
