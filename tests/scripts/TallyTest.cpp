// scripts/tally on small reports.
#include <gmock/gmock.h>

#include "manager/Process.h"
#include "support/TestFolder.h"

namespace ZebManager {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

class Tally : public testing::Test {
 protected:
  /// What is said of one process, by how CTest says that it ended, its output, and what else is in its
  /// element.
  std::string of(const std::string& status, const std::string& output, const std::string& rest = "") {
    folder.write("report.xml",
                 "<?xml version=\"1.0\"?>\n<testsuite name=\"all\" tests=\"1\">\n<testcase name=\"part.1\" "
                 "time=\"2.5\" status=\"" +
                     status + "\">" + rest + "<system-out>" + output +
                     "</system-out></testcase>\n</testsuite>\n");
    const Outcome outcome = run(ZEB_TALLY, {folder.file("report.xml")});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    return outcome.out;
  }
  std::string ofPassed(const std::string& output) { return of("run", output); }
  std::string ofFailed(const std::string& output) { return of("fail", output, "<failure message=\"\"/>"); }

  ZEB::test::TestFolder folder;
};

TEST_F(Tally, CountsEachTestThatAProcessTellsOf) {
  EXPECT_THAT(ofPassed("[==========] Running 2 tests from 2 test suites.\n"
                       "[ RUN      ] Team.Status\n[       OK ] Team.Status (1 ms)\n"
                       "[ RUN      ] All/Team.Members/0\n[       OK ] All/Team.Members/0 (0 ms)\n"
                       "[  PASSED  ] 2 tests.\n"),
              StartsWith("2 0 0\n"));
}

TEST_F(Tally, TakesAProcessWithoutTestsForNone) {
  EXPECT_THAT(ofPassed("[==========] Running 0 tests from 0 test suites.\n[  PASSED  ] 0 tests.\n"),
              StartsWith("0 0 0\n"));
}

TEST_F(Tally, NamesWhatFailedWithItsFirstAssertion) {
  const std::string said = ofFailed(
      "[==========] Running 2 tests from 1 test suite.\n"
      "[ RUN      ] Team.Status\n[       OK ] Team.Status (1 ms)\n"
      "[ RUN      ] Team.Members\nnoise\nTeamTest.cpp:7: Failure\nExpected: 1\n"
      "[  FAILED  ] Team.Members, where GetParam() = 3 (1200 ms)\n"
      "[  FAILED  ] 1 test, listed below:\n[  FAILED  ] Team.Members, where GetParam() = 3\n");
  EXPECT_THAT(said, StartsWith("1 1 0\n"));
  EXPECT_THAT(said, HasSubstr("Team.Members (part.1) failed after 1.2 s\n"
                              "    TeamTest.cpp:7: Failure\n    Expected: 1\n"));
}

TEST_F(Tally, NamesWhatWasLeftOutWithItsReason) {
  const std::string said = ofPassed(
      "[==========] Running 1 test from 1 test suite.\n"
      "[ RUN      ] Team.Status\nno kernel\n[  SKIPPED ] Team.Status (1 ms)\n"
      "[  SKIPPED ] 1 test, listed below:\n[  SKIPPED ] Team.Status\n");
  EXPECT_THAT(said, StartsWith("0 0 1\n"));
  EXPECT_THAT(said, HasSubstr("Team.Status was left out\n    no kernel\n"));
}

constexpr char kOneOfTwo[] =
    "[==========] Running 2 tests from 1 test suite.\n"
    "[ RUN      ] Team.Status\n[       OK ] Team.Status (1 ms)\n[ RUN      ] Team.Members\n";

TEST_F(Tally, NamesTheTestThatAProcessDiedIn) {
  const std::string said = ofFailed(std::string(kOneOfTwo) + "Segmentation fault\n");
  EXPECT_THAT(said, StartsWith("1 1 0\n"));
  EXPECT_THAT(said, HasSubstr("part.1, in Team.Members failed after 2.5 s\n"));
  EXPECT_THAT(said, HasSubstr("    Segmentation fault\n"));
}

TEST_F(Tally, ANormalEndBeforeAllTestsIsAFailure) {
  EXPECT_THAT(ofPassed(kOneOfTwo), StartsWith("1 1 0\n"));
}

TEST_F(Tally, ADeathAfterAFailureIsAnother) {
  EXPECT_THAT(ofFailed("[==========] Running 2 tests from 1 test suite.\n"
                       "[ RUN      ] Team.Status\n[  FAILED  ] Team.Status (1 ms)\n"
                       "[ RUN      ] Team.Members\nSegmentation fault\n"),
              StartsWith("0 2 0\n"));
}

TEST_F(Tally, ShowsWhatASanitizerFoundThoughAllTestsPassed) {
  const std::string said = ofFailed(
      "[==========] Running 1 test from 1 test suite.\n[ RUN      ] Team.Status\n"
      "WARNING: ThreadSanitizer: data race (pid=1)\n  Write of size 8\n"
      "[       OK ] Team.Status (1 ms)\n[  PASSED  ] 1 test.\n");
  EXPECT_THAT(said, StartsWith("1 1 0\n"));
  EXPECT_THAT(said,
              HasSubstr("part.1 failed after 2.5 s\n    WARNING: ThreadSanitizer: data race (pid=1)\n"));
}

TEST_F(Tally, CountsWhatIsNoGoogleTestAsOne) {
  EXPECT_THAT(ofPassed("10 s of fuzzing\n"), StartsWith("1 0 0\n"));
  EXPECT_THAT(of("notrun", "no compiler\n", "<skipped message=\"SKIP_RETURN_CODE=7\"/>"),
              StartsWith("0 0 1\n"));
  EXPECT_THAT(ofFailed(""), StartsWith("0 1 0\n"));
}

TEST_F(Tally, WhatWasNotStartedHasFailed) {
  EXPECT_THAT(of("notrun", "", "<skipped message=\"Unable to find executable\"/>"), StartsWith("0 1 0\n"));
  EXPECT_THAT(of("disabled", "Disabled"), StartsWith("0 1 0\n"));
}

TEST_F(Tally, FailsWithoutAReportOrTests) {
  EXPECT_NE(run(ZEB_TALLY, {folder.file("none.xml")}).status, 0);
  folder.write("empty.xml", "<testsuite name=\"all\" tests=\"0\"/>\n");
  EXPECT_NE(run(ZEB_TALLY, {folder.file("empty.xml")}).status, 0);
}

}  // namespace
}  // namespace ZebManager
