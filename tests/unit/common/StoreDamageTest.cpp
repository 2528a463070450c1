#include <gmock/gmock.h>

#include <cstring>

#include "cmpicpp/CmpiStatus.h"
#include "common/DataStore.h"
#include "posix/ChildProcess.h"
#include "support/Content.h"
#include "support/Environment.h"
#include "support/FilesInMemory.h"
#include "support/Length.h"
#include "support/ProcessLog.h"
#include "support/StoreTrouble.h"
#include "support/TestFolder.h"

// What becomes of a store whose file is damaged, cut, or taken away while a process works with it: all that
// the process was told is kept stays, in the process and after it, and the log says once what happened.

namespace ZEB::test {
namespace {

namespace fs = std::filesystem;

class StoreDamageTest : public testing::Test {
 protected:
  StoreDamageTest() {
    store->addDefaults(kKept);
    store->setUInt32("PollInterval", 60);
    // What was acknowledged is known without a look at the file after it.
    kept = *store->values();
    sound = contentOf(file());
  }

  std::string file() const { return directory.file("stores/S.db"); }
  static std::unique_ptr<DataStore> open() { return makeDataStore("S"); }

  /// Puts other bytes into the file, as nothing that knows of databases would.
  void overwrite(const std::string& bytes) const {
    std::ofstream out(file(), std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  }

  /// Everything is there, in the process and for the next one, and can be changed.
  void expectNothingLost(const std::string& what) {
    ASSERT_EQ(*store->values(), kept) << what;
    ASSERT_NO_THROW(store->setUInt32("later", ++later)) << what;
    kept["later"] = later;
    ASSERT_EQ(*store->values(), kept) << what;
    ASSERT_EQ(*open()->values(), kept) << what;
  }

  /// Starts once more from a sound file and an empty log.
  void mend() {
    store.reset();
    fs::remove_all(directory.file("stores"));
    store = open();
    kept = kKept;
    store->addDefaults(kept);
    log.sink->clear();
  }

  static inline const DataStore::Values kKept{
      {"PollInterval", 200}, {"MonitorPorts", 0}, {"large", 4294967295u}, {"//h/root/jxv:P.ID=\"1\"", 1}};

  FilesInMemory inMemory;
  TestFolder directory;
  Environment storeDirectory{"ZEB_STORE_DIR", directory.file("stores")};
  ProcessLog log;
  std::unique_ptr<DataStore> store = open();
  DataStore::Values kept;
  std::string sound;
  std::uint32_t later = 0;
};

TEST_F(StoreDamageTest, anyByteThatIsDamagedWhileTheStoreIsOpenLosesNothing) {
  // The header and both ends of the pages have something in them; the rest is every so many bytes.
  for (std::size_t at = 0; at < sound.size(); at += at < 112 || at % 4096 > 3700 ? 1u : length(97u, 1u)) {
    mend();
    std::string bytes = contentOf(file());
    bytes[at] = static_cast<char>(bytes[at] ^ (at % 2 == 0 ? 0xFF : 1));
    overwrite(bytes);
    expectNothingLost("byte " + std::to_string(at));
    ASSERT_LE(log.sink->lines().size(), 1u) << "byte " << at;
    if (HasFatalFailure()) return;
  }
}

TEST_F(StoreDamageTest, anyCutWhileTheStoreIsOpenLosesNothing) {
  for (std::size_t cut = 0; cut < sound.size(); cut += cut < 112 ? 7u : length(397u, 1u)) {
    mend();
    fs::resize_file(file(), cut);
    expectNothingLost("cut to " + std::to_string(cut));
    ASSERT_EQ(log.sink->lines().size(), 1u) << "cut to " << cut;
    if (HasFatalFailure()) return;
  }
}

struct Trouble {
  const char* name;
  const char* said;
  void (*make)(const std::string& file);
};

void PrintTo(const Trouble& trouble, std::ostream* out) {
  *out << trouble.name;
}

class StoreTroubles : public StoreDamageTest, public testing::WithParamInterface<Trouble> {};

TEST_P(StoreTroubles, loseNothingAndAreSaidOnce) {
  log.sink->clear();
  GetParam().make(file());
  expectNothingLost(GetParam().name);
  ASSERT_EQ(log.sink->lines().size(), 1u);
  EXPECT_THAT(log.sink->texts()[0], testing::HasSubstr(GetParam().said));
  EXPECT_THAT(log.sink->texts()[0], testing::HasSubstr("a fresh one begins with the values that are known"));
}

INSTANTIATE_TEST_SUITE_P(
    WhileOpen, StoreTroubles,
    testing::Values(
        Trouble{"noise", "is damaged",
                [](const std::string& file) { std::ofstream(file) << std::string(5000, 'n'); }},
        Trouble{"emptied", "was empty", [](const std::string& file) { fs::resize_file(file, 0); }},
        Trouble{"deleted", "was gone", [](const std::string& file) { fs::remove(file); }},
        Trouble{"renamed", "was gone", [](const std::string& file) { fs::rename(file, file + ".old"); }},
        Trouble{"directoryGone", "was gone",
                [](const std::string& file) { fs::remove_all(fs::path(file).parent_path()); }},
        Trouble{"negativeFormat", "its format -7 is none",
                [](const std::string& file) { runSql(file, "PRAGMA user_version = -7"); }},
        Trouble{"otherProgram", "the file of another program",
                [](const std::string& file) { runSql(file, "PRAGMA application_id = 5"); }},
        Trouble{"tableGone", "no such table",
                [](const std::string& file) { runSql(file, "DROP TABLE value"); }}),
    testing::PrintToStringParamName());

TEST_F(StoreDamageTest, aValueThatChangesByItselfIsDamage) {
  log.sink->clear();
  // The number 60 as SQLite keeps it: a byte after the key.
  const std::size_t at = sound.find("PollInterval<");
  ASSERT_NE(at, std::string::npos);
  sound[at + std::strlen("PollInterval")] = '=';
  overwrite(sound);
  expectNothingLost("61 in the place of 60");
  EXPECT_TRUE(log.sink->mentions(LogLevel::Error, "its values have changed by themselves"));
}

TEST_F(StoreDamageTest, aFileThatIsOnlyTouchedIsNotDamaged) {
  log.sink->clear();
  overwrite(sound);
  expectNothingLost("the same bytes");
  EXPECT_THAT(log.sink->lines(), testing::IsEmpty());
}

TEST_F(StoreDamageTest, aFormatThatANewerProgramHasBroughtKeepsWhatIsKnownAndRefusesChanges) {
  log.sink->clear();
  runSql(file(), "PRAGMA user_version = 2");
  const std::string newer = contentOf(file());
  EXPECT_EQ(*store->values(), kept);
  try {
    store->setUInt32("refused", 1);
    ADD_FAILURE();
  } catch (const CmpiCpp::CmpiStatus& status) {
    EXPECT_THAT(status.msg(), testing::HasSubstr("its format 2 is newer than 1"));
  }
  EXPECT_EQ(*store->values(), kept);
  EXPECT_EQ(log.sink->lines().size(), 1u);
  EXPECT_EQ(contentOf(file()), newer);
  runSql(file(), "PRAGMA user_version = 1");
  expectNothingLost("the older one again");
}

TEST_F(StoreDamageTest, twoProcessesThatFindTheSameDamageAgreeOnTheFreshFile) {
  const auto other = open();
  EXPECT_EQ(*other->values(), kept);
  log.sink->clear();
  overwrite(std::string(5000, 'n'));
  EXPECT_EQ(*store->values(), kept);
  EXPECT_EQ(*other->values(), kept);
  other->setUInt32("PollInterval", 5);
  EXPECT_EQ(store->getUInt32("PollInterval"), 5u);
  EXPECT_EQ(log.sink->lines().size(), 1u);
  EXPECT_FALSE(fs::exists(file() + ".damaged-2"));
}

TEST_F(StoreDamageTest, aFreshFileOfAnotherProcessIsTaken) {
  log.sink->clear();
  fs::remove(file());
  const int status = ChildProcess([] {
                       open()->setUInt32("PollInterval", 9);
                       return 0;
                     }).wait();
  ASSERT_EQ(status, 0);
  EXPECT_EQ(*store->values(), (DataStore::Values{{"PollInterval", 9}}));
}

TEST_F(StoreDamageTest, aFileWhereTheDirectoryWasIsWaitedOut) {
  log.sink->clear();
  fs::remove_all(directory.file("stores"));
  directory.write("stores", "a file");
  EXPECT_EQ(*store->values(), kept);
  EXPECT_THROW(store->setUInt32("refused", 1), CmpiCpp::CmpiStatus);
  EXPECT_EQ(*store->values(), kept);
  EXPECT_EQ(log.sink->lines().size(), 1u);
  fs::remove(directory.file("stores"));
  expectNothingLost("the directory can be made again");
}

}  // namespace
}  // namespace ZEB::test
