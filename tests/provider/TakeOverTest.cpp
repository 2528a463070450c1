#include <fstream>
#include <functional>

#include "WorkerFixture.h"

// A process goes on where the one before it was.

namespace ZEB::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class TakeOver : public WorkerTest {
 protected:
  TakeOver() {
    std::ofstream(folder / "handover").flush();
    setenv("ZEB_HANDOVER", (folder / "handover").c_str(), 1);
    takeOver();
  }
  ~TakeOver() override { unsetenv("ZEB_HANDOVER"); }

  /// The process ends, things happen, and the next begins: with a pass before anybody listens.
  void takeOver(const std::function<void()>& meanwhile = [] {}) {
    stop();
    meanwhile();
    start();
    EXPECT_TRUE(succeeded(pollingPass()));
    enableIndications();
  }
  void setCarrier(const char* link, bool carrier) {
    host.link(link).carrier = carrier;
    host.play();
  }
  std::vector<std::string> newEvents() {
    EXPECT_TRUE(succeeded(pass()));
    auto all = events();
    std::vector<std::string> fresh(all.begin() + static_cast<std::ptrdiff_t>(_told), all.end());
    _told = all.size();
    return fresh;
  }

 private:
  std::size_t _told = 0;
};

TEST_F(TakeOver, WhatWasReportedIsNotReportedAgain) {
  setCarrier("eth1", false);
  EXPECT_TRUE(succeeded(pollingPass()));
  EXPECT_THAT(newEvents(), ElementsAre("2"));
  takeOver();
  EXPECT_THAT(newEvents(), IsEmpty());
}

TEST_F(TakeOver, WhatHappensMeanwhileIsReported) {
  EXPECT_TRUE(succeeded(pollingPass()));
  takeOver([this] { setCarrier("eth1", false); });
  EXPECT_THAT(newEvents(), ElementsAre("2"));
  takeOver([this] { setCarrier("eth1", true); });
  EXPECT_THAT(newEvents(), ElementsAre("3"));
  takeOver();
  EXPECT_THAT(newEvents(), IsEmpty());
}

/// As if there had been one process all the while.
TEST_F(TakeOver, TeamsGoOnToo) {
  for (const char* const setting :
       {"MemberStatusChanged", "MonitorRedundancySets", "ActiveAdapterCountChanged"})
    set(setting, true);
  EXPECT_TRUE(succeeded(pollingPass()));
  for (const bool carrier : {false, true}) {
    setCarrier("eth3", carrier);
    EXPECT_TRUE(succeeded(pollingPass()));
  }
  const auto expected = newEvents();
  EXPECT_GE(expected.size(), 2U);
  std::vector<std::string> told;
  for (const bool carrier : {false, true}) {
    takeOver([&] { setCarrier("eth3", carrier); });
    const auto fresh = newEvents();
    told.insert(told.end(), fresh.begin(), fresh.end());
  }
  EXPECT_EQ(told, expected);
}

TEST_F(TakeOver, AnotherCardUnderTheSameNameIsNotTakenForTheOneBefore) {
  EXPECT_TRUE(succeeded(pollingPass()));
  takeOver([this] {
    host.link("eth1").index = 30;
    setCarrier("eth1", false);
  });
  EXPECT_THAT(newEvents(), IsEmpty());
}

TEST_F(TakeOver, ForeignContentIsIgnored) {
  EXPECT_TRUE(succeeded(pollingPass()));
  takeOver([this] {
    std::ofstream(folder / "handover", std::ios::app) << "=ZEB_EthernetPort:eth1#3 nonsense\n+\n=torn";
    setCarrier("eth1", false);
  });
  EXPECT_THAT(newEvents(), IsEmpty());
}

}  // namespace
}  // namespace ZEB::test
