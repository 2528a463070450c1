// Facts of the bed itself.
#include <gmock/gmock.h>

#include "Guest.h"
#include "GuestFixture.h"

namespace ZEB::guest {
namespace {

using testing::HasSubstr;

using AgentTest = GuestFixture;

TEST_F(AgentTest, ReportsStatusAndBothOutputs) {
  const Result result = guest().run("echo said; echo complained >&2; exit 3");
  EXPECT_EQ(result.status, 3);
  EXPECT_EQ(result.output, "said\n");
  EXPECT_EQ(result.errors, "complained\n");
}

TEST_F(AgentTest, CarriesAnyBytes) {
  // The frame itself, the byte that ends strings, and no line end at the end.
  const Result result = guest().run("printf 'done 0 5 0\\n\\0\\377\\ntail'");
  EXPECT_EQ(result.output, std::string("done 0 5 0\n\0\xff\ntail", 18));
}

TEST_F(AgentTest, CarriesMuch) {
  const Result result = guest().run("head -c 3000000 /dev/zero");
  EXPECT_EQ(result.output, std::string(3000000, '\0'));
}

TEST_F(AgentTest, SurvivesAScriptThatIsNone) {
  EXPECT_EQ(guest().run("if then (").status, 2);
  EXPECT_EQ(guest().run("kill -KILL $$").status, 137);
  EXPECT_EQ(guest().run("exit 0").status, 0);
}

TEST_F(AgentTest, KillsWhatTakesTooLong) {
  EXPECT_EQ(guest().run("command sleep 1000 & command sleep 1000", std::chrono::seconds(1)).status, 124);
  EXPECT_TRUE(guest().await("! ps -e -o args | grep -q '^sleep 1000'"));
}

TEST_F(AgentTest, MustThrowsWithWhatWasSaid) {
  try {
    guest().must("echo because; exit 1");
    FAIL() << "a script that failed passed";
  } catch (const std::exception& error) {
    EXPECT_THAT(error.what(), HasSubstr("because"));
  }
}

TEST_F(AgentTest, AwaitGivesUp) {
  EXPECT_FALSE(guest().await("false", std::chrono::seconds(1)));
  EXPECT_TRUE(guest().await("true"));
}

}  // namespace
}  // namespace ZEB::guest
