#include <gtest/gtest.h>

#include <ctime>

#include "ManyInterfaces.h"
#include "model/Model.h"

namespace ZEB::ethernet::test {
namespace {

/// Of the processor, so that others on the machine do not count.
double secondsOfThisThread() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

/// The best of several.
double secondsToBuild(const HostSnapshot& host) {
  double best = 1e9;
  for (int i = 0; i < 7; ++i) {
    HostSnapshot own = host;
    const double begun = secondsOfThisThread();
    const auto model = buildModel(std::move(own), false);
    best = std::min(best, secondsOfThisThread() - begun);
  }
  return best;
}

// What grows with the square takes a hundred times as long for ten times as many. Ten times and what the
// processor's caches do not hold any more are less than a third of that.
constexpr double kMost = 30;

TEST(ModelScale, TenTimesTheTeams) {
  EXPECT_EQ(buildModel(manyTeams(20), false)->teams.at(19).facts->members.size(), 2u);
  const double few = secondsToBuild(manyTeams(400));
  const double many = secondsToBuild(manyTeams(4000));
  EXPECT_LT(many, kMost * few);
}

TEST(ModelScale, TenTimesAChainOfVlans) {
  EXPECT_EQ(buildModel(chainOfVlans(20), false)->adapters.at(0).ports.at(0).vlans.size(), 20u);
  const double few = secondsToBuild(chainOfVlans(400));
  const double many = secondsToBuild(chainOfVlans(4000));
  EXPECT_LT(many, kMost * few);
}

}  // namespace
}  // namespace ZEB::ethernet::test
