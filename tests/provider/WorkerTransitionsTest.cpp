#include <chrono>
#include <optional>
#include <stdexcept>
#include <thread>

#include "WorkerFixture.h"
#include "common/ZEBUtil.h"
#include "support/Content.h"
#include "support/ThrowingSink.h"

// No transition is lost, told twice or made up, whatever a pass meets.

namespace ZEB::test {
namespace {

using namespace std::chrono_literals;
using CmpiCpp::CmpiData;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// The last time that somebody asked for a pass at, while it lives.
class Alarm {
 public:
  using Clock = std::chrono::steady_clock;

  Alarm() {
    ZEBUtil::setWorkerAlarm([this](Clock::time_point when) { _time = when; });
  }
  ~Alarm() { ZEBUtil::setWorkerAlarm(nullptr); }
  Alarm(const Alarm&) = delete;
  Alarm& operator=(const Alarm&) = delete;

  const std::optional<Clock::time_point>& time() const { return _time; }

 private:
  std::optional<Clock::time_point> _time;
};

TEST_F(WorkerTest, APassThatCannotReadIsTriedAgainAndLosesNothing) {
  enableIndications();
  EXPECT_TRUE(succeeded(pollingPass()));
  std::ofstream(host.file()) << "no recording";
  EXPECT_TRUE(succeeded(pollingPass()));
  EXPECT_TRUE(_netlinkEvent);
  EXPECT_EQ(log->count("readyToSendIndications 1,  ethernetEvent 0"), 2U);
  host.link("eth1").carrier = false;
  host.play();
  EXPECT_TRUE(succeeded(pass()));
  EXPECT_THAT(events(), ElementsAre("2"));
  EXPECT_FALSE(_netlinkEvent);
}

TEST_F(WorkerTest, APassThatCanReadTheTeamsAloneLosesNothing) {
  enableIndications();
  EXPECT_TRUE(succeeded(pollingPass()));
  std::ofstream(host.file()) << "no recording";
  host.link("eth1").carrier = false;
  betweenReloads = [this] { host.play(); };
  EXPECT_TRUE(succeeded(pollingPass()));
  EXPECT_THAT(events(), IsEmpty());
  EXPECT_TRUE(succeeded(pass()));
  EXPECT_THAT(events(), ElementsAre("2"));
}

TEST_F(WorkerTest, APassThatCannotReadAsksForAnotherWithinASecond) {
  std::ofstream(host.file()) << "no recording";
  const Alarm alarm;
  const auto before = Alarm::Clock::now();
  EXPECT_TRUE(succeeded(pollingPass()));
  ASSERT_TRUE(alarm.time());
  EXPECT_LE(*alarm.time() - before, 1s + (Alarm::Clock::now() - before));
}

TEST_F(WorkerTest, ARebuildThatFailsAsksForAPassWithinASecond) {
  host.addPort(6, "eth4");
  host.play();
  sourcesFail = true;
  const Alarm alarm;
  const auto before = Alarm::Clock::now();
  EXPECT_FALSE(succeeded(pollingPass()));
  ASSERT_TRUE(alarm.time());
  EXPECT_LE(*alarm.time() - before, 1s + (Alarm::Clock::now() - before));
}

TEST_F(WorkerTest, APassThatFailsIsOneInTheHealthReport) {
  host.addPort(6, "eth4");
  host.play();
  sourcesFail = true;
  EXPECT_FALSE(succeeded(pollingPass()));
  const std::string report = contentOf(folder / "run" / "health.json");
  EXPECT_THAT(report, HasSubstr(R"("outcome": "failed")"));
  EXPECT_THAT(report, HasSubstr(R"("failure": "no data source")"));
  EXPECT_THAT(report, HasSubstr(R"("failures": 1,)"));
}

TEST_F(WorkerTest, APassThatFindsAPortSettlingAsksForOneWhenItsTimeIsUp) {
  host.link("eth0").up = false;
  host.play();
  {
    const Alarm alarm;
    EXPECT_TRUE(succeeded(pollingPass()));
    EXPECT_FALSE(alarm.time()) << "nothing settles";
  }
  host.link("eth0").up = true;
  host.link("eth0").carrier = false;
  host.play();
  const Alarm alarm;
  const auto before = Alarm::Clock::now();
  EXPECT_TRUE(succeeded(pollingPass()));
  ASSERT_TRUE(alarm.time());
  EXPECT_GE(*alarm.time(), before + 6s);
  EXPECT_LE(*alarm.time(), Alarm::Clock::now() + 6s);
}

TEST_F(WorkerTest, ATeamThatCameInARebuildThatFailedIsStillAnnounced) {
  enableIndications();
  set("InterfaceAvailable", true);
  host.addTeam(20, "bond7");
  host.play();
  sourcesFail = true;
  EXPECT_EQ(pollingPass().rc, CMPI_RC_ERR_FAILED);
  sourcesFail = false;
  EXPECT_TRUE(succeeded(pass()));
  EXPECT_THAT(events(), ElementsAre("11"));
}

// Settings are there when the build fails, and the team is not there any more when it is done again.
TEST_F(WorkerTest, ATeamThatWentInARebuildThatFailedIsAnnouncedOnce) {
  enableIndications();
  set("InterfaceUnAvailable", true);
  host.remove("bond0");
  host.link("eth2").team = host.link("eth3").team = 0;
  host.play();
  const auto sink =
      std::make_shared<ThrowingSink<std::runtime_error>>("store key for ", std::runtime_error("no memory"));
  setProcessLogSink(sink, LogLevel::Info);
  EXPECT_EQ(pollingPass().message, "no memory");
  EXPECT_THAT(events(), ElementsAre("12"));
  EXPECT_TRUE(succeeded(pass()));
  EXPECT_THAT(events(), ElementsAre("12"));
  EXPECT_FALSE(sink->mentions(LogLevel::Error, "Failed to deliver"));
}

TEST_F(WorkerTest, WhatARequestReadsIsLeftToThePass) {
  enableIndications();
  EXPECT_TRUE(succeeded(pollingPass()));
  host.link("eth1").carrier = false;
  host.play();
  for (const char* name : {"ZEB_EthernetPort", "ZEB_EthernetTeam", "ZEB_EthernetLANEndpoint"})
    enumerate(name);
  EXPECT_TRUE(succeeded(pollingPass()));
  EXPECT_THAT(events(), ElementsAre("2"));
}

TEST_F(WorkerTest, ABondMadeAnewUnderItsNameIsAnotherTeam) {
  enableIndications();
  set("InterfaceUnAvailable", true);
  set("InterfaceAvailable", true);
  host.link("bond0").index = 20;
  host.link("eth2").team = host.link("eth3").team = 20;
  host.play();
  EXPECT_TRUE(succeeded(pollingPass()));
  EXPECT_THAT(events(), ElementsAre("12", "11"));
  const auto team = enumerate("ZEB_EthernetTeam").at(0);
  EXPECT_EQ(team.getProperty("MaxNumberSupported"), CmpiData(std::uint32_t{2}));
  EXPECT_EQ(team.getProperty("GroupOperationalStatus").asArray()[0], CmpiData(std::uint16_t{2}));
  // Its members are watched.
  host.link("eth3").carrier = false;
  host.play();
  EXPECT_TRUE(succeeded(pollingPass()));
  EXPECT_THAT(events(), ElementsAre("12", "11", "2", "5", "2"));
}

TEST_F(WorkerTest, ACardUnpluggedFromABondIsReportedByTheBond) {
  enableIndications();
  set("MemberLeftTeam", true);
  host.remove("eth3");
  host.play();
  EXPECT_TRUE(succeeded(pollingPass()));
  EXPECT_EQ(log->count("_cmpiManagedInstanceFactory"), 1U);
  EXPECT_THAT(events(), ElementsAre("8", "5"));
  EXPECT_FALSE(_netlinkEvent);
}

TEST_F(WorkerTest, ABondThatTurnedDegradedStaysInErrorOverRebuilds) {
  stop();
  host.addPort(6, "eth4", 10);
  host.play();
  start();
  enableIndications();
  EXPECT_TRUE(succeeded(pollingPass()));
  host.link("eth4").carrier = false;
  host.play();
  EXPECT_TRUE(succeeded(pollingPass()));
  // The team's port, and before it the team, whose instances come first.
  EXPECT_THAT(events(), ElementsAre("2", "4", "2"));
  host.link("eth3").carrier = false;
  host.play();
  EXPECT_TRUE(succeeded(pollingPass()));
  EXPECT_THAT(events(), ElementsAre("2", "4", "2", "5", "2")) << "the team has failed already";
}

TEST_F(WorkerTest, MembersOfADeletedBondAreReportedAsSwitchedOff) {
  enableIndications();
  host.remove("bond0");
  for (const char* name : {"eth2", "eth3"}) {
    host.link(name).team = 0;
    host.link(name).up = false;
  }
  host.play();
  EXPECT_TRUE(succeeded(pollingPass()));
  EXPECT_THAT(events(), ElementsAre("21", "21"));
}

TEST_F(WorkerTest, TimeOfTheLastChangeOutlivesARebuild) {
  host.link("eth0").carrier = false;
  host.play();
  pollingPass();
  const auto time = enumerate("ZEB_EthernetPort").at(0).getProperty("TimeOfLastStateChange");
  EXPECT_FALSE(time.asDateTime().isInterval());
  clockOffset += 60;
  // In front of all others, so that every number moves.
  host.addPort(1, "eth9");
  host.play();
  log->clear();
  pollingPass();
  ASSERT_EQ(log->count("_cmpiManagedInstanceFactory"), 1U);
  const auto ports = enumerate("ZEB_EthernetPort");
  EXPECT_TRUE(ports.at(0).getProperty("TimeOfLastStateChange").asDateTime().isInterval());
  EXPECT_EQ(ports.at(1).getProperty("TimeOfLastStateChange"), time);
}

TEST_F(WorkerTest, APortThatIsSwitchedOnIsReportedWhenItHasItsLink) {
  enableIndications();
  host.link("eth0").up = false;
  host.play();
  EXPECT_TRUE(succeeded(pollingPass()));
  host.link("eth0").up = true;
  host.link("eth0").carrier = false;
  host.play();
  EXPECT_TRUE(succeeded(pollingPass()));
  EXPECT_THAT(events(), ElementsAre("21")) << "it has its time";
  EXPECT_EQ(enumerate("ZEB_EthernetPort").at(0).getProperty("OperationalStatus").asArray()[0],
            CmpiData(std::uint16_t{15}));
  host.link("eth0").carrier = true;
  host.play();
  EXPECT_TRUE(succeeded(pollingPass()));
  EXPECT_THAT(events(), ElementsAre("21", "20"));
}

TEST_F(WorkerTest, APortThatGetsNoLinkIsReportedWhenItsTimeIsUp) {
  configure("ZEB_LINK_SETTLE_SECONDS", "1");
  stop();
  start();
  enableIndications();
  host.link("eth0").up = false;
  host.play();
  pollingPass();
  host.link("eth0").up = true;
  host.link("eth0").carrier = false;
  host.play();
  pollingPass();
  EXPECT_TRUE(succeeded(pass()));
  EXPECT_TRUE(log->mentions(LogLevel::Info, "Skipping _backgroundWorker")) << "nothing is due yet";
  std::this_thread::sleep_for(std::chrono::milliseconds(1100));
  EXPECT_TRUE(succeeded(pass())) << "nobody has told of anything";
  EXPECT_THAT(events(), ElementsAre("21", "1"));
  unsetenv("ZEB_LINK_SETTLE_SECONDS");
}

TEST_F(WorkerTest, AMemberThatJoinsIsReportedAsThatAlone) {
  enableIndications();
  for (const char* setting :
       {"MemberJoinedTeam", "MemberRoleChanged", "MemberStatusChanged", "ActiveAdapterCountChanged"}) {
    set(setting, true);
  }
  host.link("eth1").team = 10;
  host.link("eth1").carrier = false;
  host.play();
  EXPECT_TRUE(succeeded(pollingPass()));
  // The port had to be switched off for it.
  EXPECT_THAT(events(), ElementsAre("7", "21"));
  host.link("eth1").carrier = true;
  host.play();
  EXPECT_TRUE(succeeded(pollingPass()));
  EXPECT_THAT(events(), ElementsAre("7", "21", "15", "13", "20"));
}

TEST_F(WorkerTest, ABondThatIsMadeIsReportedAsThatAlone) {
  enableIndications();
  for (const char* setting : {"InterfaceAvailable", "MemberJoinedTeam", "MemberRoleChanged",
                              "MemberStatusChanged", "ActiveAdapterCountChanged"}) {
    set(setting, true);
  }
  host.addTeam(11, "bond1");
  host.link("bond1").carrier = false;
  host.play();
  EXPECT_TRUE(succeeded(pollingPass()));
  EXPECT_THAT(events(), ElementsAre("11"));
  host.link("eth1").team = 11;
  host.link("eth1").carrier = false;
  host.play();
  EXPECT_TRUE(succeeded(pollingPass()));
  EXPECT_THAT(events(), ElementsAre("11", "7", "21"));
  host.link("eth1").carrier = host.link("bond1").carrier = true;
  host.play();
  EXPECT_TRUE(succeeded(pollingPass()));
  EXPECT_THAT(events(), ElementsAre("11", "7", "21", "20", "15", "13", "20"));
}

TEST_F(WorkerTest, AMemberThatJoinsAndGetsNoLinkIsReportedWhenItsTimeIsUp) {
  configure("ZEB_LINK_SETTLE_SECONDS", "1");
  stop();
  start();
  enableIndications();
  for (const char* setting : {"MemberJoinedTeam", "MemberRoleChanged", "MemberStatusChanged"})
    set(setting, true);
  host.link("eth1").team = 10;
  host.link("eth1").carrier = false;
  host.play();
  EXPECT_TRUE(succeeded(pollingPass()));
  EXPECT_THAT(events(), ElementsAre("7", "21"));
  std::this_thread::sleep_for(1100ms);
  EXPECT_TRUE(succeeded(pass()));
  // The team has lost connectivity, by a member whose role and status are others, and the port has failed.
  EXPECT_THAT(events(), ElementsAre("7", "21", "2", "9", "10", "1"));
  unsetenv("ZEB_LINK_SETTLE_SECONDS");
}

}  // namespace
}  // namespace ZEB::test
