// What people see, on terminals of any width, with and without a service.
#include <gmock/gmock.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <regex>
#include <thread>

#include "Prompt.h"
#include "support/Content.h"

namespace ZebManager {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using ZEB::test::contentOf;

std::size_t columnsOf(const std::string& line) {
  return static_cast<std::size_t>(
      std::ranges::count_if(line, [](char c) { return (static_cast<unsigned char>(c) & 0xc0) != 0x80; }));
}

TEST_P(Prompt, FitsTheTerminal) {
  serve(ZEB_SNAPSHOTS "/two_cards.json");
  for (const unsigned columns : {60U, 80U, 200U}) {
    const Outcome tree = onTerminal(columns, {"tree"}, "dumb");
    EXPECT_EQ(tree.status, 0);
    for (const std::string& line : linesOf(tree.out)) EXPECT_LE(columnsOf(line), columns) << line;
    EXPECT_THAT(tree.out,
                AllOf(HasSubstr("eth0"), HasSubstr("00:1b:21:00:00:01"), HasSubstr("gateway 192.168.1.254"),
                      HasSubstr("firmware 1.63, 0x800009fa"), Not(HasSubstr("\x1b"))));
    // At 200 columns every thing has its line, as where there is no terminal.
    EXPECT_EQ(tree.out == zebcim({"tree"}).out, columns == 200U);
  }
  EXPECT_THAT(onTerminal(80, {"tree"}, "xterm").out, HasSubstr("\x1b[1meth0"));
}

/// In a namespace of its own with a pair of virtual interfaces and no others.
TEST(PromptTest, NamesWhatIncludeVirtualWouldShow) {
  if (geteuid() != 0) GTEST_SKIP() << "needs to be root to make interfaces";
  const ZEB::TemporaryFolder folder;
  const auto treeIn = [&](const std::string& prepare, const std::string& options) {
    return run("/usr/bin/unshare", {"--net", "sh", "-c", prepare + " && exec " ZEB_CIM " tree " + options},
               {"ZEB_CONFIG=/dev/null", "ZEB_STORE_DIR=" + (folder / "store").string(),
                "ZEB_RUN_DIR=" + (folder / "run").string()});
  };
  const std::string pair = "ip link add veth7 type veth peer name veth8";
  const Outcome hinted = treeIn(pair, "");
  EXPECT_EQ(hinted.status, 0);
  EXPECT_THAT(hinted.out, AllOf(HasSubstr("no Ethernet adapters"), HasSubstr("--include-virtual shows "),
                                HasSubstr("veth7"), HasSubstr("veth8")));
  EXPECT_THAT(treeIn(":", "").out,
              AllOf(HasSubstr("no Ethernet adapters"), Not(HasSubstr("--include-virtual"))));
  EXPECT_THAT(treeIn(pair, "--include-virtual").out, AllOf(HasSubstr("veth7"), Not(HasSubstr("shows"))));
}

TEST_P(Prompt, MarksAPortThatRunsBelowWhatItCan) {
  std::string slow = contentOf(ZEB_SNAPSHOTS "/one_port.json");
  slow = std::regex_replace(slow, std::regex("\"speed\": [0-9]+"), "\"speed\": 100");
  slow = std::regex_replace(slow, std::regex("\"fullDuplex\": true"), "\"fullDuplex\": false");
  const ZEB::TemporaryFolder folder;
  std::ofstream(folder / "slow.json") << slow;
  serve((folder / "slow.json").string());
  EXPECT_THAT(zebcim({"tree"}).out,
              HasSubstr("100 Mbit/s half duplex  below its 1 Gbit/s, one direction at a time  "));
}

TEST_P(Prompt, AlertsFitTheTerminalAndCarryAdvice) {
  std::string timeline = contentOf(ZEB_SNAPSHOTS "/failover_timeline.json");
  timeline.replace(timeline.find("\"at\": 1"), 7, "\"at\": 3");
  timeline.replace(timeline.find("\"at\": 2"), 7, "\"at\": 9");
  const ZEB::TemporaryFolder folder;
  std::ofstream(folder / "failover.json") << timeline;
  serve((folder / "failover.json").string());
  // At the same time: each has to hear what is said once.
  std::map<unsigned, Outcome> watched = {{60, {}}, {80, {}}, {200, {}}};
  std::vector<std::thread> terminals;
  for (auto& [columns, outcome] : watched) {
    terminals.emplace_back([this, width = columns, &into = outcome] {
      into = onTerminal(width, {"watch", "--count", "3", "--for", "30", "--advice"}, "dumb");
    });
  }
  for (std::thread& terminal : terminals) terminal.join();
  for (const auto& [columns, outcome] : watched) {
    EXPECT_EQ(outcome.status, 0);
    const std::vector<std::string> lines = linesOf(outcome.out);
    ASSERT_GT(lines.size(), 4U);
    for (std::size_t i = 1; i < lines.size(); ++i) EXPECT_LE(columnsOf(lines[i]), columns) << lines[i];
    EXPECT_THAT(lines[1], testing::ContainsRegex("^....-..-.. ..:..:..  bond0     Major        Ethernet"));
  }
  EXPECT_THAT(watched[60].out,
              HasSubstr("\n  - Check the cable and the transceivers at both ends, and\n    reseat them.\n"));
  EXPECT_THAT(watched[200].out,
              HasSubstr("\n  - Check the cable and the transceivers at both ends, and reseat them.\n"));
}

}  // namespace
}  // namespace ZebManager
