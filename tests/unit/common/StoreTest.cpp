#include <dlfcn.h>
#include <sqlite3.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <functional>
#include <thread>

#include "StoreFixture.h"
#include "cmpicpp/CmpiStatus.h"
#include "posix/ChildProcess.h"
#include "posix/Pipe.h"

// Every file and directory that was forced to disk. Defined here, they stand before those of the C library.
namespace {
std::vector<std::string> synced;

int noteAndSync(int file, long call) {
  std::error_code error;
  synced.push_back(std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(file), error));
  return static_cast<int>(syscall(call, file));
}
}  // namespace

extern "C" __attribute__((visibility("default"))) int fsync(int file) {
  return noteAndSync(file, SYS_fsync);
}
extern "C" __attribute__((visibility("default"))) int fdatasync(int file) {
  return noteAndSync(file, SYS_fdatasync);
}

// Once, as soon as a transaction is over.
static std::function<void()> afterCommit;

extern "C" __attribute__((visibility("default"))) int sqlite3_exec(sqlite3* database, const char* sql,
                                                                   int (*row)(void*, int, char**, char**),
                                                                   void* context, char** error) {
  static const auto real = reinterpret_cast<decltype(&sqlite3_exec)>(dlsym(RTLD_NEXT, "sqlite3_exec"));
  const int result = real(database, sql, row, context, error);
  if (afterCommit && std::string_view(sql) == "COMMIT") std::exchange(afterCommit, nullptr)();
  return result;
}

// What a store keeps, and who sees it when.

namespace ZEB::test {
namespace {

namespace fs = std::filesystem;

TEST_F(StoreTest, aNewStoreIsEmpty) {
  const auto store = open();
  ASSERT_TRUE(store);
  EXPECT_FALSE(store->exists("a"));
  EXPECT_EQ(store->getUInt32("a"), 0u);
  EXPECT_FALSE(store->getBool("a"));
}

TEST_F(StoreTest, keepsWhatIsWrittenThroughClosing) {
  {
    const auto store = open();
    store->setUInt32("zero", 0);
    store->setUInt32("largest", 4294967295u);
    store->setBool("yes", true);
    store->setBool("no", false);
    store->setUInt32("changed", 1);
    store->setUInt32("changed", 2);
  }
  const auto store = open();
  EXPECT_TRUE(store->exists("zero"));
  EXPECT_EQ(store->getUInt32("zero"), 0u);
  EXPECT_EQ(store->getUInt32("largest"), 4294967295u);
  EXPECT_TRUE(store->getBool("yes"));
  EXPECT_TRUE(store->exists("no"));
  EXPECT_FALSE(store->getBool("no"));
  EXPECT_EQ(store->getUInt32("changed"), 2u);
}

TEST_F(StoreTest, keysAreAnyText) {
  const std::string path =
      "//h\"ost/root/jxv:ZEB_EthernetPort.DeviceID=\"JXV:ZEB_EthernetPort:1\",Name=\"a'b;--\\\"\xC3\xA4\"";
  const auto store = open();
  store->setBool(path, true);
  EXPECT_TRUE(store->exists(path));
  EXPECT_FALSE(store->exists("//H\"OST" + path.substr(8))) << "keys are told apart by case";
  store->setBool("", true);
  EXPECT_TRUE(store->exists(""));
}

TEST_F(StoreTest, storesOfDifferentNamesAreDifferentFiles) {
  makeDataStore("S")->setBool("a", true);
  EXPECT_FALSE(makeDataStore("T")->exists("a"));
  EXPECT_TRUE(fs::exists(directory.file("stores/S.db")));
  EXPECT_TRUE(fs::exists(directory.file("stores/T.db")));
}

TEST_F(StoreTest, theDirectoryIsMadeForItsOwnerAlone) {
  const Environment deeper("ZEB_STORE_DIR", directory.file("var/lib/stores"));
  ASSERT_TRUE(open());
  struct stat status {};
  ASSERT_EQ(stat(directory.file("var/lib/stores").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0700u);
}

TEST_F(StoreTest, aWriteIsOnDiskWhenItReturns) {
  const auto store = open();
  store->setUInt32("a", 6);
  synced.clear();
  store->setUInt32("a", 7);
  EXPECT_FALSE(fs::exists(file() + "-journal"));
  EXPECT_FALSE(fs::exists(file() + "-wal"));
  // The journal before the file is touched, the file, and last the directory, without which a power cut could
  // bring the journal back and undo the write.
  ASSERT_GE(synced.size(), 3u);
  EXPECT_EQ(synced.back(), directory.file("stores"));
  EXPECT_THAT(synced, testing::IsSupersetOf({file(), file() + "-journal"}));
}

TEST_F(StoreTest, defaultsAreOneTransaction) {
  const auto store = open();
  DataStore::Values defaults;
  for (std::uint32_t i = 0; i < 10000; ++i) defaults.emplace("key " + std::to_string(i), i);
  synced.clear();
  store->addDefaults(defaults);
  EXPECT_EQ(std::ranges::count(synced, directory.file("stores")), 2) << "for the journal's coming and going";
  EXPECT_EQ(*store->values(), defaults);
  EXPECT_EQ(*open()->values(), defaults);
}

TEST_F(StoreTest, aDefaultIsWrittenOnlyWhereNoRowIs) {
  const auto store = open();
  store->setBool("there", false);
  store->addDefaults({{"there", 1}, {"missing", 1}});
  EXPECT_FALSE(store->getBool("there"));
  EXPECT_TRUE(store->getBool("missing"));
  EXPECT_FALSE(open()->getBool("there"));
}

TEST_F(StoreTest, defaultsThatAreThereTouchNothing) {
  const auto store = open();
  store->addDefaults({{"a", 1}, {"b", 0}});
  synced.clear();
  store->addDefaults({{"a", 0}, {"b", 1}});
  store->addDefaults({});
  EXPECT_THAT(synced, testing::IsEmpty());
}

TEST_F(StoreTest, defaultsDoNotOverwriteWhatAnotherProcessHasJustKept) {
  const auto store = open();
  ASSERT_TRUE(sql("INSERT INTO value VALUES ('a', 0)"));
  store->addDefaults({{"a", 1}});
  EXPECT_EQ(store->values()->at("a"), 0u);
  EXPECT_EQ(open()->values()->at("a"), 0u);
}

TEST_F(StoreTest, defaultsDoNotOverwriteWhatAnotherProcessKeepsMeanwhile) {
  const auto store = open();
  const Locker other(file(), std::chrono::milliseconds(100), "INSERT INTO value VALUES ('a', 0)");
  store->addDefaults({{"a", 1}});
  EXPECT_EQ(store->getUInt32("a"), 0u);
}

TEST_F(StoreTest, whatAnotherProcessKeepsRightAfterAChangeIsSeen) {
  const auto store = open();
  store->setUInt32("a", 1);
  afterCommit = [this] {
    EXPECT_TRUE(sql("UPDATE value SET number = 7"));
    // Later than any stamp that the file has got by it.
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  };
  store->setUInt32("b", 2);
  EXPECT_EQ(store->getUInt32("a"), 7u);
}

TEST_F(StoreTest, theValuesAreTheSameObjectWhileNothingChanges) {
  const auto store = open();
  store->setUInt32("a", 1);
  const auto before = store->values();
  EXPECT_EQ(store->values(), before);
  ASSERT_TRUE(sql("UPDATE value SET number = 2"));
  EXPECT_NE(store->values(), before);
  EXPECT_EQ(before->at("a"), 1u) << "what was handed out stays as it was";
}

TEST_F(StoreTest, readsSeeWhatAnotherProcessHasWritten) {
  const auto store = open();
  for (std::uint32_t i = 1; i <= 50; ++i) {
    ASSERT_TRUE(sql("INSERT OR REPLACE INTO value VALUES ('a', " + std::to_string(i) + ")"));
    ASSERT_EQ(store->getUInt32("a"), i);
  }
}

TEST_F(StoreTest, twoStoresOfOneProcessSeeEachOthersWrites) {
  const auto one = open();
  const auto other = open();
  for (std::uint32_t i = 1; i <= 50; ++i) {
    one->setUInt32("a", i);
    ASSERT_EQ(other->getUInt32("a"), i);
    other->setUInt32("b", i);
    ASSERT_EQ(one->getUInt32("b"), i);
    ASSERT_EQ(one->getUInt32("a"), i);
  }
}

TEST_F(StoreTest, readingKeepsNobodyFromWriting) {
  const auto store = open();
  store->setUInt32("a", 1);
  EXPECT_EQ(store->getUInt32("a"), 1u);
  EXPECT_TRUE(sql("BEGIN EXCLUSIVE"));
}

TEST_F(StoreTest, isSafeFromSeveralThreads) {
  const auto store = open();
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([&, t] {
      const std::string key = "thread " + std::to_string(t);
      for (std::uint32_t i = 1; i <= 50; ++i) {
        store->setUInt32(key, i);
        EXPECT_EQ(store->getUInt32(key), i);
      }
    });
  }
  for (auto& thread : threads) thread.join();
}

}  // namespace
}  // namespace ZEB::test
