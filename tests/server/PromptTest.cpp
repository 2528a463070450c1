// What people type, with and without a service.
#include <gmock/gmock.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <regex>
#include <thread>

#include "Prompt.h"
#include "support/Content.h"

namespace ZebManager {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;
using ZEB::test::contentOf;

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
  // A team has the address of its first member.
  expectRefusal({"get", "00:1b:21:00:00:03"}, "'00:1b:21:00:00:03' could be any of eth2, bond1\n");
}

/// A service remembers where it saw a name, and is not believed.
TEST_P(Prompt, FollowsNamesThatChange) {
  const std::string before = contentOf(ZEB_SNAPSHOTS "/one_port.json");
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
  expectRefusal({"get", "ports"}, "'ports' could be any of eth0, eth1, eth2, eth3, eth4, eth5\n");
  expectRefusal({"get", R"(ZEB_EthernetPort.CreationClassName="ZEB_EthernetPort")"},
                "' could be any of eth0, eth1, ");
  expectRefusal(
      {"get", "cards"},
      R"('cards' could be any of ZEB_EthernetPortController.DeviceID="JXV:ZEB_EthernetPortController:1")"
      R"(, ZEB_EthernetPortController.DeviceID="JXV:ZEB_EthernetPortController:2")"
      "\n");
  expectRefusal({"get", R"(ZEB_EthernetPort.DeviceID="x")"},
                R"(no ZEB_EthernetPort is 'ZEB_EthernetPort.DeviceID="x"'; its keys are )");
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
  EXPECT_THAT(option.err, HasSubstr("\nUsage: zebcim instances [OPTIONS] CLASS\n"));
  EXPECT_THAT(option.err, HasSubstr("\nzebcim --help lists the options that every command has.\n"));
  expectRefusal({"modify", "settings", "PolInterval=60"},
                "ZEB_EthEventSettings has no property 'PolInterval'; did you mean 'PollInterval'?");
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
  const Outcome folder = run(ZEB_CIM, {"tree"}, {"ZEB_CONFIG=/dev/null", "ZEB_RUN_DIR=relative"});
  EXPECT_EQ(folder.status, 1);
  EXPECT_EQ(folder.err, "zebcim: ZEB_RUN_DIR is 'relative': expected a path that begins with /, or none\n");
  const Outcome capture = run(ZEB_CIM, {"capture", "-", "--source", ZEB_SNAPSHOTS "/one_port.json"}, own);
  EXPECT_EQ(capture.status, 1);
  EXPECT_THAT(capture.err, HasSubstr("capture records this machine, and takes no --source"));
}

TEST(PromptTest, LocalhostIsAnAddress) {
  Server server({"--source", ZEB_SNAPSHOTS "/one_port.json"}, {}, {.http = "localhost:0"});
  EXPECT_THAT(server.http(), StartsWith("127.0.0.1:"));
}

}  // namespace
}  // namespace ZebManager
