// Where values come from, found out beside requests.
#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>

#include "server/Explanations.h"
#include "values/ManagerError.h"

namespace ZebManager {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::seconds;

constexpr char kFirst[] = "ZEB_EthernetStatistics.InstanceID=\"JXV:ZEB_EthernetStatistics:1\"";
constexpr char kSecond[] = "ZEB_EthernetStatistics.InstanceID=\"JXV:ZEB_EthernetStatistics:2\"";

/// Whose recordings come when the test says so, and are refused.
class ExplanationsTest : public testing::Test {
 protected:
  ~ExplanationsTest() override { release(); }

  void release() {
    const std::lock_guard lock(mutex);
    released = true;
    changed.notify_all();
  }
  std::string record() {
    std::unique_lock lock(mutex);
    ++recordings;
    changed.wait(lock, [this] { return released; });
    throw ManagerError("the kernel says nothing");
  }

  std::mutex mutex;
  std::condition_variable changed;
  bool released = false;
  int recordings = 0;
  const ClassRepository classes = ClassRepository::fromFile(ZEB_SCHEMAS "/zeb.mof");
  std::optional<Explanations> explanations{std::in_place, Options{}, classes, [this] { return record(); }};
};

TEST_F(ExplanationsTest, AreNotWaitedForLong) {
  const auto start = Clock::now();
  EXPECT_EQ(explanations->of(kFirst), std::nullopt);
  EXPECT_GE(Clock::now() - start, seconds(2));
  EXPECT_LT(Clock::now() - start, seconds(10));
}

TEST_F(ExplanationsTest, AreFoundOutOneAtATime) {
  EXPECT_EQ(explanations->of(kFirst), std::nullopt);
  const auto start = Clock::now();
  EXPECT_EQ(explanations->of(kSecond), std::nullopt);
  EXPECT_LT(Clock::now() - start, seconds(2));
  EXPECT_EQ(recordings, 1);
}

TEST_F(ExplanationsTest, ThatFailAreToldOnceAndTriedAgain) {
  release();
  for (int tried = 1; tried <= 2; ++tried) {
    try {
      explanations->of(kFirst);
      ADD_FAILURE();
    } catch (const ManagerError& error) {
      EXPECT_STREQ(error.what(), "the kernel says nothing");
    }
    EXPECT_EQ(recordings, tried);
  }
}

TEST_F(ExplanationsTest, OfWhatIsNoPathAreRefused) {
  EXPECT_THROW(explanations->of("--help"), ManagerError);
  EXPECT_EQ(recordings, 0);
}

}  // namespace
}  // namespace ZebManager
