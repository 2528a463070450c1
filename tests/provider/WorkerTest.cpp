#include <thread>

#include "WorkerFixture.h"

// When a pass polls, what it does in which order, and what is reported of teams that come and go.

namespace ZEB::test {
namespace {

using CmpiCpp::CmpiData;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr const char* kGoesOn = "ZEB_EthEventSettings Polling Disabled.  Continue to do _backgroundWorker...";

TEST_F(WorkerTest, APassInsideTheIntervalIsSkipped) {
  clockOffset += 50;
  EXPECT_TRUE(succeeded(pass()));
  const auto texts = log->texts();
  // The clock may tick between the build and the pass.
  EXPECT_THAT(texts, Contains(testing::AnyOf(
                         ":: PollInterval of 200s has not elapsed: (50). Skipping _backgroundWorker...",
                         ":: PollInterval of 200s has not elapsed: (51). Skipping _backgroundWorker...")));
  EXPECT_THAT(texts, Contains("::value of _netlinkEvent at start= 0 "));
  EXPECT_THAT(texts, Not(Contains(HasSubstr("readyToSendIndications"))));
  EXPECT_THAT(texts, Not(Contains(HasSubstr("at end"))));
  EXPECT_EQ(updates, 0);
  EXPECT_FALSE(statusPosted());
  EXPECT_FALSE(_netlinkEvent);
}

TEST_F(WorkerTest, APassAfterTheIntervalPollsAndBeginsANewOne) {
  clockOffset += 201;
  EXPECT_TRUE(succeeded(pass()));
  EXPECT_EQ(log->count(":: PollInterval has elapsed. Continuing to do _backgroundWorker..."), 1U);
  EXPECT_EQ(updates, 1);
  EXPECT_TRUE(statusPosted());
  log->clear();
  clockOffset += 50;
  pass();
  EXPECT_TRUE(log->mentions(LogLevel::Info, "Skipping _backgroundWorker"));
}

TEST_F(WorkerTest, APassPollsAsSoonAsTheIntervalHasElapsed) {
  clockStands = 2'000'000'000;
  pass();
  log->clear();
  clockStands += 199;
  pass();
  EXPECT_EQ(log->count(":: PollInterval of 200s has not elapsed: (199). Skipping _backgroundWorker..."), 1U);
  clockStands += 1;
  pass();
  EXPECT_EQ(log->count(":: PollInterval has elapsed. Continuing to do _backgroundWorker..."), 1U);
}

TEST_F(WorkerTest, ALinkMessageBypassesTheInterval) {
  clockOffset += 50;
  _netlinkEvent = true;
  EXPECT_TRUE(succeeded(pass()));
  EXPECT_EQ(log->count("::value of _netlinkEvent at start= 1 "), 1U);
  EXPECT_EQ(log->count(kGoesOn), 1U);
  EXPECT_EQ(log->count("::value of _netlinkEvent at end= 0 "), 1U);
  EXPECT_EQ(updates, 0);
  EXPECT_FALSE(_netlinkEvent);
  // The time of the last poll is the build's still.
  log->clear();
  clockOffset += 100;
  pass();
  EXPECT_TRUE(log->mentions(LogLevel::Info, "has not elapsed: (15"));
}

TEST_F(WorkerTest, AnIntervalOfZeroPollsAlwaysAndKeepsNoTime) {
  set("PollInterval", std::uint32_t{0});
  for (int i = 0; i < 3; ++i) EXPECT_TRUE(succeeded(pass()));
  EXPECT_EQ(log->count(kGoesOn), 3U);
  EXPECT_EQ(updates, 3);
  set("PollInterval", std::uint32_t{200});
  clockOffset += 50;
  pass();
  EXPECT_TRUE(log->mentions(LogLevel::Info, "has not elapsed: (5"));
}

TEST_F(WorkerTest, AClockThatWasSetBackPollsAtOnce) {
  clockOffset -= 3600;
  EXPECT_TRUE(succeeded(pass()));
  EXPECT_EQ(log->count(":: PollInterval has elapsed. Continuing to do _backgroundWorker..."), 1U);
}

TEST_F(WorkerTest, WithIndicationsDisabledEverythingButAlertsIsDone) {
  configure("ZEB_HEARTBEAT", "1");
  stop();
  start();
  markCollectionChanged();
  host.link("eth1").carrier = false;
  host.play();
  EXPECT_TRUE(succeeded(pollingPass()));
  EXPECT_EQ(log->count("readyToSendIndications 0,  ethernetEvent 1"), 1U);
  EXPECT_EQ(log->count("_processIndications"), 1U);
  EXPECT_THAT(events(), IsEmpty());
  EXPECT_TRUE(statusPosted());
  EXPECT_EQ(log->count("::_readyToSendIndications"), 0U);
}

TEST_F(WorkerTest, AHeartbeatEndsThePassBeforeItIsSent) {
  configure("ZEB_HEARTBEAT", "1");
  stop();
  start();
  enableIndications();
  const Outcome outcome = pollingPass();
  EXPECT_EQ(outcome.rc, CMPI_RC_ERR_FAILED);
  EXPECT_EQ(outcome.message, "basic_string: construction from null is not valid");
  EXPECT_EQ(log->count("::_readyToSendIndications"), 1U);
  EXPECT_EQ(log->count("Creating EthernetIndication object"), 1U);
  EXPECT_EQ(log->count("Done creating EthernetIndication object"), 1U);
  EXPECT_THAT(events(), IsEmpty());
  EXPECT_TRUE(_netlinkEvent);
  EXPECT_FALSE(statusPosted());
}

TEST_F(WorkerTest, AChangedCollectionEndsOnePassBeforeItIsReported) {
  enableIndications();
  markCollectionChanged();
  const Outcome outcome = pollingPass();
  EXPECT_EQ(outcome.rc, CMPI_RC_ERR_FAILED);
  EXPECT_EQ(log->count("Done creating EthernetIndication object"), 1U);
  EXPECT_EQ(log->count("::value of _netlinkEvent at start= 1 "), 0U);
  EXPECT_THAT(events(), IsEmpty());
  EXPECT_TRUE(_netlinkEvent);
  EXPECT_FALSE(statusPosted());
  // The flag was cleared before, so the next pass runs through.
  EXPECT_TRUE(succeeded(pass()));
  EXPECT_TRUE(statusPosted());
}

TEST_F(WorkerTest, APulledCableIsReportedOnceAndCounted) {
  enableIndications();
  EXPECT_TRUE(succeeded(pollingPass()));
  host.link("eth1").carrier = false;
  host.play();
  EXPECT_TRUE(succeeded(pollingPass()));
  EXPECT_THAT(events(), ElementsAre("2"));
  EXPECT_THAT(description(0), testing::EndsWith("(Ethernet port 1 on ethernet controller 2)"));
  const auto collection = enumerate("ZEB_EthernetCollection").at(0);
  EXPECT_EQ(collection.getProperty("GroupOperationalStatus").asArray()[0], CmpiData(std::uint16_t{6}));
  // The same again is no event.
  EXPECT_TRUE(succeeded(pollingPass()));
  EXPECT_THAT(events(), ElementsAre("2"));
  host.link("eth1").carrier = true;
  host.play();
  EXPECT_TRUE(succeeded(pollingPass()));
  EXPECT_THAT(events(), ElementsAre("2", "3"));
}

TEST_F(WorkerTest, AGroupThatHasNothingWrongAnyMoreIsOkAgain) {
  const auto groupStatus = [this] {
    return enumerate("ZEB_EthernetCollection").at(0).getProperty("GroupOperationalStatus").asArray()[0];
  };
  host.link("eth1").carrier = false;
  host.play();
  pollingPass();
  EXPECT_EQ(groupStatus(), CmpiData(std::uint16_t{6}));
  host.link("eth1").carrier = true;
  host.play();
  pollingPass();
  EXPECT_EQ(groupStatus(), CmpiData(std::uint16_t{2}));
}

TEST_F(WorkerTest, PortsAreSilentWhereTheyAreNotMonitored) {
  enableIndications();
  set("MonitorPorts", false);
  pollingPass();
  host.link("eth1").carrier = false;
  host.play();
  pollingPass();
  EXPECT_THAT(events(), IsEmpty());
  // What was seen meanwhile is no news afterwards.
  set("MonitorPorts", true);
  pollingPass();
  EXPECT_THAT(events(), IsEmpty());
}

TEST_F(WorkerTest, NothingIsReportedOnceIndicationsAreDisabled) {
  enableIndications();
  pollingPass();
  disableIndications();
  host.link("eth1").carrier = false;
  host.play();
  EXPECT_TRUE(succeeded(pollingPass()));
  EXPECT_THAT(events(), IsEmpty());
}

TEST_F(WorkerTest, AVanishedTeamIsRebuiltWithoutAWordUnlessItIsWanted) {
  enableIndications();
  host.remove("bond0");
  host.link("eth2").team = host.link("eth3").team = 0;
  host.play();
  EXPECT_TRUE(succeeded(pollingPass()));
  EXPECT_THAT(events(), IsEmpty());
  EXPECT_THAT(enumerate("ZEB_EthernetTeam"), IsEmpty());
  EXPECT_EQ(enumerate("ZEB_EthernetPort").size(), 4U);
  EXPECT_EQ(log->count("_cmpiManagedInstanceFactory"), 1U);
}

TEST_F(WorkerTest, TeamsThatComeAndGoAreReportedAroundTheRebuild) {
  enableIndications();
  set("InterfaceUnAvailable", true);
  set("InterfaceAvailable", true);
  host.link("bond0").name = "bond1";
  host.link("bond1").index = 11;
  host.link("eth2").team = host.link("eth3").team = 11;
  host.play();
  EXPECT_TRUE(succeeded(pollingPass()));
  ASSERT_THAT(events(), ElementsAre("12", "11"));
  EXPECT_EQ(log->count("Creating EthernetIndication object"), 2U);
  EXPECT_EQ(log->count("Done creating EthernetIndication object"), 2U);
  EXPECT_THAT(description(0), testing::EndsWith("(The Ethernet Team bond0 is no longer available)"));
  EXPECT_THAT(description(1), testing::EndsWith("(New Ethernet Team bond1 is detected)"));
  for (const auto& delivery : broker.deliveries()) {
    EXPECT_EQ(delivery.indication.getProperty("EventSubCategory").asUnsigned(), 12U);
    EXPECT_EQ(delivery.indication.findProperty("HWPartNumber"), nullptr);
    EXPECT_EQ(delivery.indication.findProperty("UserComment"), nullptr);
  }
  EXPECT_EQ(enumerate("ZEB_EthernetTeam").size(), 1U);
}

TEST_F(WorkerTest, TeamsThatComeAndTeamsThatGoHaveASwitchEach) {
  const struct {
    const char* setting;
    const char* event;
  } kSwitches[] = {{"InterfaceUnAvailable", "12"}, {"InterfaceAvailable", "11"}};
  enableIndications();
  std::uint32_t index = 10;
  std::string name = "bond0";
  for (const auto& each : kSwitches) {
    for (const auto& other : kSwitches) set(other.setting, &other == &each);
    const std::string next = "bond" + std::to_string(++index);
    auto& team = host.link(name);
    team.name = next;
    team.index = index;
    host.link("eth2").team = host.link("eth3").team = index;
    host.play();
    const std::size_t before = events().size();
    EXPECT_TRUE(succeeded(pollingPass()));
    ASSERT_EQ(events().size(), before + 1) << each.setting;
    EXPECT_EQ(events().back(), each.event) << each.setting;
    name = next;
  }
}

TEST_F(WorkerTest, ATeamThatComesTogetherWithAPortIsReported) {
  enableIndications();
  set("InterfaceAvailable", true);
  host.addPort(6, "eth4");
  host.addTeam(11, "bond1");
  host.play();
  EXPECT_TRUE(succeeded(pollingPass()));
  EXPECT_THAT(events(), ElementsAre("11"));
  EXPECT_THAT(description(0), testing::EndsWith("(New Ethernet Team bond1 is detected)"));
}

TEST_F(WorkerTest, ABuildFetchesThePathOfTheChassis) {
  chassisPaths = 0;
  host.addPort(6, "eth4");
  host.play();
  EXPECT_TRUE(succeeded(pollingPass()));
  EXPECT_EQ(chassisPaths, 1);
}

TEST_F(WorkerTest, ATeamThatCannotBeFoundIsNamedInTheLog) {
  enableIndications();
  set("InterfaceUnAvailable", true);
  set("InterfaceAvailable", true);
  ghostsRemoved = {"bond7"};
  ghostsAdded = {"bond8", "bond9"};
  EXPECT_TRUE(succeeded(pollingPass()));
  EXPECT_THAT(events(), IsEmpty());
  EXPECT_TRUE(
      log->has(LogLevel::Error, "Failed to deliver NetworkInterfaceNoLongerAvailable indication for bond7"));
  EXPECT_TRUE(log->has(LogLevel::Error, "Failed to deliver NetworkInterfaceAvailable indication for bond8"));
  EXPECT_TRUE(log->has(LogLevel::Error, "Failed to deliver NetworkInterfaceAvailable indication for bond9"));
}

TEST_F(WorkerTest, ARebuildThatFailsIsDoneAgainByTheNextPass) {
  host.addPort(6, "eth4");
  host.play();
  sourcesFail = true;
  const Outcome outcome = pollingPass();
  EXPECT_EQ(outcome.rc, CMPI_RC_ERR_FAILED);
  EXPECT_EQ(outcome.message, "no data source");
  EXPECT_THAT(enumerate("ZEB_EthernetPort"), IsEmpty());
  sourcesFail = false;
  // Without settings every pass polls.
  _netlinkEvent = false;
  EXPECT_TRUE(succeeded(pass()));
  EXPECT_EQ(enumerate("ZEB_EthernetPort").size(), 5U);
  EXPECT_EQ(enumerate("ZEB_EthEventSettings").size(), 1U);
}

TEST_F(WorkerTest, WithNothingLeftThereAreNoSettingsAndEveryPassPolls) {
  for (const char* name : {"eth0", "eth1", "eth2", "eth3", "bond0"}) host.remove(name);
  host.play();
  EXPECT_TRUE(succeeded(pollingPass()));
  EXPECT_THAT(enumerate("ZEB_EthEventSettings"), IsEmpty());
  log->clear();
  EXPECT_TRUE(succeeded(pass()));
  EXPECT_EQ(log->count(kGoesOn), 1U);
}

TEST_F(WorkerTest, ARefusedDeliveryIsALogLineAndTheNextPassWorks) {
  enableIndications();
  EXPECT_TRUE(succeeded(pollingPass()));
  broker.answerDeliveries(CMPI_RC_ERR_FAILED, "nobody listens");
  host.link("eth0").carrier = false;
  host.play();
  EXPECT_TRUE(succeeded(pollingPass()));
  EXPECT_TRUE(log->has(LogLevel::Error, "indication send failure: nobody listens"));
  broker.answerDeliveries(CMPI_RC_OK);
  host.link("eth0").carrier = true;
  host.play();
  EXPECT_TRUE(succeeded(pollingPass()));
  EXPECT_THAT(events(), ElementsAre("3"));
}

TEST_F(WorkerTest, TwoHundredPassesAtOnceRunOneAfterTheOther) {
  enableIndications();
  EXPECT_TRUE(succeeded(pollingPass()));
  host.link("eth0").carrier = false;
  host.play();
  std::atomic<int> succeededPasses{0};
  std::vector<std::thread> threads;
  for (int i = 0; i < 200; ++i) {
    threads.emplace_back([&] { succeededPasses += succeeded(pollingPass()) ? 1 : 0; });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(succeededPasses, 200);
  EXPECT_THAT(events(), ElementsAre("2"));
}

}  // namespace
}  // namespace ZEB::test
