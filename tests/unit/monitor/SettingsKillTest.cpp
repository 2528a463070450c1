#include <gmock/gmock.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <random>
#include <thread>

#include "monitor/ZEB_EthEventSettings.h"
#include "support/ChildProcess.h"
#include "support/Environment.h"
#include "support/ProcessLog.h"
#include "support/TemporaryDirectory.h"

namespace ZEB::test {
namespace {

/// What the n-th change sets: two numbers and two flags that follow from n.
CmpiCpp::CmpiInstance nthChange(std::uint32_t n) {
  CmpiCpp::CmpiInstance instance;
  instance.addProperty("PollInterval", n);
  instance.addProperty("MaxFloodLevel", n);
  instance.addProperty("MonitorPorts", n % 2 == 0);
  return instance;
}

/// Changes the settings again and again, and writes to `acknowledged` what the client was told is kept.
int modifyForEver(std::uint32_t from, int acknowledged) {
  ZEB_EthEventSettings settings(Logger("", makeStandardErrorSink(), LogLevel::Error), "root/jxv");
  const char* names[] = {"PollInterval", "MaxFloodLevel", "MonitorPorts", nullptr};
  for (std::uint32_t n = from;; ++n) {
    settings.modify(nthChange(n), names);
    if (write(acknowledged, &n, sizeof n) != sizeof n) return 1;
  }
}

TEST(SettingsKillTest, everyAcknowledgedModifyIsThereAfterAKill) {
  const TemporaryDirectory directory;
  const Environment storeDirectory("ZEB_STORE_DIR", directory.file("stores"));
  const ProcessLog log;
  const char* soak = std::getenv("ZEB_SOAK");
  const int rounds = soak && std::string(soak) == "1" ? 1000 : 50;
  std::mt19937 random(20260103);
  std::uniform_int_distribution<int> microseconds(0, 20000);
  std::uint32_t next = 1;
  for (int round = 0; round < rounds; ++round) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    ChildProcess client([&] { return modifyForEver(next, ends[1]); });
    close(ends[1]);
    std::uint32_t acknowledged = 0;
    ASSERT_EQ(read(ends[0], &acknowledged, sizeof acknowledged), ssize_t{sizeof acknowledged});
    std::this_thread::sleep_for(std::chrono::microseconds(microseconds(random)));
    client.kill();
    ASSERT_EQ(client.wait(), -SIGKILL);
    for (std::uint32_t n = 0; read(ends[0], &n, sizeof n) == sizeof n;) acknowledged = n;
    close(ends[0]);

    const ZEB_EthEventSettings settings(Logger("", log.sink, LogLevel::Error), "root/jxv");
    const std::uint32_t interval = settings.number(EventSetting::PollInterval);
    const std::uint32_t level = settings.number(EventSetting::MaxFloodLevel);
    const bool ports = settings.isOn(EventSetting::MonitorPorts);
    // The settings of one modify are kept one after the other, so the one under way may be there in part.
    ASSERT_TRUE(interval == acknowledged || interval == acknowledged + 1) << interval << " " << acknowledged;
    ASSERT_TRUE(level == interval || level + 1 == interval) << level << " " << interval;
    ASSERT_GE(level, acknowledged);
    ASSERT_TRUE(ports == (acknowledged % 2 == 0) || (level > acknowledged && ports == (level % 2 == 0)));
    next = interval + 1;
  }
  EXPECT_THAT(log.sink->lines(), testing::IsEmpty());
}

}  // namespace
}  // namespace ZEB::test
