// Calls that are answered, by how many threads and processes, and what is left behind.
#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>

#include <fstream>
#include <thread>

#include "Process.h"
#include "Supervised.h"
#include "isolation/Frame.h"
#include "posix/FileDescriptor.h"
#include "support/Content.h"
#include "support/ProcessCounts.h"

namespace ZebManager {
namespace {

using testing::HasSubstr;
using testing::Not;
using ZEB::test::contentOf;
using ZEB::test::openDescriptors;
using ZEB::test::residentBytes;

class Supervisor : public Supervised {};

TEST_F(Supervisor, AnswersWithWhatTheProviderSays) {
  start();
  const Answer answer = read("echo some words");
  EXPECT_EQ(answer.outcome, How::Done);
  EXPECT_EQ(answer.body, "some words");
}

TEST_F(Supervisor, AnEmptyAnswerIsAnAnswer) {
  start();
  const Answer answer = read("echo ");
  EXPECT_EQ(answer.outcome, How::Done);
  EXPECT_EQ(answer.body, "");
}

TEST_F(Supervisor, ManyThreadsGetTheirOwnAnswers) {
  start();
  std::vector<std::thread> threads;
  std::atomic<int> right = 0;
  for (int thread = 0; thread < 32; ++thread) {
    threads.emplace_back([&, thread] {
      for (int round = 0; round < 100; ++round) {
        const std::string text = std::to_string(thread) + "." + std::to_string(round);
        right += read("echo " + text).body == text;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(right, 3200);
  EXPECT_EQ(linesOf(file("starts")), 1U);
}

TEST_F(Supervisor, CallsRunBesideEachOtherUpToTheirBound) {
  options.calls = 3;
  options.patience = 60s;
  options.timeLimit = 60s;
  start();
  std::vector<std::future<Answer>> answers;
  for (int i = 0; i < 9; ++i) answers.push_back(begin("sleep 100", true));
  for (auto& answer : answers) EXPECT_EQ(answer.get().outcome, How::Done);
  EXPECT_EQ(read("most").body, "3");
}

TEST_F(Supervisor, AHugeAnswerComesWhole) {
  options.timeLimit = 60s;
  start();
  const std::size_t size = 50'000'000;
  const Answer answer = read("big " + std::to_string(size));
  ASSERT_EQ(answer.outcome, How::Done);
  ASSERT_EQ(answer.body.size(), size);
  EXPECT_EQ(answer.body.front(), 'a');
  EXPECT_EQ(answer.body.back(), 'z');
  EXPECT_EQ(answer.body.find_first_not_of('x', 1), size - 1);
}

TEST_F(Supervisor, AHugeMessageArrivesWhole) {
  options.timeLimit = 60s;
  start();
  const std::string text(8'000'000, 'm');
  EXPECT_EQ(read("echo " + text).body, text);
}

TEST_F(Supervisor, AnAnswerBeyondTheLimitIsAnErrorOfItsCallAlone) {
  options.timeLimit = 60s;
  start();
  const pid_t process = provider();
  const Answer answer = write("big " + std::to_string(kLongestBody + 1));
  EXPECT_EQ(answer.outcome, How::Ended);
  EXPECT_THAT(answer.body, HasSubstr("268435457 bytes"));
  EXPECT_EQ(provider(), process);
}

TEST_F(Supervisor, WhatTheProviderThrowsIsAnErrorOfItsCallAlone) {
  start();
  const pid_t process = provider();
  const Answer answer = read("nonsense");
  EXPECT_EQ(answer.outcome, How::Ended);
  EXPECT_EQ(answer.body, "unknown deed 'nonsense'");
  EXPECT_EQ(provider(), process);
}

TEST_F(Supervisor, TheProviderInheritsNoDescriptor) {
  std::ofstream(file("secret")) << "x";
  const ZEB::FileDescriptor inheritable(open(file("secret").c_str(), O_RDONLY));
  start();
  EXPECT_THAT(read("files").body, Not(HasSubstr("secret")));
}

TEST_F(Supervisor, WhatStopsAServerStopsNoProvider) {
  start();
  const pid_t process = provider();
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) kill(process, signal);
  std::this_thread::sleep_for(100ms);
  EXPECT_EQ(provider(), process);
}

TEST_F(Supervisor, ItsEndUnloadsThePluginAndLeavesNoProcess) {
  start();
  const pid_t process = provider();
  EXPECT_LT(timeOf([&] { supervisor.reset(); }), 10s);
  EXPECT_TRUE(isGone(process));
  EXPECT_EQ(contentOf(file("trace")), "cleanup 1\ncleanup 1\ncleanup 1\ncleanup 1\n");
}

TEST_F(Supervisor, AfterItsStopNoCallWaits) {
  start();
  const pid_t process = provider();
  supervisor->stop();
  EXPECT_TRUE(eventually([&] { return isGone(process); }));
  std::this_thread::sleep_for(100ms);  // its thread ends behind the process
  std::packaged_task<Answer()> late([this] { return read("pid"); });
  auto answer = late.get_future();
  std::thread(std::move(late)).detach();
  ASSERT_EQ(answer.wait_for(10s), std::future_status::ready);
  EXPECT_EQ(answer.get().outcome, How::Ended);
}

TEST_F(Supervisor, ItsEndDoesNotWaitForAStart) {
  std::ofstream(file("gate")) << "hang";
  start();
  ASSERT_TRUE(eventually([&] { return linesOf(file("starts")) == 1; }));
  EXPECT_LT(timeOf([&] { supervisor.reset(); }), 10s);
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(errno, ECHILD);
}

TEST_F(Supervisor, TwoHundredRestartsLeaveNothingBehind) {
  options.firstBackOff = 1ms;
  start();
  ASSERT_GT(provider(), 0);
  std::size_t descriptors = 0;
  std::size_t memory = 0;
  for (int round = 0; round < 200; ++round) {
    ASSERT_EQ(write("crash").outcome, How::Ended) << round;
    ASSERT_GT(provider(), 0) << round;
    if (round != 20) continue;
    descriptors = openDescriptors();
    memory = residentBytes();
  }
  EXPECT_EQ(openDescriptors(), descriptors);
  EXPECT_EQ(linesOf(file("starts")), 201U);
  if (!ZEB::test::kSanitized) {  // which keep what was freed
    EXPECT_LT(residentBytes(), memory + (std::size_t{1} << 20));
  }
  supervisor.reset();
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(errno, ECHILD);
}

TEST_F(Supervisor, AProviderDiesWithItsParent) {
  // The provider has the same standard error, so that `run` returns when both are gone.
  const auto begin = Clock::now();
  const auto outcome = run(ZEB_ISOLATED_PROVIDER, {"parent"}, {}, {"runs", SIGKILL});
  EXPECT_LT(Clock::now() - begin, 20s);
  EXPECT_EQ(outcome.status, -1);
  ASSERT_THAT(outcome.err, HasSubstr("provider "));
  const pid_t provider = std::stoi(outcome.err.substr(9));
  // Nobody may be there to reap it.
  EXPECT_TRUE(eventually([&] {
    return isGone(provider) ||
           contentOf("/proc/" + std::to_string(provider) + "/stat").find(") Z") != std::string::npos;
  }));
}

}  // namespace
}  // namespace ZebManager
