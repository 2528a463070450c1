// The command line beside two servers that have the same stores: what a client reads next, through whichever,
// is what was changed last.
#include <gmock/gmock.h>

#include <filesystem>
#include <sstream>

#include "Server.h"
#include "WbemClient.h"

namespace ZebManager {
namespace {

using testing::HasSubstr;
namespace fs = std::filesystem;

const std::string kSharedSettings = R"(root/jxv:ZEB_EthEventSettings.InstanceId="JXV:0")";
const std::vector<std::string> kRecording = {"--source", ZEB_SNAPSHOTS "/two_cards.json"};

class SharedStores : public testing::Test {
 protected:
  void SetUp() override {
    if (wbemClient().empty()) GTEST_SKIP() << "the WBEM client is not installed";
    second.stop();
    fs::remove_all(second.folder() / "store");
    fs::create_directory_symlink(first.folder() / "store", second.folder() / "store");
    second.start();
  }

  /// At the command line, in a process of its own with the same stores.
  Outcome zebcim(std::vector<std::string> words) const {
    words.insert(words.begin(), {"--plugin", ZEB_REAL_PLUGIN, "--schema", ZEB_SCHEMAS "/zeb.mof"});
    words.insert(words.end(), kRecording.begin(), kRecording.end());
    return run(ZEB_CIM, words,
               {"ZEB_CONFIG=/dev/null", "ZEB_STORE_DIR=" + (first.folder() / "store").string(),
                "ZEB_RUN_DIR=" + (first.folder() / "run").string(), "ZEB_AUTOSTART=0"});
  }

  std::string membershipOfTheSecondPort() const {
    std::istringstream names(zebcim({"instances", "ZEB_EthernetMemberOfCollection", "--names"}).out);
    for (std::string name; std::getline(names, name);) {
      if (name.find("ZEB_EthernetPort:2") != std::string::npos) return name;
    }
    return "";
  }

  void expectBothSay(const std::string& object, const std::string& line) const {
    for (const Server* server : {&first, &second}) {
      EXPECT_THAT(ask(*server, "http", {"ei", object}).out, HasSubstr(line + "\n"));
    }
  }

  Server first{kRecording};
  Server second{kRecording};
};

TEST_F(SharedStores, ASettingOfTheCommandLineIsReadThroughBothServers) {
  expectBothSay("root/jxv:ZEB_EthEventSettings", "PollInterval=200");
  for (const std::string value : {"60", "200", "61"}) {
    ASSERT_EQ(
        zebcim({"modify", R"(ZEB_EthEventSettings.InstanceId="JXV:0")", "PollInterval=" + value}).status, 0);
    expectBothSay("root/jxv:ZEB_EthEventSettings", "PollInterval=" + value);
  }
}

TEST_F(SharedStores, ASettingOfOneServerIsReadThroughTheOther) {
  for (const std::string value : {"21", "10", "22"}) {
    const Server& changed = value == "10" ? second : first;
    ASSERT_EQ(
        ask(changed, "http", {"mi", kSharedSettings, {"FloodThreshold=" + value}, {}, "root:secret@"}).status,
        0);
    expectBothSay("root/jxv:ZEB_EthEventSettings", "FloodThreshold=" + value);
  }
}

TEST_F(SharedStores, AFilterOfTheCommandLineIsReadThroughBothServersWithTheGroupsStatus) {
  const std::string membership = membershipOfTheSecondPort();
  ASSERT_NE(membership, "");
  expectBothSay("root/jxv:ZEB_EthernetCollection", R"(GroupStatusDescriptions="Error")");
  ASSERT_EQ(zebcim({"modify", membership, "Included=false"}).status, 0);
  expectBothSay("root/jxv:ZEB_EthernetCollection", R"(GroupStatusDescriptions="OK")");
  expectBothSay("root/jxv:ZEB_EthernetMemberOfCollection", "Included=FALSE");
  ASSERT_EQ(zebcim({"modify", membership, "Included=true"}).status, 0);
  expectBothSay("root/jxv:ZEB_EthernetCollection", R"(GroupStatusDescriptions="Error")");
}

}  // namespace
}  // namespace ZebManager
