#include <gtest/gtest.h>

#include <atomic>
#include <vector>

#include "common/WorkerTimer.h"

namespace ZEB {
namespace {

using namespace std::chrono_literals;
using Clock = WorkerTimer::Clock;

/// Notes when the runs begin.
class Runs {
 public:
  WorkerTimer::Body body(std::chrono::milliseconds each = 0ms) {
    return [this, each](const WorkerTimer::NextRun& next) {
      while (next()) {
        {
          const std::lock_guard lock(_mutex);
          _began.push_back(Clock::now());
          _changed.notify_all();
        }
        std::this_thread::sleep_for(each);
      }
    };
  }
  bool waitFor(std::size_t count, std::chrono::milliseconds patience = 5s) {
    std::unique_lock lock(_mutex);
    return _changed.wait_for(lock, patience, [&] { return _began.size() >= count; });
  }
  std::vector<Clock::time_point> began() {
    const std::lock_guard lock(_mutex);
    return _began;
  }

 private:
  std::mutex _mutex;
  std::condition_variable _changed;
  std::vector<Clock::time_point> _began;
};

TEST(WorkerTimerTest, runsAtTheInterval) {
  Runs runs;
  const auto made = Clock::now();
  const WorkerTimer timer({.firstAfter = 30ms, .interval = 60ms}, runs.body());
  ASSERT_TRUE(runs.waitFor(3));
  const auto began = runs.began();
  EXPECT_GE(began[0] - made, 30ms);
  EXPECT_GE(began[1] - began[0], 60ms);
  EXPECT_GE(began[2] - began[1], 60ms);
}

TEST(WorkerTimerTest, isWokenEarlyWhenItHasBeenQuietForAWhile) {
  Runs runs;
  WorkerTimer timer({.firstAfter = 1h, .interval = 1h, .quiet = 50ms, .patience = 10s}, runs.body());
  const auto woken = Clock::now();
  timer.wake();
  ASSERT_TRUE(runs.waitFor(1));
  EXPECT_GE(runs.began()[0] - woken, 50ms);
}

TEST(WorkerTimerTest, aBurstIsOneRunAndNotMuchLaterThanItsBeginning) {
  Runs runs;
  WorkerTimer timer({.firstAfter = 1h, .interval = 1h, .quiet = 100ms, .patience = 250ms}, runs.body());
  const auto first = Clock::now();
  while (Clock::now() - first < 230ms) {
    timer.wake();
    std::this_thread::sleep_for(10ms);
  }
  ASSERT_TRUE(runs.waitFor(1));
  const auto waited = runs.began()[0] - first;
  EXPECT_GE(waited, 250ms) << "wake-ups kept coming, so the patience decided";
  EXPECT_FALSE(runs.waitFor(2, 200ms));
}

/// By itself it would never be quiet for long enough.
TEST(WorkerTimerTest, awakeningsThatKeepComingDoNotPutARunOffForEver) {
  Runs runs;
  WorkerTimer timer({.firstAfter = 1h, .interval = 1h, .quiet = 1h, .patience = 250ms}, runs.body());
  const auto first = Clock::now();
  while (runs.began().empty() && Clock::now() - first < 10s) {
    timer.wake();
    std::this_thread::sleep_for(10ms);
  }
  ASSERT_EQ(runs.began().size(), 1U);
  EXPECT_GE(runs.began()[0] - first, 250ms);
}

TEST(WorkerTimerTest, awakeningDuringARunAsksForAnother) {
  Runs runs;
  WorkerTimer timer({.firstAfter = 1h, .interval = 1h, .quiet = 1ms, .patience = 2ms}, runs.body(100ms));
  timer.wake();
  ASSERT_TRUE(runs.waitFor(1));
  timer.wake();
  EXPECT_TRUE(runs.waitFor(2));
}

TEST(WorkerTimerTest, runsOnceAtTheEarliestTimeThatItIsAskedFor) {
  Runs runs;
  WorkerTimer timer({.firstAfter = 1h, .interval = 1h}, runs.body());
  const auto asked = Clock::now();
  timer.wakeAt(asked + 1h);
  timer.wakeAt(asked + 100ms);
  timer.wakeAt(asked + 30min);
  ASSERT_TRUE(runs.waitFor(1));
  EXPECT_GE(runs.began()[0] - asked, 100ms);
  EXPECT_FALSE(runs.waitFor(2, 200ms));
}

/// As when a pass that could not read its source asks for the next one.
TEST(WorkerTimerTest, runsAgainAtATimeThatARunAsksFor) {
  Runs runs;
  std::atomic<WorkerTimer*> itself = nullptr;
  WorkerTimer timer({.firstAfter = 1h, .interval = 1h}, [&](const WorkerTimer::NextRun& next) {
    runs.body()([&] {
      if (!runs.began().empty() && runs.began().size() < 3) itself.load()->wakeAt(Clock::now() + 50ms);
      return next();
    });
  });
  itself = &timer;
  timer.wakeAt(Clock::now());
  ASSERT_TRUE(runs.waitFor(3));
  const auto began = runs.began();
  EXPECT_GE(began[1] - began[0], 50ms);
  EXPECT_GE(began[2] - began[1], 50ms);
}

TEST(WorkerTimerTest, endsAtOnceWhenItIsIdle) {
  Runs runs;
  const auto began = Clock::now();
  { const WorkerTimer timer({.firstAfter = 1h, .interval = 1h}, runs.body()); }
  EXPECT_LT(Clock::now() - began, 5s);
  EXPECT_TRUE(runs.began().empty());
}

TEST(WorkerTimerTest, waitsForTheRunThatIsUnderWay) {
  std::atomic<bool> inside{false}, done{false};
  {
    const WorkerTimer timer({.firstAfter = 0ms, .interval = 1h}, [&](const WorkerTimer::NextRun& next) {
      while (next()) {
        inside = true;
        std::this_thread::sleep_for(100ms);
        done = true;
      }
    });
    while (!inside) std::this_thread::yield();
  }
  EXPECT_TRUE(done);
}

}  // namespace
}  // namespace ZEB
