#include <gmock/gmock.h>

#include <fstream>

#include "common/Handover.h"
#include "posix/TemporaryFolder.h"
#include "support/Content.h"

namespace ZEB {
namespace {

class HandoverTest : public testing::Test {
 protected:
  void open(const std::string& content) {
    std::ofstream(file) << content;
    handover.open(file.c_str());
  }
  std::string content() const { return test::contentOf(file); }

  TemporaryFolder folder;
  const std::string file = (folder / "handover").string();
  Handover handover;
};

TEST_F(HandoverTest, WhatChangesIsNoted) {
  open("");
  EXPECT_FALSE(handover.pending());
  handover.note("eth0", "2 0");
  handover.note("eth0", "2 0");
  handover.note("eth1", "2 0");
  handover.note("eth0", "6 100", Handover::Alert::Follows);
  handover.note("eth0", "6 100");
  handover.note("", "nothing that could be found again");
  EXPECT_EQ(content(), "=eth0 2 0\n=eth1 2 0\n+eth0 6 100\n");
}

TEST_F(HandoverTest, WhatIsGoneIsForgotten) {
  open("");
  handover.note("eth0", "2");
  handover.note("eth1", "2");
  handover.keepOnly([](const std::string& subject) { return subject == "eth1"; });
  EXPECT_EQ(content(), "=eth0 2\n=eth1 2\n-eth0\n");
}

TEST_F(HandoverTest, WhatWasLeftIsTakenOverBeforeAnythingIsNoted) {
  open("=eth0 2 0\n=eth1 2 0\n+eth0 6 100\n=eth9 2 0\n");
  EXPECT_TRUE(handover.pending());
  handover.note("eth0", "2 0");
  EXPECT_EQ(handover.of("eth0"), "6 100");
  EXPECT_EQ(handover.of("eth2"), std::nullopt);
  handover.taken();
  EXPECT_FALSE(handover.pending());
  handover.note("eth0", "6 100");
  handover.note("eth1", "6 200");
  handover.keepOnly([](const std::string& subject) { return subject != "eth9"; });
  EXPECT_EQ(content(), "=eth0 2 0\n=eth1 2 0\n+eth0 6 100\n=eth9 2 0\n=eth1 6 200\n-eth9\n");
}

TEST_F(HandoverTest, ForeignAndTornLinesAreLeftOut) {
  open("nonsense\n\n=\n=onlyasubject\n*eth0 1\n=eth1 2 0\n=eth2 to");
  EXPECT_EQ(handover.of("eth1"), "2 0");
  for (const char* const none : {"onlyasubject", "eth0", "eth2", ""})
    EXPECT_EQ(handover.of(none), std::nullopt);
}

TEST_F(HandoverTest, WithoutAFileNothingHappens) {
  handover.open(nullptr);
  handover.note("eth0", "2");
  handover.open((folder / "missing/file").c_str());
  handover.note("eth0", "2");
  EXPECT_FALSE(handover.pending());
}

}  // namespace
}  // namespace ZEB
