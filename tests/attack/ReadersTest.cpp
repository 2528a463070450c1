// Readers of everything, on a machine with many ports.
#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <map>
#include <thread>

#include "Attack.h"
#include "Ground.h"
#include "Subscriber.h"
#include "Unit.h"
#include "support/Length.h"

namespace ZebManager {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::seconds;

constexpr int kPairs = 500;

void command(const std::string& text) {
  ASSERT_EQ(std::system(text.c_str()), 0) << text;
}

/// Pairs of virtual interfaces, which are ports, while it lives.
class ManyPorts {
 public:
  ManyPorts() {
    command("for i in $(seq " + std::to_string(kPairs) +
            "); do echo link add a$i type veth peer name b$i; echo link set a$i up; echo link set b$i up; "
            "done | ip -batch -");
  }
  ManyPorts(const ManyPorts&) = delete;
  ManyPorts& operator=(const ManyPorts&) = delete;
  ~ManyPorts() {
    command("for i in $(seq " + std::to_string(kPairs) + "); do echo link delete a$i; done | ip -batch -");
  }
};

class Readers : public testing::Test {
 protected:
  void SetUp() override {
    REQUIRE_GROUND();
    ports.emplace();
    unit.emplace(UnitOptions{.plugin = {"--include-virtual"}, .settings = "[limits]\nrequest-seconds = 3\n"});
    ASSERT_EQ(statusOf(ask(unit->http(), instancesOf("ZEB_EthernetPort"))), 200);
  }

  std::optional<ManyPorts> ports;
  std::optional<Unit> unit;
};

TEST_F(Readers, StayWithinTheMemoryWhenAllAskForEverythingAtOnce) {
  std::atomic<int> answered = 0;
  std::atomic<bool> done = false;
  std::size_t memory = 0;
  std::thread readers([&] {
    together(16, [&](int) {
      answered += statusOf(ask(unit->http(), instancesOf("CIM_ManagedElement"), 120)) == 200;
    });
    done = true;
  });
  while (!done) {
    memory = std::max(memory, unit->memory());
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  readers.join();
  std::cout << "16 at once: " << (memory >> 20) << " MiB\n";
  EXPECT_EQ(answered, 16);
  EXPECT_LT(memory, 512U << 20);
}

/// An answer that does not fit into what the kernel keeps for the two ends.
TEST_F(Readers, AreNotWaitedForWhenTheyDoNotTakeTheirAnswer) {
  const std::string request = instancesOf("CIM_ManagedElement");
  const std::size_t whole = ask(unit->http(), request).size();
  ASSERT_GT(whole, 4U << 20);
  const OpenConnection idle(unit->http(), request);
  std::this_thread::sleep_for(seconds(8));
  EXPECT_LT(idle.receiveAll().size(), whole);
  EXPECT_EQ(statusOf(ask(unit->http(), request)), 200);
}

/// A cable that is pulled and put back every second beside them: nothing is replaced, nothing is lost, and
/// nothing comes twice.
TEST_F(Readers, CostNoAlert) {
  TestListener listener;
  subscribe(*unit, listener.url());
  const auto before = unit->processes("zebcim-plugin");
  ASSERT_EQ(before.size(), 1U);
  const auto end = Clock::now() + seconds(ZEB::test::length(15, 60));
  std::atomic<int> answered = 0, other = 0;
  std::thread readers([&] {
    together(16, [&](int) {
      while (Clock::now() < end) {
        const bool good = statusOf(ask(unit->http(), instancesOf("CIM_ManagedElement"), 120)) == 200;
        ++(good ? answered : other);
      }
    });
  });
  // What the ports that were pulled have told of.
  const auto told = [&] {
    std::map<std::string, std::vector<std::string>> events;
    for (const auto& [element, event] : eventsAt(listener)) events[element].push_back(event);
    std::erase_if(events, [](const auto& element) { return element.second.front() != "2"; });
    return events;
  };
  // Nobody is told of what has passed before it was seen, as it may on a machine that has more to do.
  std::size_t changes = 0;
  const auto change = [&](const std::string& port) {
    command("ip link set " + port);
    ++changes;
    const auto patience = Clock::now() + seconds(30);
    std::size_t seen = 0;
    do {
      std::this_thread::sleep_for(seconds(1));
      seen = 0;
      for (const auto& [element, events] : told()) seen += events.size();
    } while (seen < changes && Clock::now() < patience);
  };
  int pulls = 0;
  for (; Clock::now() < end; ++pulls) {
    change("b7 down");
    change("b7 up");
  }
  readers.join();
  // The alert of a port that nobody pulled before is the last.
  change("b8 down");
  std::cout << answered << " answers to readers, " << pulls << " pulls\n";
  EXPECT_EQ(other, 0);
  EXPECT_EQ(unit->processes("zebcim-plugin"), before) << unit->log();
  std::vector<std::string> expected;
  for (int i = 0; i < pulls; ++i) expected.insert(expected.end(), {"2", "3"});
  std::vector<std::vector<std::string>> events;
  for (const auto& [element, each] : told()) events.push_back(each);
  EXPECT_THAT(events, testing::UnorderedElementsAre(expected, std::vector<std::string>{"2"}));
}

}  // namespace
}  // namespace ZebManager
