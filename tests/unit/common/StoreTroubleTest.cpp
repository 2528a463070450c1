#include <gmock/gmock.h>
#include <signal.h>
#include <sys/resource.h>

#include <random>
#include <thread>

#include "SqliteStore.h"
#include "cmpicpp/CmpiStatus.h"
#include "posix/ChildProcess.h"
#include "support/Environment.h"
#include "support/FilesInMemory.h"
#include "support/Length.h"
#include "support/ProcessLog.h"
#include "support/StoreTrouble.h"
#include "support/TestFolder.h"

// Stores under kills, full disks, and other processes. Every round works in processes of its own.

namespace ZEB::test {
namespace {

using CmpiCpp::CmpiStatus;

class StoreTroubleTest : public testing::Test {
 protected:
  static std::unique_ptr<DataStore> open() { return makeDataStore("S"); }

  /// How often the log speaks of what is in that directory, and not of what goes on again.
  long linesAbout(const std::string& path) const {
    return std::ranges::count_if(log.sink->lines(), [&](const RecordingLogSink::Line& line) {
      return line.level != LogLevel::Info && line.text.find(path) != std::string::npos;
    });
  }

  FilesInMemory inMemory;
  TestFolder directory;
  Environment storeDirectory{"ZEB_STORE_DIR", directory.file("stores")};
  ProcessLog log;
};

/// Counts up: a single write, and two that belong together.
int countUp(const std::string& mine, std::uint32_t from, const Acknowledgements& acknowledgements) {
  const auto store = makeDataStore("S");
  for (std::uint32_t number = from;; ++number) {
    const std::string n = std::to_string(number);
    store->setUInt32(mine, number);
    store->addDefaults({{mine + " left " + n, number}, {mine + " right " + n, number}});
    acknowledgements.give(number);
  }
}

/// A writer that counts up under keys of its own until it is killed.
class Counter {
 public:
  Counter(std::string name, std::uint32_t from)
      : _name(std::move(name)),
        _from(from),
        _process([this] { return countUp(_name, _from, _acknowledged); }) {
    _acknowledged.waitForFirst();
  }

  void kill() {
    _process.kill();
    ASSERT_EQ(_process.wait(), -SIGKILL);
  }
  /// All that it was told is kept is there, and nothing is torn.
  void check(const DataStore::Values& kept) {
    const std::uint32_t acknowledged = std::max(_acknowledged.last(), _from);
    const std::uint32_t single = kept.at(_name);
    ASSERT_TRUE(single == acknowledged || single == acknowledged + 1) << single << " " << acknowledged;
    for (std::uint32_t n = _from; n <= acknowledged + 1; ++n) {
      const bool left = kept.contains(_name + " left " + std::to_string(n));
      ASSERT_EQ(left, kept.contains(_name + " right " + std::to_string(n)));
      ASSERT_TRUE(left || n > acknowledged);
    }
    next = single + 1;
  }

  std::uint32_t next = 0;  ///< the number to go on with

 private:
  const std::string _name;
  const std::uint32_t _from;
  Acknowledgements _acknowledged;
  ChildProcess _process;
};

TEST_F(StoreTroubleTest, killsOfTwoWritersAtRandomMomentsLoseNothingAndTearNothing) {
  std::mt19937 random(20260102);
  std::uniform_int_distribution<int> microseconds(0, 20000);
  std::uint32_t first = 1;
  std::uint32_t second = 1;
  for (int round = 0; round < length(50, 1000); ++round) {
    Counter one("one", first);
    Counter other("other", second);
    std::this_thread::sleep_for(std::chrono::microseconds(microseconds(random)));
    one.kill();
    std::this_thread::sleep_for(std::chrono::microseconds(microseconds(random) / 4));
    other.kill();

    const auto store = open();
    ASSERT_TRUE(store);
    const auto kept = store->values();
    one.check(*kept);
    other.check(*kept);
    if (HasFatalFailure()) FAIL() << "round " << round;
    first = one.next;
    second = other.next;
  }
  EXPECT_THAT(log.sink->lines(), testing::IsEmpty()) << "nothing was damaged";
}

TEST_F(StoreTroubleTest, killsDuringTheFirstOpeningLeaveAStoreThatOpens) {
  std::mt19937 random(7);
  std::uniform_int_distribution<int> microseconds(0, 4000);
  for (int round = 0; round < length(50, 1000); ++round) {
    std::filesystem::remove_all(directory.file("stores"));
    ChildProcess opener([&] { return open() ? 0 : 1; });
    std::this_thread::sleep_for(std::chrono::microseconds(microseconds(random)));
    opener.kill();
    opener.wait();
    const auto store = open();
    ASSERT_TRUE(store) << "round " << round;
    store->setUInt32("a", 1);
    ASSERT_EQ(store->getUInt32("a"), 1u);
  }
  EXPECT_FALSE(std::filesystem::exists(directory.file("stores/S.db.damaged-1")));
}

bool writeFails(DataStore& store, const std::string& key) {
  try {
    store.setUInt32(key, 5);
    return false;
  } catch (const CmpiStatus& status) {
    return status.rc() == CMPI_RC_ERR_FAILED;
  }
}

TEST_F(StoreTroubleTest, twoProcessesAtOnceLoseNoWrite) {
  constexpr std::uint32_t kWrites = 200;
  const auto writeAll = [&](const std::string& mine) {
    const auto store = makeDataStore("S");
    if (!store) return 1;
    for (std::uint32_t i = 0; i < kWrites; ++i) {
      store->setUInt32(mine + std::to_string(i), i);
      store->setUInt32("shared", i);
    }
    return 0;
  };
  ChildProcess first([&] { return writeAll("first "); });
  ChildProcess second([&] { return writeAll("second "); });
  EXPECT_EQ(first.wait(), 0);
  EXPECT_EQ(second.wait(), 0);
  const auto store = open();
  for (std::uint32_t i = 0; i < kWrites; ++i) {
    ASSERT_EQ(store->getUInt32("first " + std::to_string(i)), i);
    ASSERT_EQ(store->getUInt32("second " + std::to_string(i)), i);
    ASSERT_TRUE(store->exists("second " + std::to_string(i)));
  }
}

TEST_F(StoreTroubleTest, processesThatOpenADamagedStoreAtOnceAgreeOnTheFreshOne) {
  for (int round = 0; round < length(10, 200); ++round) {
    std::filesystem::remove_all(directory.file("stores"));
    std::filesystem::create_directories(directory.file("stores"));
    directory.write("stores/S.db", std::string(5000, 'n'));
    const auto openAndWrite = [&](const char* mine) {
      const auto store = makeDataStore("S");
      if (!store) return 1;
      store->setUInt32(mine, 1);
      return 0;
    };
    ChildProcess first([&] { return openAndWrite("first"); });
    ChildProcess second([&] { return openAndWrite("second"); });
    ASSERT_EQ(first.wait(), 0);
    ASSERT_EQ(second.wait(), 0);
    const auto store = open();
    ASSERT_TRUE(store->exists("first") && store->exists("second")) << "round " << round;
    ASSERT_FALSE(std::filesystem::exists(directory.file("stores/S.db.damaged-2")));
  }
}

TEST_F(StoreTroubleTest, aStoreThatIsLockedWhenItIsOpenedIsLeftAloneAndReadOnceItIsFree) {
  open()->setUInt32("a", 1);
  const std::string file = directory.file("stores/S.db");
  auto locker = std::make_unique<Locker>(file);
  SqliteStore store(file, std::chrono::milliseconds(100), Logger("DataStore"));
  const auto began = std::chrono::steady_clock::now();
  for (int i = 0; i < 20; ++i) EXPECT_FALSE(store.exists("a"));
  EXPECT_LT(std::chrono::steady_clock::now() - began, std::chrono::seconds(1)) << "it has waited once";
  store.addDefaults({{"a", 5}});
  EXPECT_TRUE(writeFails(store, "a"));
  EXPECT_THAT(log.sink->texts(),
              testing::ElementsAre("store " + file + " cannot be opened: database is locked"));
  locker.reset();
  EXPECT_EQ(store.getUInt32("a"), 1u);
  store.setUInt32("a", 2);
  EXPECT_EQ(open()->getUInt32("a"), 2u);
}

TEST_F(StoreTroubleTest, readsDoNotWaitForALockUnderWhichNothingWasWritten) {
  const std::string file = directory.file("stores/S.db");
  SqliteStore store(file, std::chrono::milliseconds(5000), Logger());
  store.setUInt32("a", 1);
  EXPECT_EQ(store.getUInt32("a"), 1u);
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  EXPECT_EQ(store.getUInt32("a"), 1u);
  const Locker locker(file);
  const auto began = std::chrono::steady_clock::now();
  EXPECT_EQ(store.getUInt32("a"), 1u);
  EXPECT_LT(std::chrono::steady_clock::now() - began, std::chrono::seconds(1));
}

TEST_F(StoreTroubleTest, aWriteWaitsForTheLockOfAnotherProcess) {
  const auto store = open();
  auto locker = std::make_unique<Locker>(directory.file("stores/S.db"));
  std::thread release([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    locker.reset();
  });
  store->setUInt32("a", 1);
  release.join();
  EXPECT_EQ(store->getUInt32("a"), 1u);
}

TEST_F(StoreTroubleTest, aWriteThatFindsTheStoreLockedFailsAndTheNextOneWorks) {
  const std::string file = directory.file("stores/S.db");
  SqliteStore store(file, std::chrono::milliseconds(100), Logger());
  {
    const Locker locker(file);
    try {
      store.setUInt32("a", 1);
      ADD_FAILURE() << "the write was accepted";
    } catch (const CmpiStatus& status) {
      EXPECT_EQ(status.rc(), CMPI_RC_ERR_FAILED);
      EXPECT_THAT(status.msg(), testing::HasSubstr("locked"));
    }
  }
  store.setUInt32("a", 2);
  EXPECT_EQ(store.getUInt32("a"), 2u);
}

std::string failureOf(const std::string& name) {
  for (const DataStoreState& state : dataStoreStates()) {
    if (state.name == name) return state.failure;
  }
  return "not asked for";
}

TEST_F(StoreTroubleTest, aFullDiskFailsTheWriteAndLosesNothing) {
  const std::string stores = directory.file("stores");
  const int result = onSmallDisk(stores, [&] {
    const auto store = open();
    if (!store) return 1;
    store->setUInt32("kept", 4);
    fillDisk(stores);
    if (!writeFails(*store, "lost")) return 2;
    if (store->getUInt32("kept") != 4 || store->exists("lost")) return 3;
    store->addDefaults({{"lost too", 1}, {"kept", 1}});
    store->addDefaults({{"lost again", 1}});
    if (linesAbout(stores) != 1 || failureOf("S").empty()) return 4;
    if (store->exists("lost") || !runSql(stores + "/S.db", "PRAGMA busy_timeout = 0; BEGIN EXCLUSIVE"))
      return 8;
    std::filesystem::remove(stores + "/filler");
    store->setUInt32("later", 6);
    const auto again = open();
    if (!again || again->getUInt32("kept") != 4 || again->getUInt32("later") != 6) return 6;
    if (!failureOf("S").empty()) return 5;
    return again->exists("lost") || again->exists("lost too") ? 7 : 0;
  });
  if (result == kNoDisk) GTEST_SKIP() << "no file system can be mounted here";
  EXPECT_EQ(result, 0);
}

TEST_F(StoreTroubleTest, aFullDiskAtTheFirstOpeningIsAStoreThatRefusesUntilThereIsRoom) {
  const std::string stores = directory.file("stores");
  const int result = onSmallDisk(stores, [&] {
    fillDisk(stores);
    const auto store = open();
    if (!store || store->exists("a")) return 1;
    store->addDefaults({{"a", 1}});
    if (!writeFails(*store, "a")) return 2;
    if (linesAbout(stores) != 1 || failureOf("S").empty()) return 3;
    std::filesystem::remove(stores + "/filler");
    store->setUInt32("a", 5);
    return open()->getUInt32("a") == 5 && failureOf("S").empty() ? 0 : 4;
  });
  if (result == kNoDisk) GTEST_SKIP() << "no file system can be mounted here";
  EXPECT_EQ(result, 0);
}

TEST_F(StoreTroubleTest, aReadOnlyDiskServesWhatIsKeptAndRefusesWrites) {
  const std::string stores = directory.file("stores");
  const int result = onSmallDisk(stores, [&] {
    open()->setUInt32("kept", 4);
    makeReadOnly(stores, true);
    const auto store = open();
    if (!store) return 1;
    if (store->getUInt32("kept") != 4) return 2;
    if (!writeFails(*store, "kept")) return 3;
    store->addDefaults({{"missing", 1}});
    if (linesAbout(stores) != 1 || failureOf("S") != "attempt to write a readonly database") return 4;
    return store->getUInt32("kept") == 4 && !store->exists("missing") ? 0 : 5;
  });
  if (result == kNoDisk) GTEST_SKIP() << "no file system can be mounted here";
  EXPECT_EQ(result, 0);
}

TEST_F(StoreTroubleTest, aFileThatMayNotGrowFailsTheWriteAndLosesNothing) {
  const int result = ChildProcess([&] {
                       const auto store = open();
                       store->setUInt32("kept", 4);
                       signal(SIGXFSZ, SIG_IGN);
                       const rlimit limit{600, RLIM_INFINITY};
                       if (setrlimit(RLIMIT_FSIZE, &limit) != 0) return 1;
                       if (!writeFails(*store, "lost")) return 2;
                       const rlimit none{RLIM_INFINITY, RLIM_INFINITY};
                       if (setrlimit(RLIMIT_FSIZE, &none) != 0) return 3;
                       store->setUInt32("later", 6);
                       return store->getUInt32("kept") == 4 && !store->exists("lost") ? 0 : 4;
                     }).wait();
  EXPECT_EQ(result, 0);
  EXPECT_EQ(open()->getUInt32("later"), 6u);
}

}  // namespace
}  // namespace ZEB::test
