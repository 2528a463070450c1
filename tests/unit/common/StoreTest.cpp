#include <gmock/gmock.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <thread>

#include "cmpicpp/CmpiStatus.h"
#include "common/DataStore.h"
#include "posix/ChildProcess.h"
#include "posix/Pipe.h"
#include "support/Environment.h"
#include "support/FilesInMemory.h"
#include "support/ProcessLog.h"
#include "support/StoreTrouble.h"
#include "support/TestFolder.h"

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

// What a store keeps, and what becomes of it when its file or its directory is not what it should be.

namespace ZEB::test {
namespace {

namespace fs = std::filesystem;

class StoreTest : public testing::Test {
 protected:
  std::string file() const { return directory.file("stores/S.db"); }
  static std::unique_ptr<DataStore> open() { return makeDataStore("S"); }

  /// Runs SQL on the store's file, as a process of its own would.
  bool sql(const std::string& statements) const { return runSql(file(), statements); }

  static void fillSomePages() {
    DataStore::Values values{{"kept", 1}};
    for (std::uint32_t i = 0; i < 2000; ++i) values.emplace("a key of some length " + std::to_string(i), i);
    open()->addDefaults(values);
  }

  void overwrite(std::size_t from, std::size_t count) const {
    std::fstream out(file(), std::ios::in | std::ios::out | std::ios::binary);
    out.seekp(static_cast<std::streamoff>(from));
    for (std::size_t i = 0; i < count; ++i) out.put(static_cast<char>(0xA5 ^ (i * 7)));
  }

  /// Asserts that the file was put aside as `aside`, byte by byte, that the log says so, and that a store
  /// without values is there in its place and works.
  void expectFreshStore(const std::string& damagedContent, const std::string& aside) {
    const auto store = open();
    ASSERT_TRUE(store);
    EXPECT_FALSE(store->exists("kept"));
    EXPECT_EQ(TestFolder::read(aside), damagedContent);
    EXPECT_TRUE(log.sink->mentions(LogLevel::Error, "kept as " + aside));
    store->setUInt32("kept", 3);
    EXPECT_EQ(open()->getUInt32("kept"), 3u);
  }

  FilesInMemory inMemory;
  TestFolder directory;
  Environment storeDirectory{"ZEB_STORE_DIR", directory.file("stores")};
  ProcessLog log;
};

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

// --- files that are not what they should be ---

TEST_F(StoreTest, anEmptyFileIsANewStoreAndTheLogSaysSo) {
  fs::create_directories(directory.file("stores"));
  directory.write("stores/S.db", "");
  const auto store = open();
  ASSERT_TRUE(store);
  store->setUInt32("a", 1);
  EXPECT_EQ(open()->getUInt32("a"), 1u);
  EXPECT_THAT(log.sink->texts(), testing::ElementsAre("store " + file() + " was empty: a fresh one begins"));
}

TEST_F(StoreTest, noiseIsPutAside) {
  fs::create_directories(directory.file("stores"));
  std::string noise;
  for (int i = 0; i < 20000; ++i) noise += static_cast<char>(i * 31 + i / 7);
  directory.write("stores/S.db", noise);
  expectFreshStore(noise, file() + ".damaged-1");
}

TEST_F(StoreTest, aFileCutOffIsPutAside) {
  fillSomePages();
  fs::resize_file(file(), fs::file_size(file()) / 2);
  expectFreshStore(TestFolder::read(file()), file() + ".damaged-1");
}

TEST_F(StoreTest, aFileCutOffWithinItsHeaderIsPutAside) {
  open()->setUInt32("kept", 1);
  fs::resize_file(file(), 50);
  expectFreshStore(TestFolder::read(file()), file() + ".damaged-1");
}

TEST_F(StoreTest, aDamagedPageIsPutAside) {
  fillSomePages();
  overwrite(4096, 4096);
  expectFreshStore(TestFolder::read(file()), file() + ".damaged-1");
}

TEST_F(StoreTest, aValueThatCannotBeIsDamage) {
  open()->setUInt32("kept", 1);
  ASSERT_TRUE(sql("PRAGMA ignore_check_constraints = ON; UPDATE value SET number = -1"));
  expectFreshStore(TestFolder::read(file()), file() + ".damaged-1");
}

TEST_F(StoreTest, theDatabaseOfAnotherProgramIsPutAside) {
  fs::create_directories(directory.file("stores"));
  ASSERT_TRUE(sql("CREATE TABLE theirs (x); INSERT INTO theirs VALUES (1)"));
  expectFreshStore(TestFolder::read(file()), file() + ".damaged-1");
}

TEST_F(StoreTest, everyDamagedFileIsKept) {
  fs::create_directories(directory.file("stores"));
  for (int i = 1; i <= 3; ++i) {
    const std::string noise = std::string(3000, static_cast<char>('a' + i));
    directory.write("stores/S.db", noise);
    expectFreshStore(noise, file() + ".damaged-" + std::to_string(i));
  }
}

TEST_F(StoreTest, theJournalOfADamagedFileGoesWithIt) {
  fs::create_directories(directory.file("stores"));
  directory.write("stores/S.db", std::string(3000, 'x'));
  directory.write("stores/S.db-journal", std::string(3000, 'y'));
  ASSERT_TRUE(open());
  EXPECT_FALSE(fs::exists(file() + "-journal"));
}

TEST_F(StoreTest, aNewerFormatIsRefusedAndLeftAlone) {
  open()->setUInt32("kept", 1);
  ASSERT_TRUE(sql("PRAGMA user_version = 2"));
  const std::string before = TestFolder::read(file());
  const auto store = open();
  ASSERT_TRUE(store);
  EXPECT_FALSE(store->exists("kept"));
  EXPECT_THROW(store->setUInt32("kept", 2), CmpiCpp::CmpiStatus);
  EXPECT_TRUE(log.sink->mentions(LogLevel::Error, "its format 2 is newer than 1"));
  EXPECT_EQ(log.sink->lines().size(), 1u);
  EXPECT_EQ(TestFolder::read(file()), before);
}

TEST_F(StoreTest, aNegativeFormatIsDamage) {
  open()->setUInt32("kept", 1);
  ASSERT_TRUE(sql("PRAGMA user_version = -1"));
  expectFreshStore(TestFolder::read(file()), file() + ".damaged-1");
}

TEST_F(StoreTest, aNewerFormatWithAStructureOfItsOwnIsRefusedToo) {
  open()->setUInt32("kept", 1);
  ASSERT_TRUE(sql("ALTER TABLE value RENAME TO setting; PRAGMA user_version = 7"));
  const auto store = open();
  EXPECT_THROW(store->setUInt32("kept", 2), CmpiCpp::CmpiStatus);
  ASSERT_TRUE(sql("PRAGMA user_version = 1; ALTER TABLE setting RENAME TO value"));
  EXPECT_EQ(store->getUInt32("kept"), 1u) << "an older program has brought it back";
}

TEST_F(StoreTest, aFileOfFormatZeroIsUpgraded) {
  open();
  ASSERT_TRUE(sql("DROP TABLE value; PRAGMA user_version = 0"));
  const auto store = open();
  ASSERT_TRUE(store);
  store->setUInt32("a", 1);
  EXPECT_TRUE(
      sql("CREATE TEMP TABLE t (x CHECK (x = 1));"
          "INSERT INTO t SELECT user_version FROM pragma_user_version"));
}

TEST_F(StoreTest, aFileInPlaceOfTheDirectoryIsNoStore) {
  directory.write("stores", "a file");
  EXPECT_FALSE(open());
  EXPECT_TRUE(log.sink->mentions(LogLevel::Error, "cannot be opened"));
  EXPECT_EQ(TestFolder::read(directory.file("stores")), "a file");
}

TEST_F(StoreTest, aDirectoryInPlaceOfTheFileIsNoStore) {
  fs::create_directories(file());
  EXPECT_FALSE(open());
  EXPECT_TRUE(fs::is_directory(file()));
}

TEST_F(StoreTest, theWriteAheadLogOfADamagedFileGoesWithIt) {
  fs::create_directories(directory.file("stores"));
  directory.write("stores/S.db", std::string(3000, 'x'));
  directory.write("stores/S.db-wal", std::string(3000, 'y'));
  ASSERT_TRUE(open());
  EXPECT_FALSE(fs::exists(file() + "-wal"));
}

TEST_F(StoreTest, aFileThatAnotherProgramKeepsAWriteAheadLogOfIsLeftAlone) {
  const auto store = open();
  store->setUInt32("kept", 1);
  const Pipe started = makePipe();
  {
    ChildProcess other([&] {
      sqlite3* database = nullptr;
      if (sqlite3_open(file().c_str(), &database) != SQLITE_OK) return 1;
      const char* const statements = "PRAGMA journal_mode = WAL; UPDATE value SET number = 2";
      if (sqlite3_exec(database, statements, nullptr, nullptr, nullptr) != SQLITE_OK) return 2;
      if (write(started.writing.get(), "x", 1) != 1) return 3;
      pause();
      return 0;
    });
    char ready = 0;
    ASSERT_EQ(read(started.reading.get(), &ready, 1), 1);
    EXPECT_THROW(store->setUInt32("kept", 3), CmpiCpp::CmpiStatus);
    EXPECT_EQ(store->getUInt32("kept"), 1u);
    EXPECT_TRUE(log.sink->mentions(LogLevel::Error, "cannot be opened: "));
  }
  EXPECT_EQ(store->getUInt32("kept"), 2u);
  store->setUInt32("kept", 3);
  EXPECT_EQ(open()->getUInt32("kept"), 3u);
}

TEST_F(StoreTest, aFileWithAWriteAheadLogIsBroughtBackToAJournal) {
  open()->setUInt32("kept", 1);
  ASSERT_TRUE(sql("PRAGMA journal_mode = WAL; UPDATE value SET number = 2"));
  EXPECT_EQ(open()->getUInt32("kept"), 2u);
  EXPECT_FALSE(fs::exists(file() + "-wal"));
}

}  // namespace
}  // namespace ZEB::test
