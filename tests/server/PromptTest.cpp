// What people type, on terminals of any width, with and without a service.
#include <gmock/gmock.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <regex>
#include <set>
#include <sstream>
#include <thread>

#include "Process.h"
#include "Server.h"
#include "Terminal.h"

namespace ZebManager {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

std::size_t columnsOf(const std::string& line) {
  return static_cast<std::size_t>(
      std::ranges::count_if(line, [](char c) { return (static_cast<unsigned char>(c) & 0xc0) != 0x80; }));
}

/// With a service, and without one.
class Prompt : public testing::TestWithParam<bool> {
 protected:
  void serve(const std::string& recording) {
    _recording = recording;
    if (GetParam()) _server.emplace(std::vector<std::string>{"--source", recording});
  }
  std::vector<std::string> environment() const {
    const std::filesystem::path folder = _server ? _server->folder() : _folder.path();
    std::vector<std::string> all = {"ZEB_CONFIG=/dev/null", "ZEB_STORE_DIR=" + (folder / "store").string(),
                                    "ZEB_RUN_DIR=" + (folder / "run").string(), "LC_ALL=C.UTF-8", "TZ=UTC"};
    if (!_server) all.push_back("ZEB_SOURCE_FILE=" + _recording);
    return all;
  }
  Outcome zebcim(const std::vector<std::string>& words) const { return run(ZEB_CIM, words, environment()); }
  Outcome onTerminal(unsigned columns, const std::vector<std::string>& words, const std::string& term) const {
    std::vector<std::string> all = environment();
    all.push_back("TERM=" + term);
    return runOnTerminal(columns, ZEB_CIM, words, all);
  }
  /// The first line, which is the path of what was found.
  std::string found(const std::string& word) const {
    const Outcome outcome = zebcim({"get", word});
    EXPECT_EQ(outcome.status, 0) << word << ": " << outcome.err;
    return outcome.out.substr(0, outcome.out.find('\n'));
  }
  void expectRefusal(const std::vector<std::string>& words, const std::string& part) const {
    const Outcome outcome = zebcim(words);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.err, HasSubstr(part));
  }

 private:
  const ZEB::TemporaryFolder _folder;
  std::optional<Server> _server;
  std::string _recording;
};

INSTANTIATE_TEST_SUITE_P(All, Prompt, testing::Bool(),
                         [](const auto& row) { return row.param ? "WithService" : "Alone"; });

TEST_P(Prompt, TakesTheNamesThatPeopleUse) {
  serve(ZEB_SNAPSHOTS "/two_cards.json");
  EXPECT_THAT(found("eth0"), EndsWith("DeviceID=\"JXV:ZEB_EthernetPort:1\"  eth0"));
  EXPECT_THAT(found("eth0.100"), EndsWith("Name=\"JXV:ZEB_EthernetLANEndpoint:2\"  eth0.100"));
  EXPECT_THAT(found("slot7"), EndsWith("DeviceID=\"JXV:ZEB_EthernetPortController:2\""));
  EXPECT_THAT(found("PCI Express slot 3"), EndsWith("DeviceID=\"JXV:ZEB_EthernetPortController:1\""));
  for (const char* address : {"00:1b:21:00:00:02", "00-1B-21-00-00-02", "001b21000002"})
    EXPECT_THAT(found(address), EndsWith("DeviceID=\"JXV:ZEB_EthernetPort:2\"  eth1"));
  EXPECT_THAT(found("settings"), EndsWith("ZEB_EthEventSettings.InstanceId=\"JXV:0\""));
  EXPECT_THAT(found(R"(ZEB_EthernetPort.DeviceID="JXV:ZEB_EthernetPort:3")"), EndsWith("Port:3\"  eth2"));
  EXPECT_THAT(found("system"), HasSubstr("ZEB_ComputerSystem."));
  for (const char* command : {"associators", "references"})
    EXPECT_EQ(zebcim({command, "eth0", "--names"}).status, 0) << command;
  EXPECT_THAT(linesOf(zebcim({"instances", "ports", "--names"}).out), testing::SizeIs(6));
  EXPECT_EQ(zebcim({"instances", "EthernetPort"}).out, zebcim({"instances", "ZEB_EthernetPort"}).out);
  EXPECT_THAT(zebcim({"instances", "ports"}).out, HasSubstr("EthernetPort:6\"  eth5\n"));
}

TEST_P(Prompt, TakesTheNamesOfTeams) {
  serve(ZEB_SNAPSHOTS "/teams.json");
  EXPECT_THAT(found("bond0"), EndsWith("ZEB_EthernetTeam.InstanceID=\"JXV:ZEB_EthernetTeam:1\"  bond0"));
}

/// A service remembers where it saw a name, and is not believed.
TEST_P(Prompt, FollowsNamesThatChange) {
  std::ifstream in(ZEB_SNAPSHOTS "/one_port.json");
  const std::string before((std::istreambuf_iterator<char>(in)), {});
  const ZEB::TemporaryFolder folder;
  std::ofstream(folder / "host.json") << before;
  serve((folder / "host.json").string());
  EXPECT_THAT(found("eth0"), EndsWith("EthernetPort:1\"  eth0"));
  std::ofstream(folder / "new.json") << std::regex_replace(before, std::regex("\"eth0\""), "\"lan0\"");
  std::filesystem::rename(folder / "new.json", folder / "host.json");
  for (int i = 0; i < 100 && zebcim({"get", "lan0"}).status != 0; ++i)
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
  EXPECT_THAT(found("lan0"), EndsWith("EthernetPort:1\"  lan0"));
  expectRefusal({"get", "eth0"}, "nothing is called 'eth0'");
}

TEST_P(Prompt, SaysWhatAWordCouldBe) {
  serve(ZEB_SNAPSHOTS "/two_cards.json");
  expectRefusal({"get", "eth9"},
                "nothing is called 'eth9'; did you mean 'eth0'?; there are eth0, eth0.100, ");
  expectRefusal({"get", "ports"}, "'ports' could be any of //");
  expectRefusal({"get", R"(ZEB_EthernetPort.CreationClassName="ZEB_EthernetPort")"}, "' could be any of //");
  expectRefusal({"instances", "porst"}, "; did you mean 'ports'?");
  expectRefusal({"associators", "eth0", "--result-class", "Foo"}, "unknown class 'Foo'");
  expectRefusal({"associators", "eth0", "--assoc-class", "ZEB_EthernetDevise"},
                "did you mean 'ZEB_EthernetDevice'?");
  expectRefusal({"get", "ZEB_EthernetPort.DeviceID=JXV:ZEB_EthernetPort:1"},
                R"(: write 'ZEB_EthernetPort.DeviceID="JXV:ZEB_EthernetPort:1"')");
  const Outcome wrong = zebcim({"instanes", "ports"});
  EXPECT_EQ(wrong.status, 2);
  EXPECT_THAT(wrong.err, StartsWith("zebcim: there is no command 'instanes'; did you mean 'instances'?\n"));
  const Outcome option = zebcim({"instances", "ports", "--nmaes"});
  EXPECT_EQ(option.status, 2);
  EXPECT_THAT(option.err, StartsWith("zebcim: there is no option '--nmaes'; did you mean '--names'?\n"));
  expectRefusal({"modify", "settings", "PolInterval=60"},
                "ZEB_EthEventSettings has no property 'PolInterval'; did you mean 'PollInterval'?");
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
  std::ifstream in(ZEB_SNAPSHOTS "/one_port.json");
  std::string slow((std::istreambuf_iterator<char>(in)), {});
  slow = std::regex_replace(slow, std::regex("\"speed\": [0-9]+"), "\"speed\": 100");
  slow = std::regex_replace(slow, std::regex("\"fullDuplex\": true"), "\"fullDuplex\": false");
  const ZEB::TemporaryFolder folder;
  std::ofstream(folder / "slow.json") << slow;
  serve((folder / "slow.json").string());
  EXPECT_THAT(zebcim({"tree"}).out,
              HasSubstr("100 Mbit/s half duplex  below its 1 Gbit/s, one direction at a time  "));
}

TEST_P(Prompt, AlertsFitTheTerminalAndCarryAdvice) {
  std::ifstream in(ZEB_SNAPSHOTS "/failover_timeline.json");
  std::string timeline((std::istreambuf_iterator<char>(in)), {});
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
    std::ifstream in(std::string(ZEB_COMPLETION_FOLDER) + file);
    const std::string text((std::istreambuf_iterator<char>(in)), {});
    const auto known = wordsOf(text, "(--[a-z-]+)");
    for (const std::string& option : options) EXPECT_THAT(known, testing::Contains(option)) << file;
    const auto words = wordsOf(text, "\\b([a-z]+)\\b");
    for (const std::string& command : commands) EXPECT_THAT(words, testing::Contains(command)) << file;
  }
}

TEST(PromptTest, KnowsItsVersion) {
  const Outcome outcome = run(ZEB_CIM, {"--version"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_THAT(outcome.out, testing::MatchesRegex("zebcim [0-9.]+\n"));
}

TEST(PromptTest, RefusesWhatCannotBe) {
  const std::vector<std::string> own = {"ZEB_CONFIG=/dev/null", "ZEB_RUN_DIR=/nowhere"};
  const Outcome config = run(ZEB_CIM, {"serve", "--config", "/nope"}, own);
  EXPECT_EQ(config.status, 1);
  EXPECT_EQ(config.err, "zebcim: cannot read the configuration /nope: No such file or directory\n");
  const Outcome source = run(ZEB_CIM, {"--source", "/nope", "serve", "--http", "127.0.0.1:0"}, own);
  EXPECT_EQ(source.status, 1);
  EXPECT_THAT(source.err, StartsWith("zebcim: cannot read the snapshot '/nope': "));
  const Outcome capture = run(ZEB_CIM, {"capture", "-", "--source", ZEB_SNAPSHOTS "/one_port.json"}, own);
  EXPECT_EQ(capture.status, 1);
  EXPECT_THAT(capture.err, HasSubstr("capture records this machine, and takes no --source"));
}

TEST(PromptTest, LocalhostIsAnAddress) {
  Server server({"--source", ZEB_SNAPSHOTS "/one_port.json"}, {}, {.http = "localhost:0"});
  EXPECT_THAT(server.http(), StartsWith("127.0.0.1:"));
}

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
  std::ifstream in(ZEB_SESSION);
  EXPECT_EQ(text, std::string((std::istreambuf_iterator<char>(in)), {}));
}

/// Each option that a command has is in the manual, and each that the manual has is the command's.
TEST(ManualTest, SaysWhatHelpSays) {
  std::ifstream in(ZEB_MANUAL);
  std::string manual((std::istreambuf_iterator<char>(in)), {});
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
