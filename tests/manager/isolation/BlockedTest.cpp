// Calls that do not return, and the others beside them.
#include <signal.h>

#include <thread>

#include "Supervised.h"

namespace ZebManager {
namespace {

using testing::Each;
using testing::HasSubstr;

class Blocked : public Supervised {
 protected:
  /// A call that holds the provider's lock for good.
  std::future<Answer> hold() {
    auto answer = begin("hold", false);
    std::this_thread::sleep_for(50ms);
    return answer;
  }
};

TEST_F(Blocked, ACallThatNeverReturnsTimesOutAlone) {
  start();
  const pid_t before = provider();
  const auto begun = Clock::now();
  auto held = hold();
  Answer other;
  EXPECT_LT(timeOf([&] { other = read("locked 0"); }), options.timeLimit);
  EXPECT_EQ(other.outcome, How::Done);
  EXPECT_NE(other.body, std::to_string(before));
  const Answer answer = held.get();
  EXPECT_EQ(answer.outcome, How::TimedOut);
  EXPECT_GE(Clock::now() - begun, options.timeLimit);
  EXPECT_LT(Clock::now() - begun, options.timeLimit * 2);
  EXPECT_TRUE(eventually([&] { return isGone(before); }));
  EXPECT_EQ(read("pid").body, other.body);
}

TEST_F(Blocked, CallsThatWaitMoveToTheFreshProcess) {
  start();
  provider();
  auto held = hold();
  std::vector<std::future<Answer>> waiting;
  for (int i = 0; i < 8; ++i) waiting.push_back(begin("locked 0", true));
  std::vector<std::string> processes;
  for (auto& call : waiting) {
    const Answer answer = call.get();
    EXPECT_EQ(answer.outcome, How::Done) << answer.body;
    processes.push_back(answer.body);
  }
  EXPECT_THAT(processes, Each(processes.front()));
  EXPECT_EQ(held.get().outcome, How::TimedOut);
}

TEST_F(Blocked, AnOlderCallThatIsBlockedMovesToo) {
  start();
  provider();
  auto older = begin("locked 150", true);
  std::this_thread::sleep_for(50ms);
  auto held = hold();
  auto younger = begin("locked 0", true);
  EXPECT_EQ(younger.get().outcome, How::Done);
  EXPECT_EQ(older.get().outcome, How::Done);
  EXPECT_EQ(held.get().outcome, How::TimedOut);
}

TEST_F(Blocked, CallsThatFindNoPlaceMoveWhateverTheyAre) {
  options.calls = 1;
  start();
  provider();
  auto held = hold();
  EXPECT_EQ(write("locked 0").outcome, How::Done);
  EXPECT_EQ(linesOf(file("locked")), 1U);
  EXPECT_EQ(held.get().outcome, How::TimedOut);
}

TEST_F(Blocked, AWriteThatWaitsIsNotPerformedTwice) {
  start();
  provider();
  auto held = hold();
  auto writing = begin("locked 0", false);
  EXPECT_EQ(read("locked 0").outcome, How::Done);
  EXPECT_EQ(writing.get().outcome, How::TimedOut);
  EXPECT_EQ(held.get().outcome, How::TimedOut);
  EXPECT_EQ(linesOf(file("locked")), 1U);
}

TEST_F(Blocked, ASlowCallBesideWhichOthersAreAnsweredEndsWhereItBegan) {
  start();
  const pid_t process = provider();
  auto slow = begin("sleep 1200", false);
  while (slow.wait_for(10ms) != std::future_status::ready) EXPECT_EQ(provider(), process);
  const Answer answer = slow.get();
  EXPECT_EQ(answer.outcome, How::Done);
  EXPECT_EQ(answer.body, std::to_string(process));
  EXPECT_EQ(linesOf(file("starts")), 1U);
}

TEST_F(Blocked, ASlowCallThatHoldsOthersUpStillEndsNormally) {
  start();
  const pid_t before = provider();
  auto slow = begin("hold-for " + std::to_string(2500 * kPace), false);
  std::this_thread::sleep_for(50ms);
  EXPECT_EQ(read("locked 0").outcome, How::Done);
  EXPECT_EQ(slow.wait_for(0ms), std::future_status::timeout);
  const Answer answer = slow.get();
  EXPECT_EQ(answer.outcome, How::Done);
  EXPECT_EQ(answer.body, std::to_string(before));
  EXPECT_TRUE(eventually([&] { return isGone(before); }));
  EXPECT_NE(provider(), before);
}

/// What waits for it would only be slower in another process beside it.
TEST_F(Blocked, ACallThatComputesIsNoReasonForAnotherProcess) {
  options.timeLimit = 60s;
  start();
  const pid_t process = provider();
  auto slow = begin("compute 1600", true);
  std::this_thread::sleep_for(50ms);
  std::vector<std::future<Answer>> waiting;
  for (int i = 0; i < 8; ++i) waiting.push_back(begin("locked 0", true));
  for (auto& call : waiting) EXPECT_EQ(call.get().body, std::to_string(process));
  EXPECT_EQ(slow.get().body, std::to_string(process));
  EXPECT_EQ(linesOf(file("starts")), 1U);
  EXPECT_EQ(linesOf(file("locked")), 8U) << "some were performed twice";
}

TEST_F(Blocked, ACallThatComputesForEverIsLeftBehind) {
  options.patience = 100ms;
  options.timeLimit = 20s;
  start();
  const pid_t before = provider();
  auto slow = begin("compute 60000", false);
  std::this_thread::sleep_for(50ms);
  const Answer answer = read("locked 0");
  EXPECT_EQ(answer.outcome, How::Done);
  EXPECT_NE(answer.body, std::to_string(before));
  EXPECT_TRUE(logged("is stuck (a call has used 1000 ms of processor time): a fresh one takes over"));
  EXPECT_EQ(slow.get().outcome, How::TimedOut);
}

/// It would keep its place for good, however well others get on beside it.
TEST_F(Blocked, ACallThatSleepsPastItsTimeIsLeftBehind) {
  options.patience = 1s * kPace;
  start();
  auto computing = begin("compute 60000", false);
  auto sleeping = begin("sleep 60000", false);
  EXPECT_TRUE(eventually(
      [&] { return logged("is stuck (a call whose time is up sleeps): a fresh one takes over"); }));
  EXPECT_EQ(sleeping.get().outcome, How::TimedOut);
  EXPECT_EQ(computing.get().outcome, How::TimedOut);
}

TEST_F(Blocked, EachTakeOverIsLogged) {
  start();
  provider();
  auto held = hold();
  EXPECT_EQ(read("locked 0").outcome, How::Done);
  EXPECT_TRUE(logged("is stuck (nothing has moved in it for "));
  EXPECT_EQ(held.get().outcome, How::TimedOut);
}

TEST_F(Blocked, ACallAloneIsLeftInPeaceUntilTheLimit) {
  options.timeLimit = 1500ms;
  start();
  const pid_t before = provider();
  EXPECT_EQ(write("hold").outcome, How::TimedOut);
  EXPECT_EQ(read("locked 0").outcome, How::Done);
  EXPECT_EQ(linesOf(file("starts")), 2U);
  EXPECT_TRUE(eventually([&] { return isGone(before); }));
}

TEST_F(Blocked, AReadThatNeverReturnsIsTriedAgainOnceOnly) {
  start();
  provider();
  auto held = begin("hold", true);
  while (held.wait_for(100ms) != std::future_status::ready) {
    EXPECT_EQ(read("locked 0").outcome, How::Done);
  }
  EXPECT_EQ(held.get().outcome, How::TimedOut);
  EXPECT_EQ(linesOf(file("starts")), 3U);
}

TEST_F(Blocked, AProcessThatIsStoppedIsReplaced) {
  start();
  const pid_t before = provider();
  kill(before, SIGSTOP);
  auto first = begin("pid", true);
  auto second = begin("pid", true);
  for (auto* const call : {&first, &second}) {
    const Answer answer = call->get();
    EXPECT_EQ(answer.outcome, How::Done);
    EXPECT_NE(answer.body, std::to_string(before));
  }
  EXPECT_TRUE(eventually([&] { return isGone(before); }));
}

TEST_F(Blocked, ManyCallsThatNeverReturnStayWithinTheBoundOfProcesses) {
  options.processes = 3;
  options.timeLimit = 4s * kPace;
  start();
  provider();
  std::vector<std::future<Answer>> held;
  for (int round = 0; round < 5; ++round) {
    held.push_back(hold());
    EXPECT_EQ(read("locked 0").outcome, How::Done) << round;
  }
  int early = 0;
  for (auto& call : held) {
    const Answer answer = call.get();
    EXPECT_EQ(answer.outcome, How::TimedOut);
    early += answer.body.find("early") != std::string::npos;
  }
  EXPECT_EQ(linesOf(file("starts")), 6U);
  EXPECT_GE(early, 1);
}

TEST_F(Blocked, WhileSomebodyListensTheProviderIsReplacedThoughNobodyWaits) {
  start();
  supervisor->setFilters({{"all", "SELECT * FROM T_Alert", "WQL"}});
  provider();
  auto held = hold();
  EXPECT_TRUE(eventually([&] { return linesOf(file("starts")) == 2; }));
  EXPECT_EQ(held.wait_for(0ms), std::future_status::timeout);
  EXPECT_EQ(held.get().outcome, How::TimedOut);
}

}  // namespace
}  // namespace ZebManager
