// The rules of Prometheus that are installed.
#include <gmock/gmock.h>

#include <filesystem>
#include <sstream>

#include "Process.h"
#include "support/Content.h"

namespace ZebManager {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using ZEB::test::contentOf;

constexpr char kRuleTool[] = "/usr/bin/promtool";

TEST(Rules, PromtoolProvesEachOnSeriesOfItsOwn) {
  if (!std::filesystem::exists(kRuleTool)) GTEST_SKIP() << "Debian's prometheus is not installed";
  const Outcome checked = run(kRuleTool, {"check", "rules", ZEB_RULES});
  EXPECT_EQ(checked.status, 0) << checked.out << checked.err;
  const Outcome tested = run(kRuleTool, {"test", "rules", ZEB_RULE_TESTS});
  EXPECT_EQ(tested.status, 0) << tested.out << tested.err;
}

TEST(Rules, EachIsTestedFiringAndNotAndHasItsPage) {
  const std::string tests = contentOf(ZEB_RULE_TESTS);
  const std::string page = contentOf(ZEB_RULE_PAGE);
  std::istringstream rules(contentOf(ZEB_RULES));
  std::size_t count = 0;
  for (std::string line; std::getline(rules, line);) {
    const std::size_t at = line.find("- alert: ");
    if (at == std::string::npos) continue;
    const std::string name = line.substr(at + 9);
    EXPECT_THAT(tests, AllOf(HasSubstr("- name: " + name + " fires\n"),
                             HasSubstr("- name: " + name + " does not fire\n")));
    EXPECT_THAT(page, HasSubstr("\n## " + name + "\n"));
    ++count;
  }
  EXPECT_EQ(count, 12U);
}

}  // namespace
}  // namespace ZebManager
