#include <atomic>
#include <future>
#include <thread>
#include <vector>

#include "InterfaceFixture.h"

// The C interfaces at the edges of the provider's life.

namespace CmpiCpp {
namespace {

using std::chrono::milliseconds;
using ZEB::test::FakeBroker;

TEST_F(InterfaceTest, aCallThatComesAfterClosingFails) {
  ASSERT_TRUE(interfaces.close(milliseconds(0)));
  FakeBroker::Call call(broker);
  EXPECT_EQ(enumerateNames(call).rc, CMPI_RC_ERR_FAILED);
  EXPECT_EQ(interfaces.cleanup(CmpiContext(), true), CMPI_RC_ERR_FAILED);
  EXPECT_EQ(released, 0);
}

TEST_F(InterfaceTest, closingWaitsForTheCallThatIsUnderWay) {
  std::promise<void> inside, goOn;
  provider.during = [&] {
    inside.set_value();
    goOn.get_future().wait();
  };
  std::thread caller([&] {
    FakeBroker::Call call(broker);
    EXPECT_EQ(enumerateNames(call).rc, CMPI_RC_OK);
  });
  inside.get_future().wait();
  EXPECT_FALSE(interfaces.close(milliseconds(20))) << "the call has not left";
  EXPECT_EQ(interfaces.cleanup(CmpiContext(), true), CMPI_RC_OK) << "and everything is as it was";
  auto closed = std::async(std::launch::async, [&] { return interfaces.close(std::chrono::seconds(10)); });
  EXPECT_EQ(closed.wait_for(milliseconds(20)), std::future_status::timeout);
  goOn.set_value();
  caller.join();
  EXPECT_TRUE(closed.get());
}

TEST_F(InterfaceTest, closingInsideACallDoesNotWaitForIt) {
  bool closed = false;
  bool inProvider = false;
  provider.during = [&] {
    inProvider = interfaces.isInProvider();
    closed = interfaces.closeForGood(std::chrono::seconds(10));
  };
  FakeBroker::Call call(broker);
  const auto begun = std::chrono::steady_clock::now();
  EXPECT_EQ(enumerateNames(call).rc, CMPI_RC_OK);
  EXPECT_LT(std::chrono::steady_clock::now() - begun, std::chrono::seconds(5));
  EXPECT_TRUE(closed);
  EXPECT_TRUE(inProvider);
}

TEST_F(InterfaceTest, aCallThatHandsOverWhatItFoundIsNotInTheProvider) {
  FakeBroker::Call call(broker);
  static ManagementInterfaces* asked = nullptr;
  static bool inProvider = true;
  asked = &interfaces;
  CMPIResultFT table = *call.result().ft;
  table.returnDone = [](const CMPIResult*) -> CMPIStatus {
    inProvider = asked->isInProvider();
    return {CMPI_RC_OK, nullptr};
  };
  call.result().ft = &table;
  EXPECT_EQ(enumerateNames(call).rc, CMPI_RC_OK);
  EXPECT_FALSE(inProvider);
}

TEST_F(InterfaceTest, aCallKnowsHowLongItHasBeenUnderWay) {
  EXPECT_FALSE(interfaces.hasCallSince(milliseconds(0)));
  const ManagementInterfaces::Call call(interfaces);
  EXPECT_TRUE(interfaces.hasCallSince(milliseconds(0)));
  EXPECT_FALSE(interfaces.hasCallSince(std::chrono::hours(1)));
}

// What a call makes, it makes with the object manager that it began with.
TEST_F(InterfaceTest, aProviderMayComeAndGoWhileCallsCome) {
  std::atomic<bool> stop{false};
  std::thread caller([&] {
    while (!stop) {
      FakeBroker::Call call(broker);
      const CMPIStatus status = enumerateNames(call);
      EXPECT_TRUE(status.rc == CMPI_RC_OK || message(status) == "the provider has been unloaded");
    }
  });
  for (int i = 0; i < 200; ++i) {
    EXPECT_TRUE(interfaces.close(std::chrono::seconds(10)));
    open(provider);
  }
  stop = true;
  caller.join();
}

// Whether they have left cannot be seen while they run. They wait for each other's turn, not in a row.
TEST_F(InterfaceTest, theEndGivesThreadsThatRunOnASecondAltogether) {
  std::atomic<bool> stop{false};
  std::vector<std::thread> callers;
  for (int i = 0; i < 8; ++i) {
    callers.emplace_back([&] {
      while (!stop) {
        FakeBroker::Call call(broker);
        enumerateNames(call);
      }
    });
  }
  std::this_thread::sleep_for(milliseconds(50));
  const auto begun = std::chrono::steady_clock::now();
  EXPECT_TRUE(interfaces.closeForGood(std::chrono::seconds(10)));
  EXPECT_LT(std::chrono::steady_clock::now() - begun, std::chrono::seconds(4));
  stop = true;
  for (std::thread& caller : callers) caller.join();
}

TEST_F(InterfaceTest, eachCleanUpDropsOneReference) {
  FakeBroker::Call call(broker);
  EXPECT_EQ(interfaces.instanceMI()->ft->cleanup(interfaces.instanceMI(), &call.context(), 0).rc, CMPI_RC_OK);
  EXPECT_EQ(interfaces.indicationMI()->ft->cleanup(interfaces.indicationMI(), &call.context(), 1).rc,
            CMPI_RC_OK);
  EXPECT_EQ(released, 2);
}

TEST_F(InterfaceTest, whileIndicationsAreEnabledItAsksToStay) {
  FakeBroker::Call call(broker);
  auto* mi = interfaces.indicationMI();
  mi->ft->enableIndications(mi, &call.context());
  EXPECT_EQ(provider.enabled, 1);
  EXPECT_EQ(mi->ft->cleanup(mi, &call.context(), 0).rc, CMPI_RC_DO_NOT_UNLOAD);
  EXPECT_EQ(released, 0);
  EXPECT_EQ(mi->ft->cleanup(mi, &call.context(), 1).rc, CMPI_RC_OK) << "but not when the end has come";
  EXPECT_EQ(released, 1);
  mi->ft->disableIndications(mi, &call.context());
  EXPECT_EQ(provider.enabled, 0);
  EXPECT_EQ(mi->ft->cleanup(mi, &call.context(), 0).rc, CMPI_RC_OK);
}

TEST_F(InterfaceTest, aBusyProviderAsksToStay) {
  mayRelease = false;
  EXPECT_EQ(interfaces.cleanup(CmpiContext(), false), CMPI_RC_DO_NOT_UNLOAD);
}

TEST_F(InterfaceTest, referencesAreCounted) {
  EXPECT_EQ(provider.refcount(), 0);
  EXPECT_EQ(provider.incRefcount(), 1);
  EXPECT_EQ(provider.incRefcount(), 2);
  EXPECT_EQ(provider.decRefcount(), 1);
  EXPECT_EQ(provider.baseVersion(), 2);
}

}  // namespace
}  // namespace CmpiCpp
