// Filters in every process, and indications counted once.
#include <signal.h>

#include "Supervised.h"
#include "support/Content.h"

namespace ZebManager {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using ZEB::test::contentOf;

class Filters : public Supervised {
 protected:
  bool traced(const std::string& trace) {
    return eventually([&] { return contentOf(file("trace")) == trace; });
  }
};

const IndicationFilter kAlerts = {"alerts", "SELECT * FROM T_Alert", "WQL"};
const IndicationFilter kAgain = {"again", "SELECT * FROM T_Alert", "DMTF:CQL"};
const IndicationFilter kThings = {"things", "SELECT * FROM T_Thing", "WQL"};

constexpr char kActivated[] =
    "authorize T_Alert SELECT * FROM T_Alert\nactivate T_Alert SELECT * FROM T_Alert\nenable\n";

TEST_F(Filters, AnIndicationCarriesTheNamesOfWhatItSatisfies) {
  start();
  supervisor->setFilters({kAlerts, kThings, kAgain});
  EXPECT_EQ(write("alert cable").body, "cable");
  ASSERT_TRUE(eventually([&] { return !indications().empty(); }));
  EXPECT_THAT(indications(), ElementsAre("alerts again cable"));
}

TEST_F(Filters, AConditionSelects) {
  start();
  supervisor->setFilters({{"cable", "SELECT * FROM T_Alert WHERE Text = 'cable'", "WQL"},
                          {"other", "SELECT * FROM T_Alert WHERE Text <> 'cable'", "WQL"},
                          {"broken", "SELECT FROM WHERE", "WQL"}});
  write("alert cable");
  write("alert fan");
  ASSERT_TRUE(eventually([&] { return indications().size() == 2; }));
  EXPECT_THAT(indications(), ElementsAre("cable cable", "other fan"));
}

TEST_F(Filters, WithoutThemNothingIsDelivered) {
  start();
  EXPECT_EQ(write("alert unheard").body, "unheard");
  supervisor->setFilters({kAlerts});
  EXPECT_EQ(write("alert heard").body, "heard");
  ASSERT_TRUE(eventually([&] { return !indications().empty(); }));
  supervisor->setFilters({});
  EXPECT_EQ(write("alert late").body, "late");
  supervisor.reset();
  EXPECT_THAT(indications(), ElementsAre("alerts heard"));
}

TEST_F(Filters, AQueryIsActivatedOnceAndTakenBackWithItsLastName) {
  start();
  supervisor->setFilters({kAlerts, kAgain});
  EXPECT_TRUE(traced(kActivated));
  supervisor->setFilters({kAgain});
  supervisor->setFilters({});
  EXPECT_TRUE(traced(std::string(kActivated) + "disable\ndeactivate T_Alert SELECT * FROM T_Alert\n"));
}

TEST_F(Filters, OneThatGoesDisablesNoOther) {
  start();
  supervisor->setFilters({kAlerts});
  ASSERT_TRUE(traced(kActivated));
  const IndicationFilter other = {"other", "SELECT Text FROM T_Alert", "WQL"};
  supervisor->setFilters({other});
  EXPECT_TRUE(traced(std::string(kActivated) +
                     "authorize T_Alert SELECT Text FROM T_Alert\nactivate T_Alert SELECT Text FROM "
                     "T_Alert\nenable\ndeactivate T_Alert SELECT * FROM T_Alert\n"));
}

TEST_F(Filters, AFreshProcessHasThemWithoutBeingAsked) {
  start();
  supervisor->setFilters({kAlerts});
  EXPECT_EQ(write("alert one").body, "one");
  ASSERT_TRUE(eventually([&] { return indications().size() == 1; }));
  ASSERT_TRUE(traced(kActivated));
  kill(provider(), SIGKILL);
  EXPECT_TRUE(traced(std::string(kActivated) + kActivated));
  EXPECT_EQ(write("alert two").body, "two");
  ASSERT_TRUE(eventually([&] { return indications().size() == 2; }));
  EXPECT_THAT(indications(), ElementsAre("alerts one", "alerts two"));
}

TEST_F(Filters, AfterATakeOverTheFreshProcessAloneCounts) {
  start();
  supervisor->setFilters({kAlerts});
  provider();
  auto old = begin("hold-and-alert 1800 old", false);
  std::this_thread::sleep_for(50ms);
  EXPECT_EQ(read("locked 0").outcome, How::Done);
  EXPECT_EQ(write("alert fresh").body, "fresh");
  EXPECT_EQ(old.get().body, "old");
  EXPECT_EQ(write("alert last").body, "last");
  ASSERT_TRUE(eventually([&] { return indications().size() >= 2; }));
  supervisor.reset();
  EXPECT_THAT(indications(), ElementsAre("alerts fresh", "alerts last"));
}

TEST_F(Filters, ManyIndicationsArriveInOrderThroughASlowSink) {
  supervisor = std::make_unique<ProviderSupervisor>(options, [](const auto&, const std::string&) {});
  std::mutex mutex;
  std::vector<std::string> got;
  supervisor = std::make_unique<ProviderSupervisor>(options, [&](const auto&, const std::string& element) {
    std::this_thread::sleep_for(100us);
    const std::lock_guard lock(mutex);
    got.push_back(element);
  });
  supervisor->setFilters({kAlerts});
  std::vector<std::string> sent;
  for (int i = 0; i < 1500; ++i) {
    sent.push_back(std::to_string(i));
    ASSERT_EQ(write("alert " + sent.back()).outcome, How::Done);
  }
  EXPECT_TRUE(eventually([&] {
    const std::lock_guard lock(mutex);
    return got.size() == sent.size();
  }));
  supervisor.reset();
  EXPECT_THAT(got, ElementsAreArray(sent));
}

TEST_F(Filters, WhatAProcessHoldsWhenItIsReplacedStillCounts) {
  options.timeLimit = 4s * kPace;
  std::mutex mutex;
  std::vector<std::string> got;
  supervisor = std::make_unique<ProviderSupervisor>(options, [&](const auto&, const std::string& element) {
    std::this_thread::sleep_for(2ms * kPace);
    const std::lock_guard lock(mutex);
    got.push_back(element);
  });
  supervisor->setFilters({kAlerts});
  const pid_t before = provider();
  ASSERT_EQ(write("alerts 800").outcome, How::Done);
  auto held = begin("hold", false);
  std::this_thread::sleep_for(50ms);
  EXPECT_NE(read("locked 0").body, std::to_string(before));
  {
    const std::lock_guard lock(mutex);
    EXPECT_LT(got.size(), 500U) << "too slow for what this shows";
  }
  std::vector<std::string> sent;
  for (int i = 0; i < 800; ++i) sent.push_back(std::to_string(i));
  eventually([&] {
    const std::lock_guard lock(mutex);
    return got.size() >= sent.size();
  });
  EXPECT_EQ(held.get().outcome, How::TimedOut);
  supervisor.reset();
  EXPECT_THAT(got, ElementsAreArray(sent));
}

TEST_F(Filters, WhatWaitsAtTheEndStillArrives) {
  std::atomic<int> got = 0;
  supervisor = std::make_unique<ProviderSupervisor>(options, [&](const auto&, const std::string&) {
    std::this_thread::sleep_for(1ms);
    ++got;
  });
  supervisor->setFilters({kAlerts});
  ASSERT_EQ(write("alerts 600").outcome, How::Done);
  supervisor.reset();
  EXPECT_EQ(got, 600);
}

TEST_F(Filters, ASinkThatThrowsLosesThatIndicationAndSaysSo) {
  int calls = 0;
  supervisor = std::make_unique<ProviderSupervisor>(options, [&](const auto&, const std::string&) {
    if (++calls == 1) throw std::runtime_error("the disk is full");
  });
  supervisor->setFilters({kAlerts});
  write("alert one");
  write("alert two");
  EXPECT_TRUE(eventually([&] { return logged("the disk is full"); }));
  write("alert three");
  std::this_thread::sleep_for(100ms);
  supervisor.reset();
  EXPECT_EQ(calls, 3);
}

}  // namespace
}  // namespace ZebManager
