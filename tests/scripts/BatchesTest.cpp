// scripts/batches on small sources.
#include <gmock/gmock.h>

#include "manager/Process.h"
#include "support/TestFolder.h"

namespace ZebManager {
namespace {

class Batches : public testing::Test {
 protected:
  /// Two sources with these lines in their unnamed namespaces and behind them: whether they are compiled as
  /// one.
  bool areTogether(const std::string& one, const std::string& other, const std::string& behind = "") {
    const auto source = [](const std::string& own, const std::string& rest) {
      return "#include <string>\n\nnamespace ZEB {\nnamespace {\n\n" + own + "\n\n}  // namespace\n\n" +
             rest + "\n}  // namespace ZEB\n";
    };
    folder.write("A.cpp", source(one, ""));
    folder.write("B.cpp", source(other, behind));
    const std::string both = folder.file("A.cpp") + " " + folder.file("B.cpp") + "\n";
    const Outcome outcome = run(ZEB_BATCHES, {folder.file("A.cpp"), folder.file("B.cpp")});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_TRUE(outcome.out.empty() || outcome.out == both) << outcome.out;
    return outcome.out == both;
  }

  ZEB::test::TestFolder folder;
};

TEST_F(Batches, HoldWhatSharesNoWord) {
  EXPECT_TRUE(
      areTogether("int first(int value) {\n  return value;\n}", "void second(const std::string& text);"));
}

TEST_F(Batches, KeepFunctionsOfOneNameApart) {
  EXPECT_FALSE(areTogether("void put(long value) {}", "void put(int value) {}"));
}

TEST_F(Batches, KeepAFunctionFromWhoCallsAnotherOfItsName) {
  EXPECT_FALSE(areTogether("void put(long value) {}", "int unlike = 0;", "void use() { put(3); }"));
}

TEST_F(Batches, KeepTypesAndConstantsApart) {
  EXPECT_FALSE(areTogether("struct Row {\n  int value;\n};", "int unlike = 0;", "Row row;"));
  EXPECT_FALSE(areTogether("constexpr int kMost = 3;", "int unlike = 0;", "int most = kMost;"));
}

TEST_F(Batches, KeepTheNamesOfAnEnumerationApart) {
  EXPECT_FALSE(areTogether("enum : unsigned {\n  kOne = 1,\n};", "int unlike = 0;", "int one = kOne;"));
}

TEST_F(Batches, TakeAWordInACommentForNone) {
  EXPECT_TRUE(areTogether("void put(long value) {}", "int unlike = 0;  // put(3)"));
}

TEST_F(Batches, HoldWhoSayTheSameUsing) {
  EXPECT_TRUE(areTogether("using Text = std::string;", "using Text = std::string;"));
  EXPECT_FALSE(areTogether("using Text = std::string;", "using Text = std::wstring;"));
  EXPECT_FALSE(areTogether("using Text = std::string;", "int unlike = 0;", "Text text;"));
  EXPECT_TRUE(areTogether("using std::string;", "using std::string;"));
  EXPECT_FALSE(areTogether("using std::string;", "int unlike = 0;", "string text;"));
  EXPECT_FALSE(areTogether("namespace fs = std::filesystem;", "int unlike = 0;", "fs::path path;"));
}

TEST_F(Batches, LeaveAloneWhoseReachNoWordShows) {
  const std::string other = "int unlike = 0;";
  EXPECT_FALSE(areTogether("bool operator==(const std::string& a, int b);", other));
  EXPECT_FALSE(areTogether(other, "int like = 0;", "#define MOST 3"));
  EXPECT_FALSE(areTogether(other, "int like = 0;", "using namespace std;"));
  EXPECT_TRUE(areTogether(other, "int like = 0;", "using namespace std::chrono_literals;"));
}

TEST_F(Batches, AreOfEightAtMost) {
  std::vector<std::string> files;
  for (int i = 0; i < 9; ++i) {
    files.push_back(folder.file("S" + std::to_string(i) + ".cpp"));
    folder.write("S" + std::to_string(i) + ".cpp", "int number" + std::to_string(i) + ";\n");
  }
  const Outcome outcome = run(ZEB_BATCHES, files);
  files.pop_back();
  std::string first;
  for (const std::string& file : files) first += (first.empty() ? "" : " ") + file;
  EXPECT_EQ(outcome.out, first + "\n");
}

}  // namespace
}  // namespace ZebManager
