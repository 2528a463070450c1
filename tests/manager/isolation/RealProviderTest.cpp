// The plug-in itself under the supervisor, on recordings.
#include <signal.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <thread>

#include "Supervised.h"

namespace ZebManager {
namespace {

/// The event of a port that has lost its connectivity.
constexpr char kLost[] = "alerts 2";
/// Of one that has it again.
constexpr char kRestored[] = "alerts 3";

class RealProvider : public Supervised {
 protected:
  RealProvider() {
    options.process.program = ZEB_REAL_PROVIDER;
    options.patience = 1s;
    options.timeLimit = 6s * kPace;
    setenv("ZEB_STORE_DIR", folder.path().c_str(), 1);
    setenv("ZEB_RUN_DIR", folder.path().c_str(), 1);
    setenv("ZEB_LOG_LEVEL", "error", 1);
    setenv("ZEB_SOURCE_FILE", file("host.json").c_str(), 1);
    play(true);
  }

  /// A host with one port, whose cable is in or out.
  void play(bool carrier) {
    std::ofstream(file("partial"))
        << R"({"format": "zeb-host-snapshot", "version": 1, "links": [{"index": 2, "name": "eth0",
        "type": 1, "parentBus": "pci", "parentDevice": "0000:01:00.0", "flags": ["UP")"
        << (carrier ? R"(, "LOWER_UP"], "carrier": true}]})" : R"(], "carrier": false}]})");
    std::filesystem::rename(file("partial"), file("host.json"));
  }

  void listen() { supervisor->setFilters({{"alerts", "SELECT * FROM ZEB_EthernetIndication", "WQL"}}); }

  std::size_t counted(const std::string& alert) {
    std::size_t count = 0;
    for (const std::string& indication : indications()) count += indication == alert;
    return count;
  }

  /// Moves the cable until somebody says so: a pass that has not seen the port before has nothing to compare
  /// with.
  bool pullUntilAlerted() {
    const std::size_t before = counted(kLost);
    for (int round = 0; round < 8; ++round) {
      play(true);
      std::this_thread::sleep_for(700ms);
      play(false);
      for (int wait = 0; wait < 20; ++wait) {
        if (counted(kLost) > before) return true;
        std::this_thread::sleep_for(100ms);
      }
    }
    return false;
  }
};

TEST_F(RealProvider, AModificationThatNeverReturnsDisturbsNoOtherClient) {
  start();
  EXPECT_EQ(read("count ZEB_EthernetPort").body, "1");
  auto modified = begin("modify-wrong-list", false);
  std::this_thread::sleep_for(200ms);
  std::vector<std::thread> clients;
  std::atomic<int> wrong = 0;
  std::atomic<int> answers = 0;
  std::atomic<long> longest = 0;
  for (int i = 0; i < 8; ++i) {
    clients.emplace_back([&] {
      while (modified.wait_for(0ms) != std::future_status::ready) {
        Answer answer;
        const auto time = timeOf([&] { answer = read("count ZEB_EthernetPort"); });
        wrong += answer.outcome != How::Done || answer.body != "1";
        ++answers;
        const long milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(time).count();
        for (long most = longest;
             most < milliseconds && !longest.compare_exchange_weak(most, milliseconds);) {
        }
        std::this_thread::sleep_for(10ms);
      }
    });
  }
  for (std::thread& client : clients) client.join();
  EXPECT_EQ(modified.get().outcome, How::TimedOut);
  EXPECT_EQ(wrong, 0);
  EXPECT_GT(answers, 8 * 2);
  EXPECT_LT(longest, options.timeLimit.count() / 2) << "no client waits for the call that hangs";
  RecordProperty("longest_ms", static_cast<int>(longest));
}

TEST_F(RealProvider, ASubscriptionOutlivesAModificationThatNeverReturns) {
  start();
  listen();
  ASSERT_TRUE(pullUntilAlerted());
  auto modified = begin("modify-wrong-list", false);
  std::this_thread::sleep_for(200ms);
  EXPECT_EQ(read("count ZEB_EthernetPort").body, "1");
  EXPECT_TRUE(pullUntilAlerted());
  EXPECT_EQ(modified.get().outcome, How::TimedOut);
}

TEST_F(RealProvider, ASubscriptionOutlivesAKilledProvider) {
  start();
  listen();
  ASSERT_TRUE(pullUntilAlerted());
  for (int round = 0; round < 3; ++round) {
    const pid_t process = std::stoi(read("pid").body);
    ASSERT_GT(process, 0);
    kill(process, SIGKILL);
    EXPECT_EQ(read("count ZEB_EthernetPort").body, "1");
    EXPECT_TRUE(pullUntilAlerted()) << round;
  }
}

/// Whenever a process is killed, the next one goes on where it was: what it has reported comes no second
/// time, and what has changed meanwhile comes.
TEST_F(RealProvider, EveryTransitionIsReportedOnceWhateverIsKilled) {
  start();
  listen();
  ASSERT_TRUE(pullUntilAlerted());
  const std::vector<std::string> before = indications();
  std::vector<std::string> expected = before;
  bool in = false;
  for (int round = 0; round < 24; ++round) {
    // Killed before the cable is moved, right with it, when the alert may be on its way, or when it has come.
    const auto kill = [&](int when) {
      if (round % 4 == when) ::kill(provider(), SIGKILL);
    };
    kill(0);
    in = !in;
    play(in);
    kill(1);
    std::this_thread::sleep_for(std::chrono::milliseconds(round % 4 == 2 ? 20 * (round / 4) : 0));
    kill(2);
    expected.emplace_back(in ? kRestored : kLost);
    ASSERT_TRUE(eventually([&] { return indications().size() >= expected.size(); })) << "round " << round;
    kill(3);
    EXPECT_EQ(indications(), expected);
  }
  // Nothing is left that comes late.
  std::this_thread::sleep_for(1s);
  EXPECT_EQ(indications(), expected);
}

/// The cable is moved while no process is there to see it.
TEST_F(RealProvider, WhatChangesWhileThereIsNoProcessIsReported) {
  start();
  listen();
  ASSERT_TRUE(pullUntilAlerted());
  const std::size_t before = indications().size();
  const pid_t first = provider();
  ::kill(first, SIGSTOP);
  play(true);
  ::kill(first, SIGKILL);
  ASSERT_TRUE(eventually([&] { return indications().size() > before; }));
  EXPECT_EQ(indications().back(), kRestored);
}

}  // namespace
}  // namespace ZebManager
