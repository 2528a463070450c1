// The plug-in's process is killed while cables are moved.
#include <gmock/gmock.h>
#include <signal.h>

#include <chrono>
#include <cstdlib>
#include <map>
#include <optional>
#include <thread>

#include "Attack.h"
#include "Ground.h"
#include "Subscriber.h"
#include "Unit.h"

namespace ZebManager {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;
using std::chrono::seconds;

class Kills : public testing::Test {
 protected:
  void SetUp() override {
    REQUIRE_GROUND();
    unit.emplace(UnitOptions{.plugin = {"--include-virtual"}});
    ASSERT_EQ(statusOf(ask(unit->http(), instancesOf("ZEB_EthernetPort"))), 200);
    subscribe(*unit, listener.url());
  }

  void setCable(bool in) {
    ASSERT_EQ(std::system(in ? "ip link set there up" : "ip link set there down"), 0);
  }
  void killPlugin() const {
    for (const pid_t process : unit->processes("zebcim-plugin")) kill(process, SIGKILL);
  }
  /// Of the port at the near end, which loses its link with the other one; that is switched off itself.
  std::vector<std::string> events() const {
    std::map<std::string, std::vector<std::string>> all;
    for (const auto& [element, event] : eventsAt(listener)) all[element].push_back(event);
    for (const auto& [element, each] : all) {
      if (each.front() == "2") return each;
    }
    return {};
  }
  bool come(std::size_t count) const {
    const auto end = Clock::now() + seconds(20);
    while (events().size() < count && Clock::now() < end) std::this_thread::sleep_for(milliseconds(10));
    return events().size() >= count;
  }

  TestListener listener;
  std::optional<Unit> unit;
};

/// Each comes once, wherever in between the process ends.
TEST_F(Kills, LoseAndDoubleNoTransition) {
  std::vector<std::string> expected;
  const auto move = [&](bool in) {
    ASSERT_NO_FATAL_FAILURE(setCable(in));
    expected.emplace_back(in ? "3" : "2");
  };
  move(false);
  ASSERT_TRUE(come(1)) << unit->log();
  for (int round = 0; round < 8; ++round) {
    if (round % 4 == 0) killPlugin();
    ASSERT_NO_FATAL_FAILURE(move(round % 2 == 0));
    if (round % 4 > 1) std::this_thread::sleep_for(milliseconds(40 * (round % 4)));
    if (round % 4 != 0) killPlugin();
    ASSERT_TRUE(come(expected.size())) << round << "\n" << unit->log();
    EXPECT_EQ(events(), expected);
  }
  std::this_thread::sleep_for(seconds(1));
  EXPECT_EQ(events(), expected) << unit->log();
}

}  // namespace
}  // namespace ZebManager
