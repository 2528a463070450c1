#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <ctime>
#include <stdexcept>
#include <thread>

#include "PlayedHost.h"
#include "ProviderFixture.h"
#include "ethernet/EthernetMRA.h"
#include "ethernet/EthernetTeamMRA.h"
#include "monitor/LinkWatch.h"
#include "provider/EntryPoints.h"

// The clock, and some answers of the data library, are the test's: the linker leads them here.
namespace {
std::atomic<std::time_t> clockOffset{0};
std::atomic<int> updates{0};
std::atomic<bool> sourcesFail{false};
std::atomic<int> chassisPaths{0};
std::vector<std::string> ghostsAdded, ghostsRemoved;
}  // namespace

using Names = std::vector<std::string>;

extern "C" {
std::time_t __real_time(std::time_t* out);
std::time_t __wrap_time(std::time_t* out) {
  const std::time_t now = __real_time(nullptr) + clockOffset;
  if (out) *out = now;
  return now;
}
int __real__ZN3ZEB11EthernetMRA9updateAllEv(ZEB::EthernetMRA* self);
int __wrap__ZN3ZEB11EthernetMRA9updateAllEv(ZEB::EthernetMRA* self) {
  ++updates;
  return __real__ZN3ZEB11EthernetMRA9updateAllEv(self);
}
bool __real__ZN3ZEB15EthernetTeamMRA11forceReloadERSt6vectorINSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEESaIS7_EESA_(
    ZEB::EthernetTeamMRA* self, Names& added, Names& removed);
bool __wrap__ZN3ZEB15EthernetTeamMRA11forceReloadERSt6vectorINSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEESaIS7_EESA_(
    ZEB::EthernetTeamMRA* self, Names& added, Names& removed) {
  const bool changed =
      __real__ZN3ZEB15EthernetTeamMRA11forceReloadERSt6vectorINSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEESaIS7_EESA_(
          self, added, removed);
  added.insert(added.end(), ghostsAdded.begin(), ghostsAdded.end());
  removed.insert(removed.end(), ghostsRemoved.begin(), ghostsRemoved.end());
  return changed || !ghostsAdded.empty() || !ghostsRemoved.empty();
}
}

// The factory of the real one cannot be reached by a C name: its result is returned through memory.
namespace ZEB {
std::unique_ptr<EthernetMRA> realEthernetMRAFactory(const Logger&, const CmpiCpp::CmpiContext&) asm(
    "__real__ZN3ZEB18ethernetMRAFactoryERKNS_6LoggerERKN7CmpiCpp11CmpiContextE");
std::unique_ptr<EthernetMRA> wrappedEthernetMRAFactory(const Logger&, const CmpiCpp::CmpiContext&) asm(
    "__wrap__ZN3ZEB18ethernetMRAFactoryERKNS_6LoggerERKN7CmpiCpp11CmpiContextE");
std::unique_ptr<EthernetMRA> wrappedEthernetMRAFactory(const Logger& logger,
                                                       const CmpiCpp::CmpiContext& context) {
  if (sourcesFail) throw std::runtime_error("no data source");
  return realEthernetMRAFactory(logger, context);
}
CmpiCpp::CmpiObjectPath realChassisPath() asm("__real__ZN3ZEB7ZEBUtil14getChassisPathEv");
CmpiCpp::CmpiObjectPath wrappedChassisPath() asm("__wrap__ZN3ZEB7ZEBUtil14getChassisPathEv");
CmpiCpp::CmpiObjectPath wrappedChassisPath() {
  ++chassisPaths;
  return realChassisPath();
}
}  // namespace ZEB

namespace ZEB::test {
namespace {

using CmpiCpp::CmpiData;
using CmpiCpp::CmpiInstance;
using CmpiCpp::CmpiObjectPath;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr const char* kGoesOn = "ZEB_EthEventSettings Polling Disabled.  Continue to do _backgroundWorker...";

/// eth0 and eth1, and bond0 of eth2 and eth3, monitored through "PerformWork" alone.
class WorkerTest : public ProviderTest {
 protected:
  WorkerTest() : host(folder / "host.json") {
    host.addPort(2, "eth0");
    host.addPort(3, "eth1");
    host.addPort(4, "eth2", 10);
    host.addPort(5, "eth3", 10);
    host.addTeam(10, "bond0");
    host.play();
    configure("ZEB_SOURCE_FILE", host.file().string());
    start();
  }
  ~WorkerTest() override {
    stop();
    clockOffset = 0;
    _netlinkEvent = false;
    sourcesFail = false;
    ghostsAdded.clear();
    ghostsRemoved.clear();
    unsetenv("ZEB_HEARTBEAT");
    Configuration::reset();
  }

  void start() {
    FakeBroker::Call call(broker);
    instances = _Generic_Create_InstanceMI(broker.get(), &call.context(), "ZEBEthernetPort", nullptr);
    methods = _Generic_Create_MethodMI(broker.get(), &call.context(), "ZEBEthernetPort", nullptr);
    indications = _Generic_Create_IndicationMI(broker.get(), &call.context(), "ZEBEthernetPort", nullptr);
    log->clear();
    updates = 0;
  }
  void stop() {
    FakeBroker::Call call(broker);
    instances->ft->cleanup(instances, &call.context(), 1);
    methods->ft->cleanup(methods, &call.context(), 1);
    indications->ft->cleanup(indications, &call.context(), 1);
  }
  void enableIndications() {
    FakeBroker::Call call(broker);
    indications->ft->enableIndications(indications, &call.context());
  }

  struct Outcome {
    CMPIrc rc;
    std::string message;
    std::vector<CmpiData> returned;
  };
  Outcome pass() {
    FakeBroker::Call call(broker);
    const CMPIStatus status = methods->ft->invokeMethod(methods, &call.context(), &call.result(),
                                                        call.path({"root/jxv", "ZEB_AutoStartEthernetPort"}),
                                                        "PerformWork", call.args(), call.args());
    return {status.rc, status.msg ? status.msg->ft->getCharPtr(status.msg, nullptr) : "", call.result().data};
  }
  /// A pass that polls, whatever the interval.
  Outcome pollingPass() {
    _netlinkEvent = true;
    return pass();
  }
  static bool succeeded(const Outcome& outcome) {
    return outcome.rc == CMPI_RC_OK && outcome.returned == std::vector{CmpiData(std::uint32_t{0})};
  }

  std::vector<CmpiInstance> enumerate(const char* className) {
    FakeBroker::Call call(broker);
    instances->ft->enumerateInstances(instances, &call.context(), &call.result(),
                                      call.path({"root/jxv", className}), nullptr);
    return call.result().instances;
  }
  void change(CmpiInstance instance, const char* property, CmpiData value) {
    instance.addProperty(property, std::move(value));
    const char* list[] = {property, nullptr};
    FakeBroker::Call call(broker);
    ASSERT_EQ(instances->ft
                  ->modifyInstance(instances, &call.context(), &call.result(), call.path(instance.path()),
                                   call.instance(instance), list)
                  .rc,
              CMPI_RC_OK);
  }
  void set(const char* setting, CmpiData value) {
    change(enumerate("ZEB_EthEventSettings").at(0), setting, std::move(value));
    log->clear();
  }
  /// Changes the first port's filter, which marks the collection's state as changed.
  void markCollectionChanged() {
    change(enumerate("ZEB_EthernetMemberOfCollection").at(1), "Included", false);
    log->clear();
  }

  std::vector<std::string> events() const {
    std::vector<std::string> ids;
    for (const auto& delivery : broker.deliveries())
      ids.push_back(delivery.indication.getProperty("EventID").asString());
    return ids;
  }
  std::string description(std::size_t delivery) const {
    return broker.deliveries().at(delivery).indication.getProperty("Description").asString();
  }
  bool statusPosted() const { return std::filesystem::exists(folder / "run" / "status.json"); }

  PlayedHost host;
  CMPIInstanceMI* instances;
  CMPIMethodMI* methods;
  CMPIIndicationMI* indications;
};

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

}  // namespace
}  // namespace ZEB::test
