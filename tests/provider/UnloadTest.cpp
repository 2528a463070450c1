#include <atomic>
#include <chrono>
#include <sstream>
#include <thread>

#include "UnloadFixture.h"
#include "support/Content.h"
#include "support/Length.h"
#include "support/NetworkNamespace.h"

namespace ZEB::test {
namespace {

TEST_F(UnloadTest, LeavesTheProcessAfterEveryInterfaceWasCleanedUp) {
  load();
  use();
  cleanupOnce();
  cleanupOnce();
  unload();
}

TEST_F(UnloadTest, LeavesTheProcessWithAProviderThatIsStillAlive) {
  load();
  use();
  // Clean-up comes once an interface, whatever the number of factory calls.
  cleanupOnce();
  unload();
}

TEST_F(UnloadTest, LeavesTheProcessWithItsTimerRunning) {
  configure("ZEB_AUTOSTART", "1");
  load();
  use();
  EXPECT_EQ(broker.counts().prepared, 1);
  unload();
  EXPECT_EQ(broker.counts().attached, broker.counts().detached);
  EXPECT_TRUE(broker.violations().empty());
}

TEST_F(UnloadTest, LoadsAndUnloadsAThousandTimesWhileLinkMessagesArrive) {
  bool entered = true;
  std::thread([&] {
    entered = enterNewNetworkNamespace();
    if (!entered) return;
    std::atomic<bool> stop{false};
    // More than come while the machine has nothing else to do. Where it has, a storm without an end would
    // take all that is left to the rounds.
    constexpr int kStorm = 25;
    std::atomic<int> storm{0};
    std::thread changes([&] {
      for (bool up = true; !stop; std::this_thread::sleep_for(std::chrono::microseconds(500))) {
        if (storm == 0) continue;
        --storm;
        setLoopback(up = !up);
      }
    });
    for (const std::uint64_t round : sharedRounds(1000)) {
      if (HasFailure()) break;
      storm = kStorm;
      load();
      use();
      storm = kStorm;
      if (round % 4 < 2) cleanupOnce();
      unload();
    }
    stop = true;
    changes.join();
  }).join();
  if (!entered) GTEST_SKIP() << "making a network namespace is not allowed here";
}

TEST(ExportsTest, ExactlyFourSymbolsAreShown) {
  std::istringstream lines(contentOf(ZEB_PLUGIN_SYMBOLS));
  std::vector<std::string> names;
  for (std::string address, type, name; lines >> address >> type >> name;) names.push_back(name);
  EXPECT_EQ(names, (std::vector<std::string>{"_Generic_Create_AssociationMI", "_Generic_Create_IndicationMI",
                                             "_Generic_Create_InstanceMI", "_Generic_Create_MethodMI"}));
}

}  // namespace
}  // namespace ZEB::test
