#include <atomic>

#include "LoadedFixture.h"
#include "support/Length.h"
#include "support/ProcessCounts.h"

// What alerts leave behind, in the plug-in as it is loaded.

namespace ZEB::test {
namespace {

using namespace std::chrono_literals;

class LoadedAlertsTest : public LoadedTest {
 protected:
  static constexpr std::uint32_t kPorts = 50;

  LoadedAlertsTest() : LoadedTest(kPorts) {}

  void play(bool carrier) {
    for (std::uint32_t i = 0; i < kPorts; ++i) host.link("eth" + std::to_string(i)).carrier = carrier;
    host.play();
  }
  /// An alert of each port.
  void pullOrPutAllCables(bool carrier) {
    play(carrier);
    ASSERT_TRUE(broker.waitForDeliveries(kPorts, 20s));
    ASSERT_EQ(broker.takeDeliveries().size(), kPorts);
  }
  /// Of a pass, once that has ended.
  void expectNothingLeft() const {
    if (HasFailure()) return;
    for (int i = 0; i < 2000 && broker.liveObjects() != 0; ++i) std::this_thread::sleep_for(1ms);
    EXPECT_EQ(broker.liveObjects(), 0U);
  }
};

TEST_F(LoadedAlertsTest, TwoThousandAlertsLeaveNothingBehind) {
  constexpr int kRounds = 40;
  constexpr int kWarm = 10;
  std::size_t warm = 0;
  for (int round = 0; round < kRounds && !HasFatalFailure(); ++round) {
    pullOrPutAllCables(round % 2 != 0);
    expectNothingLeft();
    if (round + 1 == kWarm) warm = residentBytes();
  }
  if (!kSanitized) {  // which keep what was freed
    EXPECT_LT(residentBytes(), warm + 1'000'000);
  }
}

std::atomic<int> slowDeliveries{0};

// Whoever unloads the library holds the loader's lock, and waits for the pass meanwhile.
TEST_F(LoadedAlertsTest, TheLibraryGoesInTheMiddleOfAPass) {
  slowDeliveries = 0;
  broker.bft.deliverIndication = [](const CMPIBroker*, const CMPIContext*, const char*, const CMPIInstance*) {
    ++slowDeliveries;
    std::this_thread::sleep_for(4ms);
    return CMPIStatus{CMPI_RC_OK, nullptr};
  };
  broker.takeDeliveries();
  play(false);
  for (int i = 0; i < 10'000 && slowDeliveries == 0; ++i) std::this_thread::sleep_for(1ms);
  const auto before = std::chrono::steady_clock::now();
  unload();
  EXPECT_LT(std::chrono::steady_clock::now() - before, 3s);
  EXPECT_EQ(slowDeliveries, static_cast<int>(kPorts)) << "the pass came to its end";
  EXPECT_EQ(broker.counts().attached, broker.counts().detached);
}

}  // namespace
}  // namespace ZEB::test
