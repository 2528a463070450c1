#include <gmock/gmock.h>
#include <sys/stat.h>

#include <cstdlib>
#include <fstream>
#include <string>

#include "isolation/Handover.h"

namespace ZebManager {
namespace {

TEST(Handover, KeepsTheLastLineOfEachSubject) {
  Handover handover;
  handover.apply("=a 1\n=b 1 2\n+a 3\n=c 4\n-b\n");
  EXPECT_EQ(handover.text(), "=a 3\n=c 4\n");
  handover.apply("-a\n-c\n-none\n");
  EXPECT_EQ(handover.text(), "");
}

TEST(Handover, LeavesOutWhatIsNoLine) {
  Handover handover;
  handover.apply("nonsense\n\n=\n=onlyasubject\n*a 1\n=b 2\n=torn 3");
  EXPECT_EQ(handover.text(), "=b 2\n");
}

TEST(Handover, IsBounded) {
  Handover handover;
  for (int i = 0; i < 40; ++i)
    handover.apply("=s" + std::to_string(i) + " " + std::string(1 << 20, 'x') + "\n");
  EXPECT_LE(handover.text().size(), (std::size_t{16} << 20) + 1000);
  handover.apply("=s0 short\n");
  EXPECT_NE(handover.text().find("=s0 short\n"), std::string::npos);
}

/// As the plug-in writes.
void note(const std::string& lines) {
  std::ofstream(std::getenv("ZEB_HANDOVER"), std::ios::app) << lines;
}

TEST(HandoverFile, BeginsWithWhatWasLeft) {
  HandoverFile file("=a 1\n");
  std::string line;
  std::ifstream in(std::getenv("ZEB_HANDOVER"));
  EXPECT_TRUE(std::getline(in, line));
  EXPECT_EQ(line, "=a 1");
  EXPECT_EQ(file.takeWhole(), "=a 1\n");
}

TEST(HandoverFile, GivesEachLineOnceAndWholeOnesOnly) {
  HandoverFile file("");
  note("=a 1\n=b 2");
  EXPECT_EQ(file.takeAll(), "=a 1\n");
  note("3\n");
  EXPECT_EQ(file.takeAll(), "=b 23\n");
  EXPECT_EQ(file.takeAll(), "");
}

/// The alert may never be taken: then the process after this one has to send it.
TEST(HandoverFile, DoesNotCountAReportBeforeItsAlertIsTaken) {
  HandoverFile file("=a 1\n");
  note("=b 1\n+a 2\n=c 1\n");
  EXPECT_EQ(file.takeWhole(), "=a 1\n=b 1\n");
  EXPECT_EQ(file.takeWhole(), "=a 1\n=b 1\n");
  EXPECT_EQ(file.takeAll(), "+a 2\n=c 1\n");
  EXPECT_EQ(file.takeWhole(), "=a 2\n=b 1\n=c 1\n");
}

/// However much is noted, what was read is given back to the system.
TEST(HandoverFile, DoesNotGrow) {
  HandoverFile file("");
  const std::string lines = "=a " + std::string(1000, 'x') + "\n";
  for (int i = 0; i < 20'000; ++i) {
    note(lines);
    if (i % 100 == 0) file.takeAll();
  }
  file.takeAll();
  struct stat state {};
  ASSERT_EQ(stat(std::getenv("ZEB_HANDOVER"), &state), 0);
  EXPECT_GT(state.st_size, 20'000'000);
  EXPECT_LT(state.st_blocks * 512, 3'000'000);
}

}  // namespace
}  // namespace ZebManager
