#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include "SqliteStore.h"
#include "StoreFixture.h"
#include "cmpicpp/CmpiStatus.h"
#include "posix/ChildProcess.h"
#include "posix/Pipe.h"
#include "support/Content.h"

// What becomes of a store when its file or its directory is not what it should be.

namespace ZEB::test {
namespace {

namespace fs = std::filesystem;

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
  expectFreshStore(contentOf(file()), file() + ".damaged-1");
}

TEST_F(StoreTest, aFileCutOffWithinItsHeaderIsPutAside) {
  open()->setUInt32("kept", 1);
  fs::resize_file(file(), 50);
  expectFreshStore(contentOf(file()), file() + ".damaged-1");
}

TEST_F(StoreTest, aDamagedPageIsPutAside) {
  fillSomePages();
  overwrite(4096, 4096);
  expectFreshStore(contentOf(file()), file() + ".damaged-1");
}

TEST_F(StoreTest, aValueThatCannotBeIsDamage) {
  open()->setUInt32("kept", 1);
  ASSERT_TRUE(sql("PRAGMA ignore_check_constraints = ON; UPDATE value SET number = -1"));
  expectFreshStore(contentOf(file()), file() + ".damaged-1");
}

TEST_F(StoreTest, theDatabaseOfAnotherProgramIsPutAside) {
  fs::create_directories(directory.file("stores"));
  ASSERT_TRUE(sql("CREATE TABLE theirs (x); INSERT INTO theirs VALUES (1)"));
  expectFreshStore(contentOf(file()), file() + ".damaged-1");
}

TEST_F(StoreTest, everyDamagedFileIsKept) {
  fs::create_directories(directory.file("stores"));
  for (int i = 1; i <= 3; ++i) {
    const std::string noise = std::string(3000, static_cast<char>('a' + i));
    directory.write("stores/S.db", noise);
    expectFreshStore(noise, file() + ".damaged-" + std::to_string(i));
  }
}

TEST_F(StoreTest, aJournalThatIsNoneIsNothingToAFreshFile) {
  fs::create_directories(directory.file("stores"));
  directory.write("stores/S.db", std::string(3000, 'x'));
  directory.write("stores/S.db-journal", std::string(3000, 'y'));
  ASSERT_TRUE(open());
  EXPECT_FALSE(fs::exists(file() + "-journal"));
}

// Whoever changes the file just then has its journal open, which a fresh file would be changed back by.
TEST_F(StoreTest, theJournalOfADamagedFileGoesWithIt) {
  open()->setUInt32("kept", 1);
  const Pipe begun = makePipe();
  ChildProcess other([&] {
    sqlite3* database = nullptr;
    if (sqlite3_open(file().c_str(), &database) != SQLITE_OK) return 1;
    const char* const statements = "BEGIN IMMEDIATE; UPDATE value SET number = 2";
    if (sqlite3_exec(database, statements, nullptr, nullptr, nullptr) != SQLITE_OK) return 2;
    if (write(begun.writing.get(), "x", 1) != 1) return 3;
    pause();
    return 0;
  });
  char ready = 0;
  ASSERT_EQ(read(begun.reading.get(), &ready, 1), 1);
  ASSERT_TRUE(fs::exists(file() + "-journal"));
  overwrite(0, 100);
  const auto store = open();
  EXPECT_TRUE(fs::exists(file() + ".damaged-1-journal"));
  EXPECT_FALSE(fs::exists(file() + "-journal"));
  other.kill();
  other.wait();
  ASSERT_TRUE(store);
  store->setUInt32("later", 3);
  EXPECT_EQ(open()->getUInt32("later"), 3u);
}

/// A reader lets others begin to write, and keeps them from the end of it.
TEST_F(StoreTest, aCommitThatFailsIsToldAndChangesNothing) {
  SqliteStore store(file(), std::chrono::milliseconds(100), Logger());
  store.setUInt32("kept", 1);
  const Pipe begun = makePipe();
  ChildProcess reader([&] {
    sqlite3* database = nullptr;
    if (sqlite3_open(file().c_str(), &database) != SQLITE_OK) return 1;
    if (sqlite3_exec(database, "BEGIN; SELECT * FROM value", nullptr, nullptr, nullptr) != SQLITE_OK)
      return 2;
    if (write(begun.writing.get(), "x", 1) != 1) return 3;
    pause();
    return 0;
  });
  char ready = 0;
  ASSERT_EQ(read(begun.reading.get(), &ready, 1), 1);
  EXPECT_THROW(store.setUInt32("kept", 2), CmpiCpp::CmpiStatus);
  EXPECT_EQ(store.getUInt32("kept"), 1u);
  reader.kill();
  reader.wait();
  EXPECT_EQ(store.getUInt32("kept"), 1u);
  EXPECT_EQ(open()->getUInt32("kept"), 1u);
}

TEST_F(StoreTest, aNewerFormatIsRefusedAndLeftAlone) {
  open()->setUInt32("kept", 1);
  ASSERT_TRUE(sql("PRAGMA user_version = 2"));
  const std::string before = contentOf(file());
  const auto store = open();
  ASSERT_TRUE(store);
  EXPECT_FALSE(store->exists("kept"));
  EXPECT_THROW(store->setUInt32("kept", 2), CmpiCpp::CmpiStatus);
  EXPECT_TRUE(log.sink->mentions(LogLevel::Error, "its format 2 is newer than 1"));
  EXPECT_EQ(log.sink->lines().size(), 1u);
  EXPECT_EQ(contentOf(file()), before);
}

TEST_F(StoreTest, aNegativeFormatIsDamage) {
  open()->setUInt32("kept", 1);
  ASSERT_TRUE(sql("PRAGMA user_version = -1"));
  expectFreshStore(contentOf(file()), file() + ".damaged-1");
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
  EXPECT_EQ(contentOf(directory.file("stores")), "a file");
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
