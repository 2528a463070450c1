#include <gmock/gmock.h>

#include <condition_variable>
#include <mutex>

#include "TestProvider.h"
#include "cmpicpp/CmpiFactories.h"
#include "common/AutostartDecorator.h"
#include "common/ZEBUtil.h"
#include "support/Environment.h"
#include "support/FakeBroker.h"
#include "support/RecordingLogSink.h"

namespace ZEB {
namespace {

using namespace std::chrono_literals;
using test::Environment;
using test::FakeBroker;
using test::TestProvider;

/// An autostart instance with an interval and a stagger, in seconds.
class Autostart : public CmpiManagedInstance {
 public:
  Autostart(std::uint16_t interval, std::uint16_t stagger) : _interval(interval), _stagger(stagger) {}
  CmpiCpp::CmpiObjectPath makeObjectPath() override { return {"root/jxv", "ZEB_AutoStartEthernetPort"}; }
  CmpiCpp::CmpiInstance makeInstance() override {
    CmpiCpp::CmpiInstance instance(makeObjectPath());
    instance.addProperty("WorkerPollInterval", _interval);
    instance.addProperty("WorkerPollIntervalStagger", _stagger);
    return instance;
  }
  CmpiCpp::CmpiName className() const override { return "ZEB_AutoStartEthernetPort"; }

 private:
  std::uint16_t _interval, _stagger;
};

class AutostartTest : public testing::Test {
 protected:
  explicit AutostartTest(const test::Habits& habits = test::kEmbeddedHabits) : broker(habits) {
    seen->during = [this](const std::string& call) {
      const std::lock_guard lock(mutex);
      passes += call == "invokeMethod PerformWork" ? 1 : 0;
      changed.notify_all();
      if (work) work();
    };
  }
  ~AutostartTest() override { ZEBUtil::setStop(recorded.logger, 0, 3); }

  std::unique_ptr<AutostartDecorator> make(std::uint16_t interval, std::uint16_t stagger) {
    FakeBroker::Call factory(broker);
    return std::make_unique<AutostartDecorator>(broker.handle(&factory.context()), recorded.logger,
                                                std::make_unique<Autostart>(interval, stagger),
                                                TestProvider::creator(seen));
  }
  bool waitForPasses(int count, std::chrono::milliseconds patience = 5s) {
    std::unique_lock lock(mutex);
    return changed.wait_for(lock, patience, [&] { return passes >= count; });
  }

  FakeBroker broker;
  std::shared_ptr<TestProvider::Seen> seen = std::make_shared<TestProvider::Seen>();
  test::RecordedLogger recorded;
  Environment autostart{"ZEB_AUTOSTART", "1"};
  std::mutex mutex;
  std::condition_variable changed;
  int passes = 0;
  std::function<void()> work;
};

TEST_F(AutostartTest, callsTheWorkerMethodAtTheInterval) {
  const auto decorator = make(1, 0);
  ASSERT_TRUE(waitForPasses(1));
  EXPECT_FALSE(waitForPasses(2, 500ms));
  EXPECT_TRUE(waitForPasses(2));
}

TEST_F(AutostartTest, isWokenEarly) {
  const auto decorator = make(3600, 0);
  ASSERT_TRUE(waitForPasses(1));
  ZEBUtil::wakeWorker();
  EXPECT_TRUE(waitForPasses(2, 2s));
}

TEST_F(AutostartTest, callsAtATimeThatIsAskedFor) {
  const auto decorator = make(3600, 0);
  ASSERT_TRUE(waitForPasses(1));
  ZEBUtil::wakeWorkerAt(WorkerTimer::Clock::now() + 200ms);
  EXPECT_FALSE(waitForPasses(2, 100ms));
  EXPECT_TRUE(waitForPasses(2));
}

TEST_F(AutostartTest, isAttachedWithAContextOfTheFactoryAndMarksEachPass) {
  {
    const auto decorator = make(3600, 0);
    ASSERT_TRUE(waitForPasses(1));
  }
  const auto counts = broker.counts();
  EXPECT_EQ(counts.prepared, 1);
  EXPECT_EQ(counts.attached, 1);
  EXPECT_EQ(counts.detached, 1);
  EXPECT_EQ(counts.marks, 1);
  EXPECT_EQ(counts.releases, 1);
  EXPECT_TRUE(broker.violations().empty());
}

/// An object manager that frees what a thread made when the thread detaches, and never before.
class AgentAutostartTest : public AutostartTest {
 protected:
  AgentAutostartTest() : AutostartTest(test::kAgentHabits) {}
};

TEST_F(AgentAutostartTest, isAttachedForEachPassAndLeavesNothingBehind) {
  work = [this] { broker.make<test::FakeString>("as an alert would"); };
  {
    const auto decorator = make(3600, 0);
    for (int pass = 1; pass <= 5; ++pass) {
      ASSERT_TRUE(waitForPasses(pass));
      ZEBUtil::wakeWorker();
    }
    ASSERT_TRUE(waitForPasses(6));
    // Nobody can say when a pass has ended but the next one.
    EXPECT_LE(broker.liveObjects(), 1U);
  }
  EXPECT_EQ(broker.liveObjects(), 0U);
  const auto counts = broker.counts();
  EXPECT_GE(counts.attached, 6);
  EXPECT_EQ(counts.attached, counts.prepared);
  EXPECT_EQ(counts.attached, counts.detached);
  EXPECT_TRUE(broker.violations().empty());
}

TEST_F(AutostartTest, aPassThatFailsIsLoggedAndTheNextOneComes) {
  work = [] { throw std::logic_error("the pass broke"); };
  const auto decorator = make(1, 0);
  ASSERT_TRUE(waitForPasses(2));
  EXPECT_TRUE(recorded.sink->has(LogLevel::Error, "background work failed: the pass broke"));
}

TEST_F(AutostartTest, doesNothingWhileAStopIsRequested) {
  ZEBUtil::setStop(recorded.logger, 1, 3);
  const auto decorator = make(3600, 0);
  ZEBUtil::wakeWorker();
  EXPECT_FALSE(waitForPasses(1, 400ms));
}

TEST_F(AutostartTest, canBeSwitchedOff) {
  const Environment off("ZEB_AUTOSTART", "0");
  const auto decorator = make(1, 0);
  ZEBUtil::wakeWorker();
  EXPECT_FALSE(waitForPasses(1, 300ms));
  EXPECT_EQ(broker.counts().prepared, 0);
}

TEST_F(AutostartTest, anObjectManagerWithoutThreadsIsSaidAndServed) {
  broker.bft.prepareAttachThread = nullptr;
  const auto decorator = make(1, 0);
  EXPECT_TRUE(recorded.sink->mentions(LogLevel::Warn, "attaches no threads"));
  CmpiCpp::CmpiInstanceResult result;
  decorator->enumInstances(result, CmpiCpp::CmpiContext(), {"n", "C"}, nullptr);
  EXPECT_THAT(seen->calls, testing::ElementsAre("enumInstances"));
}

TEST_F(AutostartTest, aRefusedAttachmentIsSaidAndNothingIsCalled) {
  broker.bft.attachThread = [](const CMPIBroker*, const CMPIContext*) {
    return CMPIStatus{CMPI_RC_ERR_FAILED, nullptr};
  };
  {
    const auto decorator = make(1, 0);
    EXPECT_FALSE(waitForPasses(1, 300ms));
  }
  EXPECT_TRUE(recorded.sink->has(LogLevel::Error, "cannot attach the worker's thread"));
}

TEST_F(AutostartTest, stopsBeforeTheProviderGoes) {
  std::atomic<bool> inPass{false};
  bool aliveDuringPass = true;
  work = [&] {
    inPass = true;
    std::this_thread::sleep_for(200ms);
    aliveDuringPass = aliveDuringPass && !seen->destroyed;
  };
  auto decorator = make(3600, 0);
  while (!inPass) std::this_thread::yield();
  decorator.reset();
  EXPECT_TRUE(aliveDuringPass);
  EXPECT_TRUE(seen->destroyed);
  ZEBUtil::wakeWorker();
}

}  // namespace
}  // namespace ZEB
