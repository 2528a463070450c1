#include <gmock/gmock.h>
#include <syslog.h>

#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <thread>

#include "common/Logger.h"
#include "support/Environment.h"
#include "support/ProcessLog.h"
#include "support/RecordingLogSink.h"

namespace {
std::mutex systemLogMutex;
std::vector<std::pair<int, std::string>> systemLog;
}  // namespace

extern "C" void __wrap_syslog(int priority, const char* format, ...) {
  char text[200] = "";
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text, sizeof text, format, arguments);
  va_end(arguments);
  const std::lock_guard lock(systemLogMutex);
  systemLog.emplace_back(priority, text);
}

namespace ZEB {
namespace {

using test::Environment;
using test::ProcessLog;
using test::RecordingLogSink;
using testing::ElementsAre;
using Line = RecordingLogSink::Line;

TEST(LoggerTest, writesALineWithItsLevelAndSource) {
  const auto sink = std::make_shared<RecordingLogSink>();
  const Logger logger("Me", sink, LogLevel::Info);
  logger.info("i %d", 1);
  logger.warn("w %s", "x");
  logger.error("e");
  EXPECT_THAT(sink->lines(), ElementsAre(Line{LogLevel::Info, "Me", "i 1"}, Line{LogLevel::Warn, "Me", "w x"},
                                         Line{LogLevel::Error, "Me", "e"}));
}

TEST(LoggerTest, writesNothingMoreDetailedThanItsLevel) {
  const auto sink = std::make_shared<RecordingLogSink>();
  for (const LogLevel level : {LogLevel::Error, LogLevel::Warn, LogLevel::Info}) {
    sink->clear();
    const Logger logger("Me", sink, level);
    logger.info("x");
    logger.warn("x");
    logger.error("x");
    EXPECT_EQ(sink->lines().size(), static_cast<std::size_t>(level) + 1);
    EXPECT_TRUE(logger.wants(level));
  }
}

TEST(LoggerTest, aSourceIsLengthenedForThisHandleAlone) {
  const Logger parent("Me", std::make_shared<RecordingLogSink>(), LogLevel::Info);
  Logger child = parent;
  child.appendLogSource(":");
  child.appendLogSource("Class");
  EXPECT_EQ(child.source(), "Me:Class");
  EXPECT_EQ(parent.source(), "Me");
}

TEST(LoggerTest, handlesLengthenedAlikeShareOneName) {
  const Logger parent("Me", std::make_shared<RecordingLogSink>(), LogLevel::Info);
  Logger one = parent, two = parent;
  one.appendLogSource(":Class");
  two.appendLogSource(":Class");
  EXPECT_EQ(&one.source(), &two.source());
}

TEST(LoggerTest, lineBreaksAtTheEndAreDropped) {
  const auto sink = std::make_shared<RecordingLogSink>();
  const Logger logger("Me", sink, LogLevel::Info);
  logger.info("In StartNetlinkThread.\n");
  logger.info("\n\n");
  EXPECT_THAT(sink->texts(), ElementsAre("In StartNetlinkThread.", ""));
}

TEST(LoggerTest, withoutASinkItWritesToTheProcesss) {
  const ProcessLog log;
  Logger("Named").warn("seen");
  Logger().warn("too");
  EXPECT_THAT(log.sink->lines(),
              ElementsAre(Line{LogLevel::Warn, "Named", "seen"}, Line{LogLevel::Warn, "", "too"}));
}

TEST(LoggerTest, aReplacedProcessSinkHoldsForHandlesThatAreThere) {
  const auto first = std::make_shared<RecordingLogSink>();
  setProcessLogSink(first, LogLevel::Info);
  const Logger logger("Me");
  {
    const ProcessLog second;
    logger.info("x");
    EXPECT_TRUE(first->lines().empty());
    EXPECT_THAT(second.sink->texts(), ElementsAre("x"));
  }
  EXPECT_FALSE(logger.wants(LogLevel::Info)) << "what the configuration asks for is back";
}

TEST(LoggerTest, aHandleWithASinkOfItsOwnKeepsIt) {
  const auto own = std::make_shared<RecordingLogSink>();
  const Logger logger("Me", own, LogLevel::Info);
  const ProcessLog process;
  logger.info("x");
  EXPECT_EQ(own->lines().size(), 1u);
  EXPECT_TRUE(process.sink->lines().empty());
}

TEST(LoggerTest, isUsedAndCopiedOnSeveralThreads) {
  const auto sink = std::make_shared<RecordingLogSink>();
  const Logger parent("Me", sink, LogLevel::Info);
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([&parent] {
      for (int i = 0; i < 200; ++i) {
        Logger mine = parent;
        mine.appendLogSource(":Class");
        mine.info("%d", i);
      }
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(sink->lines().size(), 800u);
}

TEST(LoggerTest, standardErrorGetsOneLine) {
  testing::internal::CaptureStderr();
  Logger("Me", makeStandardErrorSink(), LogLevel::Info).error("no %s", "space");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "error: Me: no space\n");
}

TEST(LoggerTest, nobodyGetsALineWhereNoTargetIsWanted) {
  systemLog.clear();
  testing::internal::CaptureStderr();
  {
    const Environment target("ZEB_LOG_TARGET", "none");
    setProcessLogSink(nullptr, LogLevel::Error);
    Logger("Me").error("no %s", "space");
  }
  setProcessLogSink(nullptr, LogLevel::Error);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_THAT(systemLog, testing::IsEmpty());
}

TEST(LoggerTest, theSystemLogGetsEachLevelAsItsOwn) {
  systemLog.clear();
  const Logger logger("Me", makeSyslogSink(), LogLevel::Info);
  logger.error("no %s", "space");
  logger.warn("%d left", 3);
  logger.info("done");
  EXPECT_THAT(systemLog, ElementsAre(testing::Pair(LOG_DAEMON | LOG_ERR, "Me: no space"),
                                     testing::Pair(LOG_DAEMON | LOG_WARNING, "Me: 3 left"),
                                     testing::Pair(LOG_DAEMON | LOG_INFO, "Me: done")));
}

}  // namespace
}  // namespace ZEB
