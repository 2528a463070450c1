#include <future>
#include <thread>

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
