// That documents say what the commands do.
#include <gmock/gmock.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <fstream>
#include <regex>
#include <set>

#include "Prompt.h"
#include "support/Content.h"

namespace ZebManager {
namespace {

using testing::HasSubstr;
using ZEB::test::contentOf;

/// What an administrator does first, on two cards. docs/first-steps.txt is what this prints; ZEB_RECORD=1
/// writes it.
TEST(SessionTest, IsTheOneInTheDocuments) {
  Server server({"--source", ZEB_SNAPSHOTS "/two_cards.json"});
  const std::vector<std::vector<std::string>> session = {
      {"tree"},
      {"check"},
      {"get", "eth1"},
      {"instances", "ports", "--names"},
      {"associators", "eth0", "--result-class", "ZEB_EthernetPortController"},
      {"get", "settings"},
      {"modify", "settings", "PollInterval=60"},
      {"get", "settings", "--json"},
      {"modify", "settings", "Caption=mine"},
      {"get", "eth9"}};
  std::string text;
  for (const auto& words : session) {
    text += "$ zebcim";
    for (const std::string& word : words) text += " " + word;
    const Outcome outcome = run(ZEB_CIM, words,
                                {"ZEB_CONFIG=/dev/null", "ZEB_RUN_DIR=" + (server.folder() / "run").string(),
                                 "LC_ALL=C.UTF-8", "TZ=UTC"});
    text += "\n" + outcome.out + outcome.err + "\n";
  }
  std::array<char, 256> host{};
  gethostname(host.data(), host.size() - 1);
  const std::string name = host.data();
  text = std::regex_replace(text, std::regex("//" + name + "/"), "//server1/");
  text = std::regex_replace(text, std::regex("\"" + name + "(\\\\?)\""), "\"server1$1\"");
  text = std::regex_replace(text, std::regex("(SystemName +)" + name + "\n"), "$1server1\n");
  text = std::regex_replace(text, std::regex("tree\n" + name + "\n"), "tree\nserver1\n");
  if (std::getenv("ZEB_RECORD")) std::ofstream(ZEB_SESSION) << text;
  EXPECT_EQ(text, contentOf(ZEB_SESSION));
}

/// Each option that a command has is in the manual, and each that the manual has is the command's.
TEST(ManualTest, SaysWhatHelpSays) {
  std::string manual = contentOf(ZEB_MANUAL);
  const std::string help = run(ZEB_CIM, {"--help"}).out;
  const auto wordsOf = [](const std::string& text, const std::string& pattern) {
    std::set<std::string> words;
    const std::regex expression(pattern);
    for (std::sregex_iterator at(text.begin(), text.end(), expression), end; at != end; ++at)
      words.insert((*at)[1]);
    return words;
  };
  const auto commands = wordsOf(help.substr(help.find("Subcommands:")), "\n  ([a-z]+) ");
  EXPECT_THAT(commands, testing::IsSupersetOf({"tree", "watch", "doctor", "serve"}));
  std::set<std::string> options = wordsOf(help, "--([a-z-]+)");
  for (const std::string& command : commands) {
    EXPECT_THAT(manual, HasSubstr(".It Cm " + command)) << command;
    const auto own = wordsOf(run(ZEB_CIM, {command, "--help"}).out, "--([a-z-]+)");
    options.insert(own.begin(), own.end());
  }
  EXPECT_EQ(wordsOf(manual, "(?:Fl|,) -([a-z-]+)"), options);
}

}  // namespace
}  // namespace ZebManager
