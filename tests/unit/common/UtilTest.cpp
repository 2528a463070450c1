#include <gmock/gmock.h>
#include <unistd.h>

#include "common/OperationalStatus.h"
#include "common/ZEBUtil.h"
#include "support/Environment.h"
#include "support/RecordingLogSink.h"

namespace {
std::string givenName;  ///< as which the machine answers, if it is not empty
}

extern "C" int __real_gethostname(char* name, std::size_t size);
extern "C" int __wrap_gethostname(char* name, std::size_t size) {
  if (givenName.empty()) return __real_gethostname(name, size);
  name[givenName.copy(name, size - 1)] = 0;
  return 0;
}

namespace ZEB {
namespace {

struct StatusRow {
  std::uint32_t code;
  const char* text;
  std::uint16_t health;
};

TEST(UtilTest, everyStatusHasItsTextAndHealth) {
  const StatusRow rows[] = {{0, "Unknown", 0},
                            {1, "Other", 0},
                            {2, "OK", 5},
                            {3, "Degraded", 10},
                            {4, "Stressed", 10},
                            {5, "Predictive Failure", 10},
                            {6, "Error", 20},
                            {7, "Non-Recoverable Error", 30},
                            {8, "Starting", 0},
                            {9, "Stopping", 0},
                            {10, "Stopped", 0},
                            {11, "In Service", 5},
                            {12, "No Contact", 0},
                            {13, "Lost Communication", 0},
                            {14, "Aborted", 0},
                            {15, "Dormant", 5},
                            {16, "Supporting Entity in Error", 20},
                            {17, "Completed", 5},
                            {18, "Power Mode", 0},
                            {19, "Relocating", 0},
                            {20, "Unknown", 0},
                            {4294967295u, "Unknown", 0}};
  for (const StatusRow& row : rows) {
    const auto status = static_cast<operationalStatus>(row.code);
    EXPECT_STREQ(opstatusToString(status), row.text) << row.code;
    EXPECT_EQ(ZEBUtil::opstatusToHealthState(status), row.health) << row.code;
  }
}

TEST(UtilTest, theSystemAndItsChassisAreKeyedByTheHostName) {
  char name[256] = "";
  ASSERT_EQ(gethostname(name, sizeof name - 1), 0);
  const std::string host = name;
  ZEBUtil::forgetHostName();
  EXPECT_EQ(ZEBUtil::getHostName(), host);
  EXPECT_EQ(ZEBUtil::getComputerSystemPath().str(),
            "//" + host + "/root/jxv:ZEB_ComputerSystem.CreationClassName=\"ZEB_ComputerSystem\",Name=\"" +
                host + "\"");
  EXPECT_EQ(ZEBUtil::getChassisPath().str(),
            "//" + host +
                "/root/jxv:ZEB_ComputerSystemChassis.CreationClassName=\"ZEB_ComputerSystemChassis\",Tag=\"" +
                host + "\"");
}

TEST(UtilTest, aNameThatTheMachineIsGivenIsReadWhenTheOldOneIsForgotten) {
  givenName = "before";
  ZEBUtil::forgetHostName();
  EXPECT_EQ(ZEBUtil::getHostName(), "before");
  givenName = "after";
  EXPECT_EQ(ZEBUtil::getHostName(), "before");
  ZEBUtil::forgetHostName();
  EXPECT_EQ(ZEBUtil::getHostName(), "after");
  givenName.clear();
  ZEBUtil::forgetHostName();
}

TEST(UtilTest, theSystemIsTheOneThatIsConfigured) {
  const std::string site = R"(root/cimv2:Site_System.CreationClassName="Site_System",Name="server")";
  {
    const test::Environment path("ZEB_COMPUTER_SYSTEM_PATH", site);
    EXPECT_EQ(ZEBUtil::getComputerSystemPath().str(), "//" + ZEBUtil::getHostName() + "/" + site);
  }
  const test::Environment path("ZEB_COMPUTER_SYSTEM_PATH", "//elsewhere/" + site);
  EXPECT_EQ(ZEBUtil::getComputerSystemPath().str(), "//elsewhere/" + site);
}

TEST(UtilTest, aStopIsAskedForAndTakenBackAndSaid) {
  const test::RecordedLogger recorded;
  ZEBUtil::setStop(recorded.logger, 1, 3);
  EXPECT_TRUE(ZEBUtil::stopRequested());
  ZEBUtil::setStop(recorded.logger, 0, 3);
  EXPECT_FALSE(ZEBUtil::stopRequested());
  EXPECT_THAT(recorded.sink->texts(), testing::ElementsAre("setStop: 1, 3", "setStop: 0, 3"));
}

TEST(UtilTest, theSwitchesAreTheConfigurations) {
  EXPECT_FALSE(ZEBUtil::PerfmonEnabled());
  EXPECT_FALSE(ZEBUtil::HeartBeatIndicationsEnabled());
  const test::Environment perfmon("ZEB_PERFMON", "1");
  EXPECT_TRUE(ZEBUtil::PerfmonEnabled());
  EXPECT_FALSE(ZEBUtil::HeartBeatIndicationsEnabled());
  const test::Environment heartbeat("ZEB_HEARTBEAT", "1");
  EXPECT_TRUE(ZEBUtil::HeartBeatIndicationsEnabled());
}

TEST(UtilTest, wakingReachesTheWakerOrNobody) {
  int woken = 0;
  ZEBUtil::setWorkerWaker([&] { ++woken; });
  ZEBUtil::wakeWorker();
  ZEBUtil::setWorkerWaker(nullptr);
  ZEBUtil::wakeWorker();
  EXPECT_EQ(woken, 1);
}

}  // namespace
}  // namespace ZEB
