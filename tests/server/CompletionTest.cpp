// What shells complete.
#include <gmock/gmock.h>

#include <filesystem>
#include <regex>
#include <set>

#include "Prompt.h"
#include "support/Content.h"

namespace ZebManager {
namespace {

using testing::AllOf;
using ZEB::test::contentOf;

TEST_P(Prompt, CompletesWordsInBash) {
  serve(ZEB_SNAPSHOTS "/two_cards.json");
  const auto completed = [&](const std::string& words) {
    const std::string script = "source " ZEB_COMPLETION "; COMP_WORDS=(" ZEB_CIM " " + words +
                               "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _zebcim; echo \"${COMPREPLY[*]}\"";
    return run("/bin/bash", {"-c", script}, environment()).out;
  };
  EXPECT_EQ(completed("do"), "doctor\n");
  EXPECT_EQ(completed("get eth0"), "eth0 eth0.100 eth0.100.5\n");
  EXPECT_EQ(completed("--json modify eth5"), "eth5\n");
  EXPECT_EQ(completed("instances po"), "ports\n");
  EXPECT_EQ(completed("watch --ad"), "--advice\n");
  EXPECT_EQ(completed("associators eth0 --result-class ZEB_EthernetTeamM"), "ZEB_EthernetTeamMember\n");
}

/// With the two commands of zsh's completion that the function calls put in their place.
TEST_P(Prompt, CompletesWordsInZsh) {
  if (!std::filesystem::exists("/usr/bin/zsh")) GTEST_SKIP() << "zsh is not installed";
  serve(ZEB_SNAPSHOTS "/two_cards.json");
  const auto completed = [&](const std::string& words, const std::string& prefix = "") {
    const std::string script =
        "compadd() { if [[ $1 == -a ]]; then print -l -- ${(P)2}; else shift; print -l -- $@; fi }\n"
        "_files() { print files }\n"
        "complete() { local -a words=(" ZEB_CIM " " +
        words + " ''); local CURRENT=$#words PREFIX='" + prefix +
        "'; source " ZEB_COMPLETION_FOLDER "/_zebcim }; complete";
    return linesOf(run("/usr/bin/zsh", {"-fc", script}, environment()).out);
  };
  using testing::Contains;
  EXPECT_THAT(completed(""), AllOf(Contains("tree"), Contains("doctor"), Contains("invoke")));
  EXPECT_THAT(completed("get"), AllOf(Contains("eth0"), Contains("eth0.100.5"), Contains("eth5")));
  EXPECT_THAT(completed("instances"), AllOf(Contains("ports"), Contains("ZEB_EthernetPort")));
  EXPECT_THAT(completed("watch", "--"), AllOf(Contains("--advice"), Contains("--json=typed")));
  EXPECT_THAT(completed("associators eth0 --result-class"), Contains("ZEB_EthernetTeamMember"));
  EXPECT_THAT(completed("--source"), testing::ElementsAre("files"));
}

/// What bash and zsh complete is what the command line has.
TEST(CompletionTest, KnowsEveryCommandAndOption) {
  const auto wordsOf = [](const std::string& text, const std::string& pattern) {
    std::set<std::string> words;
    const std::regex expression(pattern);
    for (std::sregex_iterator at(text.begin(), text.end(), expression), end; at != end; ++at)
      words.insert((*at)[1]);
    return words;
  };
  const std::string help = run(ZEB_CIM, {"--help"}).out;
  const auto commands = wordsOf(help.substr(help.find("Subcommands:")), "\n  ([a-z]+) ");
  std::set<std::string> options = wordsOf(help, "(--[a-z-]+)");
  for (const std::string& command : commands) {
    const auto own = wordsOf(run(ZEB_CIM, {command, "--help"}).out, "(--[a-z-]+)");
    options.insert(own.begin(), own.end());
  }
  for (const char* file : {"/zebcim.bash", "/_zebcim"}) {
    const std::string text = contentOf(std::string(ZEB_COMPLETION_FOLDER) + file);
    const auto known = wordsOf(text, "(--[a-z-]+)");
    for (const std::string& option : options) EXPECT_THAT(known, testing::Contains(option)) << file;
    const auto words = wordsOf(text, "\\b([a-z]+)\\b");
    for (const std::string& command : commands) EXPECT_THAT(words, testing::Contains(command)) << file;
  }
}

}  // namespace
}  // namespace ZebManager
