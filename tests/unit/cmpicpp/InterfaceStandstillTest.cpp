#include <sys/resource.h>

#include <atomic>
#include <deque>
#include <future>
#include <thread>

#include "InterfaceFixture.h"
#include "cmpicpp/Standstill.h"

// Calls that are never to return.

namespace CmpiCpp {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using ZEB::test::FakeBroker;

template <class Condition>
bool eventually(Condition condition) {
  const auto deadline = std::chrono::steady_clock::now() + seconds(10);
  while (!condition()) {
    if (std::chrono::steady_clock::now() > deadline) return false;
    std::this_thread::sleep_for(milliseconds(1));
  }
  return true;
}

class StandstillTest : public InterfaceTest {
 protected:
  StandstillTest() {
    provider.during = [this] {
      if (std::this_thread::get_id() == mine) return;
      ++inside;
      throw Standstill();
    };
  }
  ~StandstillTest() override { interfaces.closeForGood(seconds(10)); }

  /// A call on a thread of its own, which ends with the test at the latest.
  std::future<CMPIStatus>& begin() {
    return _begun.emplace_back(std::async(std::launch::async, [this] {
      FakeBroker::Call call(broker);
      const CMPIStatus status = enumerateNames(call);
      EXPECT_TRUE(call.result().paths.empty());
      EXPECT_EQ(call.result().done, 0);
      return status;
    }));
  }
  CMPIrc callHere() {
    FakeBroker::Call call(broker);
    return enumerateNames(call).rc;
  }

  const std::thread::id mine = std::this_thread::get_id();
  std::atomic<int> inside{0};

 private:
  std::deque<std::future<CMPIStatus>> _begun;
};

TEST_F(StandstillTest, isInNobodysWay) {
  auto& standing = begin();
  ASSERT_TRUE(eventually([&] { return inside == 1; }));
  for (int i = 0; i < 1000; ++i) ASSERT_EQ(callHere(), CMPI_RC_OK);
  ASSERT_TRUE(eventually([&] { return !interfaces.hasCallSince(milliseconds(0)); }));
  EXPECT_TRUE(interfaces.close(milliseconds(0))) << "the provider may go";
  EXPECT_EQ(standing.wait_for(milliseconds(50)), std::future_status::timeout);
  ASSERT_TRUE(interfaces.closeForGood(seconds(10)));
  const CMPIStatus status = standing.get();
  EXPECT_EQ(status.rc, CMPI_RC_ERR_FAILED);
  EXPECT_EQ(status.msg, nullptr);
}

TEST_F(StandstillTest, takesNoProcessorTime) {
  auto& standing = begin();
  ASSERT_TRUE(eventually([&] { return inside == 1; }));
  rusage before{}, after{};
  getrusage(RUSAGE_SELF, &before);
  EXPECT_EQ(standing.wait_for(milliseconds(500)), std::future_status::timeout);
  getrusage(RUSAGE_SELF, &after);
  const auto used = [](const timeval& from, const timeval& to) {
    return seconds(to.tv_sec - from.tv_sec) + std::chrono::microseconds(to.tv_usec - from.tv_usec);
  };
  EXPECT_LT(used(before.ru_utime, after.ru_utime) + used(before.ru_stime, after.ru_stime), milliseconds(50));
}

TEST_F(StandstillTest, isEndedByACleanUpThatIsTerminatingAndByNoOther) {
  auto& standing = begin();
  ASSERT_TRUE(eventually([&] { return inside == 1; }));
  EXPECT_EQ(interfaces.cleanup(CmpiContext(), false), CMPI_RC_OK);
  EXPECT_EQ(standing.wait_for(milliseconds(50)), std::future_status::timeout);
  // It may not stand yet when the first one comes.
  while (standing.wait_for(milliseconds(10)) != std::future_status::ready) {
    EXPECT_EQ(interfaces.cleanup(CmpiContext(), true), CMPI_RC_OK);
  }
  EXPECT_EQ(standing.get().rc, CMPI_RC_ERR_FAILED);
  auto& another = begin();
  EXPECT_EQ(another.wait_for(milliseconds(50)), std::future_status::timeout)
      << "what went on goes on as before";
}

TEST_F(StandstillTest, isEndedAlsoWhenTheProviderIsGoneBefore) {
  auto& standing = begin();
  ASSERT_TRUE(eventually([&] { return inside == 1; }));
  ASSERT_TRUE(eventually([&] { return interfaces.close(milliseconds(0)); }));
  while (standing.wait_for(milliseconds(10)) != std::future_status::ready) {
    EXPECT_EQ(interfaces.cleanup(CmpiContext(), true), CMPI_RC_ERR_FAILED);
  }
  EXPECT_EQ(standing.get().rc, CMPI_RC_ERR_FAILED);
}

TEST_F(StandstillTest, isForSixteenAtATime) {
  std::vector<std::future<CMPIStatus>*> standing;
  for (int i = 0; i < 16; ++i) standing.push_back(&begin());
  ASSERT_TRUE(eventually([&] { return inside == 16 && !interfaces.hasCallSince(milliseconds(0)); }));
  for (int i = 0; i < 3; ++i) EXPECT_EQ(begin().get().rc, CMPI_RC_ERR_FAILED);
  for (auto* each : standing) EXPECT_EQ(each->wait_for(milliseconds(0)), std::future_status::timeout);
  ASSERT_TRUE(interfaces.closeForGood(seconds(10)));
  for (auto* each : standing) EXPECT_EQ(each->get().rc, CMPI_RC_ERR_FAILED);
}

TEST_F(StandstillTest, isOverForGoodWithTheLibrary) {
  ASSERT_TRUE(interfaces.closeForGood(seconds(10)));
  ManagementInterfaces::Call call(interfaces);
  call.standStill();
}

}  // namespace
}  // namespace CmpiCpp
