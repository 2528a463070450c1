#include <gmock/gmock.h>

#include <future>
#include <nlohmann/json.hpp>

#include "manager/Process.h"
#include "support/TestFolder.h"

// What is changed at the command line, seen by the next command: each is a process that loads the plug-in
// anew.

namespace ZEB::test {
namespace {

using Json = nlohmann::json;
using ZebManager::Outcome;

class KeptChangesTest : public testing::Test {
 protected:
  Outcome zebcim(std::vector<std::string> arguments) const {
    for (const char* word : {"--plugin", ZEB_PLUGIN, "--schema", ZEB_SCHEMA_FILE, "--source",
                             ZEB_TEST_DATA "/snapshots/two_cards.json", "--json"}) {
      arguments.emplace_back(word);
    }
    return ZebManager::run(
        ZEB_CIM, arguments,
        {"ZEB_CONFIG=/nonexistent", "ZEB_STORE_DIR=" + directory.file("store"),
         "ZEB_RUN_DIR=" + directory.file("run"), "ZEB_AUTOSTART=0", "ZEB_LOG_TARGET=stderr"});
  }

  Json answer(const std::vector<std::string>& arguments) const {
    const Outcome outcome = zebcim(arguments);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    return Json::parse(outcome.out, nullptr, false);
  }

  /// The value of a property of the instance whose path has `part` in it.
  Json value(const char* className, const std::string& part, const std::string& property) const {
    for (const Json& instance : answer({"instances", className})) {
      if (instance["path"].get<std::string>().find(part) == std::string::npos) continue;
      return instance["properties"][property];
    }
    return nullptr;
  }

  std::string path(const char* className, const std::string& part) const {
    for (const Json& name : answer({"instances", className, "--names"})) {
      if (name.get<std::string>().find(part) != std::string::npos) return name;
    }
    return "";
  }

  TestFolder directory;
};

TEST_F(KeptChangesTest, aSetting) {
  EXPECT_EQ(value("ZEB_EthEventSettings", "JXV:0", "PollInterval"), 200);
  EXPECT_EQ(
      zebcim({"modify", path("ZEB_EthEventSettings", "JXV:0"), "PollInterval=60", "MemberLeftTeam=true"})
          .status,
      0);
  EXPECT_EQ(value("ZEB_EthEventSettings", "JXV:0", "PollInterval"), 60);
  EXPECT_EQ(value("ZEB_EthEventSettings", "JXV:0", "MemberLeftTeam"), true);
  EXPECT_EQ(value("ZEB_EthEventSettings", "JXV:0", "FloodThreshold"), 10);
}

TEST_F(KeptChangesTest, aPortsFilter) {
  // The second port has no carrier, and the group is as bad as that until the port is excluded.
  EXPECT_EQ(value("ZEB_EthernetCollection", "", "GroupStatusDescriptions"), Json::array({"Error"}));
  const std::string membership = path("ZEB_EthernetMemberOfCollection", "ZEB_EthernetPort:2");
  EXPECT_EQ(zebcim({"modify", membership, "Included=false"}).status, 0);
  EXPECT_EQ(value("ZEB_EthernetMemberOfCollection", "ZEB_EthernetPort:2", "Included"), false);
  EXPECT_EQ(value("ZEB_EthernetMemberOfCollection", "ZEB_EthernetPort:1", "Included"), true);
  EXPECT_EQ(value("ZEB_EthernetCollection", "", "GroupStatusDescriptions"), Json::array({"OK"}));
}

TEST_F(KeptChangesTest, ofTwoProcessesAtOnce) {
  const std::string settings = path("ZEB_EthEventSettings", "JXV:0");
  const auto change = [&](const char* name, int upTo) {
    int failures = 0;
    for (int i = 1; i <= upTo; ++i) {
      const std::string assignment = std::string(name) + "=" + std::to_string(i);
      failures += zebcim({"modify", settings, assignment}).status == 0 ? 0 : 1;
    }
    return failures;
  };
  auto other = std::async(std::launch::async, [&] { return change("FloodThreshold", 15); });
  EXPECT_EQ(change("MaxFloodLevel", 16), 0);
  EXPECT_EQ(other.get(), 0);
  EXPECT_EQ(value("ZEB_EthEventSettings", "JXV:0", "FloodThreshold"), 15);
  EXPECT_EQ(value("ZEB_EthEventSettings", "JXV:0", "MaxFloodLevel"), 16);
}

TEST_F(KeptChangesTest, withoutAStoreNothingIsKeptAndTheCommandSaysSo) {
  directory.write("store", "a file where the directory should be");
  EXPECT_EQ(zebcim({"modify", path("ZEB_EthEventSettings", "JXV:0"), "PollInterval=60"}).status, 1);
  EXPECT_EQ(value("ZEB_EthEventSettings", "JXV:0", "PollInterval"), 200);
}

TEST_F(KeptChangesTest, aDamagedStoreIsPutAsideAndTheNextChangeIsKept) {
  zebcim({"modify", path("ZEB_EthEventSettings", "JXV:0"), "PollInterval=60"});
  directory.write("store/ZEB_EthEventSettings.db", std::string(9000, 'n'));
  EXPECT_EQ(value("ZEB_EthEventSettings", "JXV:0", "PollInterval"), 200);
  EXPECT_TRUE(std::filesystem::exists(directory.file("store/ZEB_EthEventSettings.db.damaged-1")));
  zebcim({"modify", path("ZEB_EthEventSettings", "JXV:0"), "PollInterval=61"});
  EXPECT_EQ(value("ZEB_EthEventSettings", "JXV:0", "PollInterval"), 61);
}

}  // namespace
}  // namespace ZEB::test
