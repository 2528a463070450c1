#include <gmock/gmock.h>

#include "KeepingFixture.h"

// Every trouble that a store may have, for settings and for filters: what a client was told is kept is there
// afterwards, what was refused is not, the log says it once, and the object manager lives.

namespace ZEB::test {
namespace {

namespace fs = std::filesystem;

struct Trouble {
  const char* name;
  int lines;     ///< of the store's in the log; a change that is refused has one of its own
  bool refuses;  ///< changes, until it has ended
  bool needsDisk = false;
  void (*begin)(Keeping&);
  void (*end)(Keeping&) = nullptr;
};

class KeptInTroubleTest : public Keeping, public testing::WithParamInterface<std::tuple<Kept, Trouble>> {
 protected:
  KeptInTroubleTest() : Keeping(std::get<Kept>(GetParam())) {}

  void play() {
    const Trouble& trouble = std::get<Trouble>(GetParam());
    startWith(1);
    trouble.begin(*this);
    EXPECT_TRUE(holds(1)) << "while it lasts";
    if (trouble.refuses) {
      EXPECT_EQ(put(2), CMPI_RC_ERR_FAILED);
      EXPECT_TRUE(holds(1)) << "it was refused";
      trouble.end(*this);
      EXPECT_TRUE(holds(1)) << "it is over";
    }
    changeAndRestart(2);
    EXPECT_EQ(lines(), trouble.lines);
    EXPECT_EQ(refusals(), trouble.refuses ? 1 : 0);
    stop();
  }
};

TEST_P(KeptInTroubleTest, losesNothing) {
  if (!std::get<Trouble>(GetParam()).needsDisk) return play();
  const int result = onSmallDisk(directory(), [this] {
    play();
    return HasFailure() ? 1 : 0;
  });
  if (result == kNoDisk) GTEST_SKIP() << "no file system can be mounted here";
  EXPECT_EQ(result, 0);
}

const Trouble kTroubles[] = {
    {.name = "fullDisk",
     .lines = 0,
     .refuses = true,
     .needsDisk = true,
     .begin = [](Keeping& kept) { fillDisk(kept.directory()); },
     .end = [](Keeping& kept) { fs::remove(kept.directory() + "/filler"); }},
    {.name = "readOnlyDisk",
     .lines = 1,
     .refuses = true,
     .needsDisk = true,
     .begin =
         [](Keeping& kept) {
           kept.stop();
           makeReadOnly(kept.directory(), true);
           kept.start();
         },
     .end =
         [](Keeping& kept) {
           kept.stop();
           makeReadOnly(kept.directory(), false);
           kept.start();
         }},
    {.name = "lockedByAnotherProcess",
     .lines = 0,
     .refuses = true,
     .begin = [](Keeping& kept) { kept.locker = std::make_unique<Locker>(kept.storeFile()); },
     .end = [](Keeping& kept) { kept.locker.reset(); }},
    {.name = "newerFormat",
     .lines = 1,
     .refuses = true,
     .begin = [](Keeping& kept) { runSql(kept.storeFile(), "PRAGMA user_version = 2"); },
     .end = [](Keeping& kept) { runSql(kept.storeFile(), "PRAGMA user_version = 1"); }},
    {.name = "olderFormat",
     .lines = 0,
     .refuses = false,
     .begin = [](Keeping& kept) { runSql(kept.storeFile(), "DROP TABLE value; PRAGMA user_version = 0"); }},
    {.name = "negativeFormat",
     .lines = 1,
     .refuses = false,
     .begin = [](Keeping& kept) { runSql(kept.storeFile(), "PRAGMA user_version = -3"); }},
    {.name = "directoryGone",
     .lines = 1,
     .refuses = false,
     .begin = [](Keeping& kept) { fs::remove_all(kept.directory()); }},
    {.name = "noise",
     .lines = 1,
     .refuses = false,
     .begin = [](Keeping& kept) { std::ofstream(kept.storeFile()) << std::string(9000, 'n'); }},
};

INSTANTIATE_TEST_SUITE_P(Stores, KeptInTroubleTest,
                         testing::Combine(testing::Values(Kept::Settings, Kept::Filters),
                                          testing::ValuesIn(kTroubles)),
                         [](const auto& row) {
                           return nameOf(std::get<Kept>(row.param)) + "_" + std::get<Trouble>(row.param).name;
                         });

}  // namespace
}  // namespace ZEB::test
