// Alerts of recordings that change, as they come.
#include <signal.h>

#include <atomic>
#include <chrono>
#include <fstream>
#include <nlohmann/json.hpp>
#include <regex>
#include <sstream>
#include <thread>

#include "RealCommand.h"
#include "support/PropertyJson.h"

namespace ZebManager {
namespace {

using Json = nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Pair;

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

Json propertyOf(const Json& alert, const std::string& name) {
  return ZEB::test::propertyOf(alert["properties"], name);
}

class WatchCommand : public RealCommand {
 protected:
  void SetUp() override {
    RealCommand::SetUp();
    // A slow machine has to listen before something happens.
    Json timeline = Json::parse(std::ifstream(snapshotFile("failover_timeline")));
    timeline["steps"][1]["at"] = 3;
    timeline["steps"][2]["at"] = 4.5;
    std::ofstream(failover = (folder / "failover.json").string()) << timeline;
  }

  std::string failover;
};

// eth0 of bond0 loses its link and has it back a little later. The team is looked at first.
TEST_F(WatchCommand, PrintsEachAlertInALineAndNoOther) {
  const Outcome outcome = zebcim({"watch", "--source", failover, "--for", "7"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.err, "zebcim: watching 6 ports and 3 teams of the recording " + failover + "\n");
  std::vector<std::string> alerts = linesOf(outcome.out);
  const std::regex time(R"(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d  )");
  for (std::string& alert : alerts) {
    EXPECT_TRUE(std::regex_search(alert, time, std::regex_constants::match_continuous)) << alert;
    alert = std::regex_replace(alert, time, "", std::regex_constants::format_first_only);
  }
  EXPECT_THAT(
      alerts,
      ElementsAre(
          "bond0     Major        Ethernet connectivity lost: Ethernet Team bond0 has lost connectivity; "
          "1 of 2 members up",
          "bond0     Major        Redundancy of an Ethernet team lost: The redundancy of Ethernet Team "
          "bond0 has lost; 1 of 2 members up",
          "eth0      Major        Ethernet connectivity lost: Ethernet port 1 on ethernet controller 1; "
          "no link  [PCI Express slot 3]",
          "bond0     Information  Ethernet connectivity restored: The connectivity of Ethernet Team "
          "bond0 has restored; 2 of 2 members up",
          "bond0     Information  Redundancy of an Ethernet team fully restored: The redundancy of "
          "Ethernet Team bond0 has fully restored; 2 of 2 members up",
          "eth0      Information  Ethernet connectivity restored: Ethernet port 1 on ethernet controller "
          "1; link up, 1000 Mbit/s full duplex  [PCI Express slot 3]"));
}

TEST_F(WatchCommand, JsonGivesTheWholeIndicationInALine) {
  const Outcome outcome = zebcim({"watch", "--json=typed", "--source", failover, "--count", "6"});
  EXPECT_EQ(outcome.status, 0);
  std::vector<std::pair<std::string, std::string>> events;
  for (const std::string& line : linesOf(outcome.out)) {
    const Json alert = Json::parse(line);
    EXPECT_EQ(alert["class"], "ZEB_EthernetIndication");
    EXPECT_EQ(propertyOf(alert, "SystemName"), hostName());
    EXPECT_EQ(propertyOf(alert, "RecommendedActions").empty(), false);
    const std::string element = propertyOf(alert, "AlertingManagedElement");
    events.emplace_back(propertyOf(alert, "EventID"), element.substr(element.rfind("JXV:")));
  }
  const std::string team = "ZEB_EthernetTeam:1\"";
  const std::string port = "ZEB_EthernetPort:1\"";
  EXPECT_THAT(events,
              ElementsAre(Pair("2", "JXV:" + team), Pair("5", "JXV:" + team), Pair("2", "JXV:" + port),
                          Pair("3", "JXV:" + team), Pair("15", "JXV:" + team), Pair("3", "JXV:" + port)));
}

TEST_F(WatchCommand, AConditionNarrows) {
  const Outcome outcome = zebcim({"watch", "--json=typed", "--source", failover, "--count", "1", "--where",
                                  "EventID = '3' AND PerceivedSeverity = 2"});
  EXPECT_EQ(outcome.status, 0);
  ASSERT_THAT(linesOf(outcome.out), testing::SizeIs(1)) << outcome.err;
  const Json alert = Json::parse(linesOf(outcome.out)[0]);
  EXPECT_EQ(propertyOf(alert, "EventID"), "3") << "the loss before it is left out";
}

TEST_F(WatchCommand, AConditionThatCannotBeReadEndsIt) {
  const Outcome outcome = zebcim({"watch", "--source", failover, "--for", "7", "--where", "Nothing = 3"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.err, "zebcim: ZEB_EthernetIndication has no property 'Nothing'\n");
}

TEST_F(WatchCommand, AChangedFileIsNoticed) {
  const std::filesystem::path file = folder / "host.json";
  const auto play = [&](bool carrier) {
    const std::filesystem::path partial = folder / "partial";
    std::ofstream(partial)
        << R"({"format": "zeb-host-snapshot", "version": 1, "links": [{"index": 2, "name": "eth0",
        "type": 1, "parentBus": "pci", "parentDevice": "0000:01:00.0", "flags": ["UP")"
        << (carrier ? R"(, "LOWER_UP"], "carrier": true}]})" : R"(], "carrier": false}]})");
    std::filesystem::rename(partial, file);
  };
  play(true);
  std::atomic<bool> done = false;
  std::thread player([&] {
    for (bool carrier = false; !done; carrier = !carrier) {
      std::this_thread::sleep_for(std::chrono::milliseconds(700));
      play(carrier);
    }
  });
  const Outcome outcome = zebcim({"watch", "--source", file.string(), "--count", "2"});
  done = true;
  player.join();
  EXPECT_EQ(outcome.status, 0);
  EXPECT_THAT(outcome.out, HasSubstr("Ethernet connectivity lost: "));
  EXPECT_THAT(outcome.out, HasSubstr("Ethernet connectivity restored: "));
}

TEST_F(WatchCommand, EndsInGoodOrderWhenToldTo) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    const Outcome outcome = run(ZEB_CIM,
                                {"watch", "--source", snapshotFile("teams"), "--plugin", ZEB_REAL_PLUGIN,
                                 "--schema", ZEB_SCHEMA_FILE},
                                environment(), {"watching 6 ports", signal});
    EXPECT_EQ(outcome.status, 0) << signal;
    EXPECT_EQ(outcome.out, "");
  }
}

TEST_F(WatchCommand, AHostWithoutPortsIsWatchedToo) {
  const Outcome outcome = zebcim({"watch", "--source", snapshotFile("empty"), "--for", "0.5"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.out, "");
  EXPECT_THAT(outcome.err, HasSubstr("watching 0 ports and 0 teams"));
}

TEST_F(WatchCommand, WrongUsageShowsTheUsage) {
  const std::vector<std::vector<std::string>> wrong = {
      {"watch", "eth0"}, {"watch", "--for", "soon"}, {"watch", "--for", "-1"}, {"watch", "--count", "0"}};
  for (const auto& arguments : wrong) {
    const Outcome outcome = zebcim(arguments);
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.err, HasSubstr("Usage: "));
  }
}

TEST_F(WatchCommand, ARecordingThatIsNoneIsAnError) {
  const Outcome outcome = zebcim({"watch", "--source", "/dev/null"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.err, testing::StartsWith("zebcim: "));
}

}  // namespace
}  // namespace ZebManager
