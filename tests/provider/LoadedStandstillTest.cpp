#include <gmock/gmock.h>
#include <unistd.h>

#include <deque>
#include <future>

#include "LoadedFixture.h"
#include "cmpicpp/CmpiData.h"

// A change that never returns, in the plug-in as it is loaded.

namespace ZEB::test {
namespace {

using namespace std::chrono_literals;
using CmpiCpp::CmpiData;
using CmpiCpp::CmpiInstance;
using CmpiCpp::CmpiObjectPath;
using Clock = std::chrono::steady_clock;

const CmpiObjectPath kSettings{"root/jxv", "ZEB_EthEventSettings", "", {{"InstanceId", "JXV:0"}}};

class LoadedStandstillTest : public LoadedTest {
 protected:
  LoadedStandstillTest() : LoadedTest(1) {
    alarm(120);  // a plug-in that holds its lock would wait for ever
  }
  ~LoadedStandstillTest() override {
    // Before what the calls use.
    if (isMapped()) unload();
    alarm(0);
  }

  CMPIrc set(const char* name, std::uint32_t value, std::vector<const char*> list) {
    CmpiInstance settings(kSettings);
    settings.addProperty(name, value);
    list.push_back(nullptr);
    FakeBroker::Call call(broker);
    return instances->ft
        ->modifyInstance(instances, &call.context(), &call.result(), call.path(kSettings),
                         call.instance(settings), list.data())
        .rc;
  }
  std::uint64_t setting(const char* name) {
    FakeBroker::Call call(broker);
    const CMPIStatus status =
        instances->ft->getInstance(instances, &call.context(), &call.result(), call.path(kSettings), nullptr);
    EXPECT_EQ(status.rc, CMPI_RC_OK);
    return call.result().instances.at(0).getProperty(name).asUnsigned();
  }

  /// Changes that never return, each on a thread of its own.
  void changeForEver(std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
      begun.push_back(std::async(std::launch::async, [this] {
        return set("PollInterval", 77, {"PollInterval", "ElementName"});
      }));
    }
  }
  std::size_t returned() {
    return static_cast<std::size_t>(std::ranges::count_if(
        begun, [](auto& each) { return each.wait_for(0s) == std::future_status::ready; }));
  }
  void expectStanding(std::size_t count) {
    std::this_thread::sleep_for(300ms);
    EXPECT_EQ(begun.size() - returned(), count);
  }

  /// Changes among them, which take the same lock and the disk's time.
  void answerRequests(std::uint32_t count) {
    std::uint32_t threshold = 10;
    for (std::uint32_t i = 0; i < count; ++i) {
      if (i % 20 == 0) {
        threshold = i;
        ASSERT_EQ(set("FloodThreshold", threshold, {"FloodThreshold"}), CMPI_RC_OK);
      } else {
        ASSERT_EQ(setting("FloodThreshold"), threshold);
      }
    }
    EXPECT_EQ(setting("PollInterval"), 200U);
  }
  void pullCable() {
    host.link("eth0").carrier = false;
    host.play();
    ASSERT_TRUE(broker.waitForDeliveries(1, 10s));
    EXPECT_EQ(broker.deliveries()[0].indication.getProperty("EventID"), CmpiData("2"));
  }
  void cleanUp(bool terminating) {
    FakeBroker::Call call(broker);
    instances->ft->cleanup(instances, &call.context(), terminating);
    methods->ft->cleanup(methods, &call.context(), terminating);
    indications->ft->cleanup(indications, &call.context(), terminating);
  }
  void expectGoneInTime(Clock::time_point since) {
    unload();
    EXPECT_LT(Clock::now() - since, 5s);
    for (auto& each : begun) {
      ASSERT_EQ(each.wait_for(1s), std::future_status::ready);
      EXPECT_EQ(each.get(), CMPI_RC_ERR_FAILED);
    }
  }

  std::deque<std::future<CMPIrc>> begun;
};

TEST_F(LoadedStandstillTest, EverythingElseGoesOnUntilTheObjectManagerStops) {
  changeForEver(1);
  expectStanding(1);
  answerRequests(1000);
  pullCable();
  expectStanding(1);
  const auto before = Clock::now();
  cleanUp(true);
  expectGoneInTime(before);
}

TEST_F(LoadedStandstillTest, EverythingElseGoesOnUntilThePlugInIsUnloaded) {
  changeForEver(1);
  expectStanding(1);
  answerRequests(1000);
  pullCable();
  const auto before = Clock::now();
  {
    FakeBroker::Call call(broker);
    call.disableIndications(indications);
  }
  cleanUp(false);
  expectStanding(1);
  expectGoneInTime(before);
}

TEST_F(LoadedStandstillTest, ALibraryThatGoesWithoutAWordTakesItsCallsAlong) {
  changeForEver(3);
  expectStanding(3);
  expectGoneInTime(Clock::now());
}

TEST_F(LoadedStandstillTest, BeyondSixteenAtATimeEachIsToldAtOnce) {
  changeForEver(17);
  const auto deadline = Clock::now() + 10s;
  while (returned() == 0 && Clock::now() < deadline) std::this_thread::sleep_for(1ms);
  expectStanding(16);
  if (HasFailure()) return;
  for (int i = 0; i < 3; ++i) {
    const auto before = Clock::now();
    EXPECT_EQ(set("PollInterval", 77, {"PollInterval", "ElementName"}), CMPI_RC_ERR_FAILED);
    EXPECT_LT(Clock::now() - before, 1s);
  }
  answerRequests(40);
  expectGoneInTime(Clock::now());
}

TEST_F(LoadedStandstillTest, TheLogNamesTheList) {
  configure("ZEB_LOG_TARGET", "stderr");
  unload();
  begin();
  testing::internal::CaptureStderr();
  changeForEver(1);
  expectStanding(1);
  expectGoneInTime(Clock::now());
  EXPECT_THAT(testing::internal::GetCapturedStderr(),
              testing::HasSubstr("the property list (PollInterval, ElementName) has ElementName, which is no "
                                 "setting, after one that is: the change never ends"));
  unsetenv("ZEB_LOG_TARGET");
}

}  // namespace
}  // namespace ZEB::test
