// What a plug-in says to be one state through random histories is one: nothing differs but counters.
#include <gtest/gtest.h>

#include <cstdlib>

#include "History.h"
#include "LongLived.h"
#include "ProviderFixture.h"
#include "support/Length.h"

namespace ZEB::test {
namespace {

class State : public ProviderTest {
 protected:
  State() {
    configure("ZEB_LINK_SETTLE_SECONDS", "0");
    configure("ZEB_SOURCE_FILE", file.string());
  }
  ~State() override { unsetenv("ZEB_LINK_SETTLE_SECONDS"); }

  /// How often a state was still the one before though the recording was read again.
  int play(const History& history) {
    Machine machine = firstMachine();
    machine.play(file);
    FakeBroker own;
    LongLived lived(own);
    ServedMoment before;
    int same = 0;
    for (const Step& next : history) {
      const bool played = apply(next, machine);
      if (played) machine.play(file);
      if (next.kind == Step::Kind::Request) lived.request(next.which);
      if (next.kind == Step::Kind::Pass) lived.pass();
      ServedMoment now = lived.servesInState();
      if (now.state && now.state == before.state) {
        same += played;
        EXPECT_EQ(now.served, before.served) << next.text();
      }
      before = std::move(now);
    }
    return same;
  }

  const std::filesystem::path file = folder / "machine.json";
};

TEST_F(State, IsAnotherWhenAnythingIs) {
  int same = 0;
  for (const std::uint64_t round : sharedRounds(length(20u, 1000u))) {
    if (!HasFailure()) same += play(randomHistory(round + 1, 60));
  }
  EXPECT_GT(same, 0);
}

TEST_F(State, StaysWhileNothingHappens) {
  firstMachine().play(file);
  FakeBroker own;
  LongLived lived(own);
  lived.servesInState();  // what a port says first is not compared with anything
  const auto state = lived.servesInState().state;
  ASSERT_TRUE(state);
  EXPECT_EQ(lived.servesInState().state, state);
}

}  // namespace
}  // namespace ZEB::test
