// From a cable to the real Alertmanager, as a process of the test's own.
#include <gmock/gmock.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <thread>

#include "CableRecording.h"
#include "RealAlertmanager.h"
#include "Server.h"
#include "posix/Arguments.h"
#include "posix/TemporaryFolder.h"
#include "support/TestListener.h"

namespace ZebManager {
namespace {

using Json = nlohmann::json;
using testing::HasSubstr;

const std::vector<std::string> kNone;
const std::vector<std::string> kLost = {"ZebConnectivityLost"};

class AlertmanagerTest : public testing::Test {
 protected:
  explicit AlertmanagerTest(const std::string& machine = "one_port.json") : recording(file(), machine) {}

  void SetUp() override {
    if (access(kAlertmanager, X_OK) != 0) GTEST_SKIP() << "Debian's prometheus-alertmanager is not installed";
    alertmanager.emplace(port);
    server = std::make_unique<Server>(std::vector<std::string>{"--source", file()},
                                      "[alertmanager]\nurls = [\"http://127.0.0.1:" + std::to_string(port) +
                                          "\"]\nlabels = [\"site=fra1\", \"instance=web1\"]\n"
                                          "resend-seconds = 1\n[delivery]\nlongest-pause-milliseconds = 500\n"
                                          "first-pause-milliseconds = 100\n");
    ASSERT_TRUE(alertmanager->becomes(kNone));
    await();
  }

  std::string file() const { return (folder / "cables.json").string(); }
  /// What changes before the plug-in has looked is no change to it.
  void await() const {
    ASSERT_THAT(ZebManager::exchange(server->http(), "GET /metrics HTTP/1.0\r\nHost: localhost\r\n\r\n"),
                HasSubstr("zeb_port_carrier"));
  }

  const ZEB::TemporaryFolder folder;
  CableRecording recording;
  const std::uint16_t port = freePort();
  std::optional<RealAlertmanager> alertmanager;
  std::unique_ptr<Server> server;
};

TEST_F(AlertmanagerTest, HasAnAlertWhileTheCableIsPulled) {
  recording.setCable(false);
  ASSERT_TRUE(alertmanager->becomes(kLost));
  const Json alert = (*alertmanager->active())[0];
  EXPECT_EQ(alert["labels"], (Json{{"alertname", "ZebConnectivityLost"},
                                   {"severity", "critical"},
                                   {"interface", "eth0"},
                                   {"instance", "web1"},
                                   {"site", "fra1"}}));
  EXPECT_EQ(alert["annotations"]["event"], "2");
  EXPECT_EQ(alert["annotations"]["summary"], "Ethernet connectivity lost");
  EXPECT_THAT(alert["annotations"]["recommended_actions"].get<std::string>(),
              HasSubstr("Check whether somebody pulled the cable"));
  // Longer than it lasts when it is not sent again.
  std::this_thread::sleep_for(std::chrono::seconds(6));
  EXPECT_EQ(RealAlertmanager::namesOf(alertmanager->active()), kLost);
  recording.setCable(true);
  EXPECT_TRUE(alertmanager->becomes(kNone));
  EXPECT_EQ(server->stop(), 0);
}

TEST_F(AlertmanagerTest, GetsWhatIsSoWhenItIsBack) {
  alertmanager.reset();
  recording.setCable(false);
  std::this_thread::sleep_for(std::chrono::seconds(2));
  alertmanager.emplace(port);
  ASSERT_TRUE(alertmanager->becomes(kLost));
  alertmanager.reset();
  recording.setCable(true);
  std::this_thread::sleep_for(std::chrono::seconds(2));
  alertmanager.emplace(port);
  ASSERT_TRUE(alertmanager->becomes(kNone));
  std::this_thread::sleep_for(std::chrono::seconds(2));
  EXPECT_EQ(RealAlertmanager::namesOf(alertmanager->active()), kNone) << "nothing comes back";
}

TEST_F(AlertmanagerTest, KeepsAnAlertOverTheDeathOfTheServer) {
  recording.setCable(false);
  ASSERT_TRUE(alertmanager->becomes(kLost));
  const std::string begun = (*alertmanager->active())[0]["startsAt"];
  kill(server->id(), SIGKILL);
  ASSERT_NE(server->stop(), 0);
  alertmanager.reset();
  alertmanager.emplace(port);
  server->start();
  ASSERT_TRUE(alertmanager->becomes(kLost));
  EXPECT_EQ((*alertmanager->active())[0]["startsAt"], begun);
  await();
  // Longer than it takes to find out that a port is well.
  std::this_thread::sleep_for(std::chrono::seconds(5));
  EXPECT_EQ(RealAlertmanager::namesOf(alertmanager->active()), kLost);
  recording.setCable(true);
  EXPECT_TRUE(alertmanager->becomes(kNone));
}

TEST_F(AlertmanagerTest, HearsOfTheEndThatNobodySaw) {
  recording.setCable(false);
  ASSERT_TRUE(alertmanager->becomes(kLost));
  ASSERT_EQ(server->stop(), 0);
  recording.setCable(true);
  server->start();
  await();
  // By itself it would end in four seconds, but it is in the file and would be sent again each second.
  std::this_thread::sleep_for(std::chrono::seconds(8));
  EXPECT_EQ(RealAlertmanager::namesOf(alertmanager->active()), kNone);
  recording.setCable(false);
  EXPECT_TRUE(alertmanager->becomes(kLost));
}

class AlertmanagerOfTeamsTest : public AlertmanagerTest {
 protected:
  AlertmanagerOfTeamsTest() : AlertmanagerTest("teams.json") {}

  /// Those of bond0, of eth0 and eth1.
  bool becomes(const std::vector<std::string>& expected) const {
    std::vector<std::string> found;
    for (int i = 0; i < 600; ++i) {
      found.clear();
      for (const Json& alert : alertmanager->active().value_or(Json::array())) {
        const Json& labels = alert["labels"];
        found.push_back(labels["alertname"].get<std::string>() + " " + labels.value("interface", "") + "/" +
                        labels.value("team", ""));
      }
      std::ranges::sort(found);
      if (found == expected) return true;
      std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    ADD_FAILURE() << testing::PrintToString(found);
    return false;
  }
};

/// A team of two: one member goes, then the other, and both come back.
TEST_F(AlertmanagerOfTeamsTest, HasAlertsOfWhatIsLeftOfATeam) {
  recording.setCable(false, 0);
  ASSERT_TRUE(
      becomes({"ZebConnectivityLost /bond0", "ZebConnectivityLost eth0/", "ZebRedundancyLost /bond0"}));
  recording.setCable(false, 1);
  ASSERT_TRUE(becomes({"ZebConnectivityLost /bond0", "ZebConnectivityLost eth0/", "ZebConnectivityLost eth1/",
                       "ZebRedundancyLost /bond0", "ZebTeamFailed /bond0"}));
  recording.setCable(true, 0);
  ASSERT_TRUE(
      becomes({"ZebConnectivityLost /bond0", "ZebConnectivityLost eth1/", "ZebRedundancyLost /bond0"}));
  recording.setCable(true, 1);
  ASSERT_TRUE(becomes({}));
}

/// Without the server, what it has sent ends by itself.
TEST_F(AlertmanagerTest, DoesNotKeepTheAlertOfADeadServer) {
  recording.setCable(false);
  ASSERT_TRUE(alertmanager->becomes(kLost));
  server.reset();
  EXPECT_TRUE(alertmanager->becomes(kNone));
}

}  // namespace
}  // namespace ZebManager
