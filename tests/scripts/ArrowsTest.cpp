// scripts/arrows on small source trees.
#include <gmock/gmock.h>

#include "manager/Process.h"
#include "support/TestFolder.h"

namespace ZebManager {
namespace {

using testing::HasSubstr;

class Arrows : public testing::Test {
 protected:
  Arrows() {
    folder.write("order",
                 "part one\nprovider\nmonitor  classes\nplatform/base\npart two\nmanager\nplatform/base\n");
    for (const char* room : {"provider", "monitor", "classes", "platform/base", "manager"}) {
      std::filesystem::create_directories(folder.path() / room);
      add(std::string(room) + "/Own.h", "");
    }
  }
  void add(const std::string& file, const std::string& include) {
    folder.write(file, "#pragma once\n" + (include.empty() ? "" : "#include \"" + include + "\"\n"));
  }
  Outcome arrows() const { return run(ZEB_ARROWS, {folder.path().string(), folder.file("order")}); }
  void expectUp(const std::string& source, const std::string& target) const {
    const Outcome outcome = arrows();
    EXPECT_EQ(outcome.status, 1) << outcome.out;
    EXPECT_EQ(outcome.err, source + " includes " + target + "\n");
    EXPECT_THAT(outcome.out, HasSubstr("  UP"));
  }

  ZEB::test::TestFolder folder;
};

TEST_F(Arrows, ThatPointDownAreListed) {
  add("provider/A.cpp", "monitor/Own.h");
  add("provider/B.cpp", "monitor/Own.h");
  add("manager/A.cpp", "base/Own.h");
  const Outcome outcome = arrows();
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(outcome.out,
            "manager                      -> platform/base                   1\n"
            "provider                     -> monitor                         2\n");
}

TEST_F(Arrows, ThatPointUpAreAnError) {
  add("platform/base/A.h", "provider/Own.h");
  expectUp("platform/base/A.h", "provider/Own.h");
}

TEST_F(Arrows, BetweenFoldersSideBySideAreAnError) {
  add("monitor/A.cpp", "classes/Own.h");
  expectUp("monitor/A.cpp", "classes/Own.h");
}

TEST_F(Arrows, FromOnePartToTheOtherAreAnError) {
  add("manager/A.cpp", "classes/Own.h");
  expectUp("manager/A.cpp", "classes/Own.h");
}

TEST_F(Arrows, AFolderThatIsNotInTheOrderIsAnError) {
  std::filesystem::create_directories(folder.path() / "platform/new");
  add("platform/new/A.h", "");
  const Outcome outcome = arrows();
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.err, "platform/new/A.h: its folder is not in the order\n");
}

TEST_F(Arrows, OfAnEmptyTreeAreAnError) {
  for (const char* room : {"provider", "monitor", "classes", "platform", "manager"})
    std::filesystem::remove_all(folder.path() / room);
  EXPECT_EQ(arrows().status, 1);
}

}  // namespace
}  // namespace ZebManager
