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

}  // namespace
}  // namespace ZebManager
