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
  /// What is said of one process: its element's content before its output, and the output.
  std::string of(const std::string& content, const std::string& output) {
    folder.write("report.xml",
                 "<?xml version=\"1.0\"?>\n<testsuite name=\"all\" tests=\"1\">\n<testcase name=\"part.1\" "
                 "time=\"2.5\">" +
                     content + "<system-out>" + output + "</system-out></testcase>\n</testsuite>\n");
    const Outcome outcome = run(ZEB_TALLY, {folder.file("report.xml")});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    return outcome.out;
  }

  static constexpr char kFailure[] = "<failure message=\"\"/>";

  ZEB::test::TestFolder folder;
};

TEST_F(Tally, CountsEachTestThatAProcessTellsOf) {
  EXPECT_THAT(of("",
                 "[ RUN      ] Team.Status\n[       OK ] Team.Status (1 ms)\n"
                 "[ RUN      ] All/Team.Members/0\n[       OK ] All/Team.Members/0 (0 ms)\n"
                 "[  PASSED  ] 2 tests.\n"),
              StartsWith("2 0 0\n"));
}

TEST_F(Tally, NamesWhatFailedWithItsFirstAssertion) {
  const std::string said =
      of(kFailure,
         "[ RUN      ] Team.Status\n[       OK ] Team.Status (1 ms)\n"
         "[ RUN      ] Team.Members\nnoise\nTeamTest.cpp:7: Failure\nExpected: 1\n"
         "[  FAILED  ] Team.Members, where GetParam() = 3 (1200 ms)\n"
         "[  FAILED  ] 1 test, listed below:\n[  FAILED  ] Team.Members, where GetParam() = 3\n");
  EXPECT_THAT(said, StartsWith("1 1 0\n"));
  EXPECT_THAT(said,
              HasSubstr("Team.Members failed after 1.2 s\n    TeamTest.cpp:7: Failure\n    Expected: 1\n"));
}

TEST_F(Tally, NamesWhatWasLeftOutWithItsReason) {
  const std::string said = of("",
                              "[ RUN      ] Team.Status\nno kernel\n[  SKIPPED ] Team.Status (1 ms)\n[  "
                              "SKIPPED ] 1 test, listed below:\n"
                              "[  SKIPPED ] Team.Status\n");
  EXPECT_THAT(said, StartsWith("0 0 1\n"));
  EXPECT_THAT(said, HasSubstr("Team.Status was left out\n    no kernel\n"));
}

TEST_F(Tally, HoldsAgainstAProcessThatItFailedWithoutTellingOfWhat) {
  const std::string said = of(kFailure,
                              "[ RUN      ] Team.Status\n[       OK ] Team.Status (1 ms)\n"
                              "[ RUN      ] Team.Members\nSegmentation fault\n");
  EXPECT_THAT(said, StartsWith("1 1 0\n"));
  EXPECT_THAT(said, HasSubstr("part.1 failed after 2.5 s\n"));
  EXPECT_THAT(said, HasSubstr("    Segmentation fault\n"));
  EXPECT_THAT(of(kFailure, ""), StartsWith("0 1 0\n"));
}

TEST_F(Tally, CountsWhatIsNoGoogleTestAsOne) {
  EXPECT_THAT(of("", "10 s of fuzzing\n"), StartsWith("1 0 0\n"));
  EXPECT_THAT(of("<skipped message=\"\"/>", "no compiler\n"), StartsWith("0 0 1\n"));
}

TEST_F(Tally, FailsWithoutAReport) {
  EXPECT_NE(run(ZEB_TALLY, {folder.file("none.xml")}).status, 0);
}

}  // namespace
}  // namespace ZebManager
