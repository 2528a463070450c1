// Provider processes that end unasked.
#include <signal.h>

#include <filesystem>
#include <fstream>
#include <thread>

#include "Supervised.h"
#include "isolation/BackOff.h"

namespace ZebManager {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

class Ended : public Supervised {};

TEST_F(Ended, AWriteUnderACrashIsAnErrorAndNotRepeated) {
  start();
  const pid_t before = provider();
  const Answer answer = write("crash");
  EXPECT_EQ(answer.outcome, How::Ended);
  EXPECT_THAT(answer.body, HasSubstr("signal 11"));
  const pid_t after = provider();
  EXPECT_GT(after, 0);
  EXPECT_NE(after, before);
  EXPECT_EQ(linesOf(file("starts")), 2U);
  EXPECT_TRUE(logged("signal 11"));
}

/// What was done before the end stays done, so nobody is told that it was not.
TEST_F(Ended, AWriteThatIsDoneBeforeTheEndIsNotSaidToBeUndone) {
  start();
  const Answer written = write("crash-once " + file("written"));
  EXPECT_EQ(written.outcome, How::Ended);
  EXPECT_TRUE(std::filesystem::exists(file("written")));
  EXPECT_THAT(written.body, EndsWith("; whether it has taken effect is not known"));
  EXPECT_THAT(read("crash").body, Not(HasSubstr("whether")));
}

TEST_F(Ended, AWriteThatReachedNoProcessIsUndone) {
  std::ofstream(file("gate"));
  start();
  const Answer answer = write("pid");
  EXPECT_EQ(answer.outcome, How::Ended);
  EXPECT_THAT(answer.body, Not(HasSubstr("whether")));
}

TEST_F(Ended, AReadUnderACrashIsRepeated) {
  start();
  const Answer answer = read("crash-once " + file("crashed"));
  EXPECT_EQ(answer.outcome, How::Done);
  EXPECT_EQ(linesOf(file("starts")), 2U);
}

TEST_F(Ended, AReadThatAlwaysCrashesIsRepeatedOnce) {
  start();
  const Answer answer = read("crash");
  EXPECT_EQ(answer.outcome, How::Ended);
  EXPECT_THAT(answer.body, HasSubstr("signal 11"));
  EXPECT_GT(provider(), 0);
  EXPECT_EQ(linesOf(file("starts")), 3U);
}

TEST_F(Ended, AnExitInACallIsAnEnd) {
  start();
  const Answer answer = write("exit");
  EXPECT_EQ(answer.outcome, How::Ended);
  EXPECT_THAT(answer.body, HasSubstr("exit status 1"));
  EXPECT_GT(provider(), 0);
}

TEST_F(Ended, AnExitInAThreadOfThePluginIsAnEnd) {
  start();
  const Answer answer = write("exit-thread");
  EXPECT_EQ(answer.outcome, How::Ended);
  EXPECT_GT(provider(), 0);
}

TEST_F(Ended, AKilledProviderIsReplacedBeforeAnybodyAsks) {
  start();
  kill(provider(), SIGKILL);
  EXPECT_TRUE(eventually([&] { return linesOf(file("starts")) == 2; }));
  EXPECT_GT(provider(), 0);
}

TEST_F(Ended, OneCallThatCrashesCostsNoOtherReader) {
  options.timeLimit = 30s;
  start();
  provider();
  std::atomic<bool> over = false;
  std::mutex mutex;
  std::vector<std::string> failures;
  std::atomic<int> answered = 0;
  std::vector<std::thread> readers;
  for (int i = 0; i < 8; ++i) {
    readers.emplace_back([&] {
      while (!over) {
        const Answer answer = read("sleep 20");
        ++answered;
        if (answer.outcome == How::Done) continue;
        const std::lock_guard lock(mutex);
        failures.push_back(answer.body);
      }
    });
  }
  for (int round = 0; round < 5; ++round) {
    EXPECT_EQ(read("crash").outcome, How::Ended);
    std::this_thread::sleep_for(100ms);
  }
  over = true;
  for (std::thread& reader : readers) reader.join();
  EXPECT_THAT(failures, testing::IsEmpty());
  EXPECT_GT(answered, 8);
}

TEST_F(Ended, AProviderThatDoesNotStartIsAnErrorThatSaysWhy) {
  std::ofstream(file("gate"));
  start();
  Answer answer;
  EXPECT_LT(timeOf([&] { answer = read("pid"); }), 10s);
  EXPECT_EQ(answer.outcome, How::Ended);
  EXPECT_THAT(answer.body, HasSubstr("the gate is closed"));
  EXPECT_TRUE(logged("the gate is closed"));
}

TEST_F(Ended, AProviderThatDoesNotStartIsTriedLessAndLess) {
  std::ofstream(file("gate"));
  start();
  const auto begun = Clock::now();
  EXPECT_TRUE(eventually([&] { return linesOf(file("starts")) >= 6 && Clock::now() - begun > 2s; }));
  // At 0, 0, 50, 150, 350, 750, 1150 ms and so on every 400 ms, were starting to take no time.
  const std::size_t starts = linesOf(file("starts"));
  EXPECT_LE(starts, 6 + (Clock::now() - begun) / 400ms);
  std::filesystem::remove(file("gate"));
  EXPECT_TRUE(eventually([&] { return read("pid").outcome == How::Done; }));
}

TEST_F(Ended, AProgramThatIsNotThereIsAnErrorThatSaysSo) {
  options.process.program = "/nowhere/zebcim";
  start();
  const Answer answer = read("pid");
  EXPECT_EQ(answer.outcome, How::Ended);
  EXPECT_THAT(answer.body, HasSubstr("/nowhere/zebcim"));
}

TEST_F(Ended, AStartThatHangsIsEnded) {
  std::ofstream(file("gate")) << "hang";
  options.startLimit = 1s * kPace;
  start();
  EXPECT_TRUE(eventually([&] { return logged("did not start in time"); }));
  std::filesystem::remove(file("gate"));
  EXPECT_TRUE(eventually([&] { return read("pid").outcome == How::Done; }));
}

TEST_F(Ended, AProviderThatDiesAfterEachAnswerIsNotStartedWithoutEnd) {
  options.firstBackOff = 200ms;
  start();
  const auto begun = Clock::now();
  EXPECT_TRUE(eventually([&] {
    read("pid");
    write("crash");
    return linesOf(file("starts")) >= 5 && Clock::now() - begun > 1s;
  }));
  // At once, at once, and then every 200 ms.
  EXPECT_LE(linesOf(file("starts")), 3 + (Clock::now() - begun) / 200ms);
}

TEST(BackOff, DoublesUpToItsLimitAndForgetsAfterAProcessThatLasted) {
  using Life = BackOff::Life;
  BackOff backOff(100ms, 500ms);
  const Clock::time_point now{};
  const auto delayAfter = [&](Life life) {
    backOff.ended(life, now);
    return backOff.notBefore() - now;
  };
  EXPECT_EQ(delayAfter(Life::InVain), 0ms);
  EXPECT_EQ(delayAfter(Life::InVain), 100ms);
  EXPECT_EQ(delayAfter(Life::InVain), 200ms);
  EXPECT_EQ(delayAfter(Life::InVain), 400ms);
  EXPECT_EQ(delayAfter(Life::InVain), 500ms);
  EXPECT_EQ(delayAfter(Life::Useful), 500ms);
  EXPECT_EQ(delayAfter(Life::Useful), 100ms);
  EXPECT_EQ(delayAfter(Life::Useful), 100ms);
  EXPECT_EQ(delayAfter(Life::Lasting), 0ms);
  EXPECT_EQ(delayAfter(Life::Useful), 100ms);
}

TEST(BackOff, GivesUpHopeAfterTwoInARowDidNothingUseful) {
  using Life = BackOff::Life;
  BackOff backOff(100ms, 500ms);
  const auto hopelessAfter = [&](Life life) {
    backOff.ended(life, {});
    return backOff.hopeless();
  };
  EXPECT_FALSE(backOff.hopeless());
  EXPECT_FALSE(hopelessAfter(Life::InVain));
  EXPECT_TRUE(hopelessAfter(Life::InVain));
  EXPECT_TRUE(hopelessAfter(Life::InVain));
  EXPECT_FALSE(hopelessAfter(Life::Useful));
  EXPECT_FALSE(hopelessAfter(Life::InVain));
  EXPECT_FALSE(hopelessAfter(Life::Lasting));
}

}  // namespace
}  // namespace ZebManager
