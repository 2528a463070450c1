#include <gtest/gtest.h>
#include <sched.h>

#include <chrono>
#include <cstdlib>
#include <thread>

#include "AlertModel.h"
#include "History.h"
#include "KernelMachine.h"
#include "LongLived.h"
#include "ProviderFixture.h"
#include "support/Length.h"

// The same histories, played to the running kernel. Nobody calls for a pass: announcements do.

namespace ZEB::test {
namespace {

using namespace std::chrono_literals;

constexpr int kPace = kSanitized ? 5 : 1;

class LiveHunt : public ProviderTest {
 protected:
  LiveHunt() {
    unsetenv("ZEB_SOURCE_FILE");
    configure("ZEB_INCLUDE_VIRTUAL", "1");
    configure("ZEB_AUTOSTART", "1");
    configure("ZEB_LINK_SETTLE_SECONDS", "1");
  }
  ~LiveHunt() override {
    unsetenv("ZEB_INCLUDE_VIRTUAL");
    unsetenv("ZEB_LINK_SETTLE_SECONDS");
  }

  /// Counters go on while one looks.
  static Served still(Served served) {
    std::erase_if(served,
                  [](const auto& entry) { return entry.first.find("Statistics.") != std::string::npos; });
    return served;
  }

  /// What is still wrong when the kernel's changes had time to be heard, a link to be waited for, and a pass
  /// to look.
  std::string settledDifferences(LongLived& lived, const std::vector<Alert>& expected, bool withAlerts) {
    std::vector<Alert> sent;
    std::string wrong;
    const auto deadline = std::chrono::steady_clock::now() + 4s * kPace;
    do {
      std::this_thread::sleep_for(100ms);
      std::ranges::move(lived.sent(), std::back_inserter(sent));
      std::ranges::sort(sent);
      wrong = withAlerts ? differences(expected, sent) : "";
      if (wrong.empty()) wrong = differences(still(servedByANewOne()), still(lived.serves()));
    } while (!wrong.empty() && std::chrono::steady_clock::now() < deadline);
    return wrong;
  }

  static bool servesTeams(LongLived& lived) {
    return std::ranges::any_of(lived.serves(), [](const auto& entry) {
      return entry.first.find(":ZEB_EthernetTeam.") != std::string::npos;
    });
  }

  static Machine fourPorts() {
    Machine machine;
    for (int i = 0; i < 4; ++i) machine.add({.name = "eth" + std::to_string(i), .card = i});
    return machine;
  }

  /// What teams send depends on when their driver notices: there, alerts are left to other tests.
  void hunt(std::uint64_t seed, std::size_t steps) {
    const bool hasTeams = KernelMachine::has("bond");
    Machine machine = hasTeams ? firstMachine() : fourPorts();
    KernelMachine kernel;
    kernel.play({}, machine);
    FakeBroker own;
    LongLived lived(own);
    ASSERT_EQ(servesTeams(lived), hasTeams);
    AlertModel model(machine);
    std::string played;
    for (const Step& step : randomHistory(seed, steps)) {
      if (!hasTeams && (step.kind == Step::Kind::MakeTeam || step.kind == Step::Kind::MakeVlan)) continue;
      Machine next = machine;
      if (step.kind == Step::Kind::Request) lived.request(step.which);
      if (!apply(step, next)) continue;
      // A card is not switched on in the moment that it comes.
      for (auto& [number, interface] : next.interfaces) {
        if (interface.kind == Machine::Kind::Port && !machine.interfaces.contains(number))
          interface.up = false;
      }
      played += "  " + step.text() + "\n";
      kernel.play(machine, next);
      machine = std::move(next);
      const std::string wrong = settledDifferences(lived, model.pass(machine), !hasTeams);
      ASSERT_EQ(wrong, "") << "seed " << seed << ":\n" << played;
    }
  }
};

TEST_F(LiveHunt, ThroughRandomHistories) {
  const std::uint64_t histories = length(4u, 100u);
  bool made = true;
  for (std::uint64_t seed = 1; made && seed <= histories && !HasFailure(); ++seed) {
    std::thread([&] {
      made = unshare(CLONE_NEWNET) == 0;
      if (made) hunt(seed, 25);
    }).join();
  }
  if (!made) GTEST_SKIP() << "not allowed to make a network namespace";
}

}  // namespace
}  // namespace ZEB::test
