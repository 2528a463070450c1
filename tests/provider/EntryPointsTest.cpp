#include <pthread.h>

#include <future>
#include <stdexcept>
#include <thread>
#include <utility>

#include "ProviderFixture.h"
#include "cmpicpp/CmpiProvider.h"
#include "cmpicpp/CmpiStatus.h"
#include "common/ZEBUtil.h"
#include "monitor/NetlinkThread.h"
#include "provider/EntryPoints.h"
#include "provider/ProviderRegistry.h"
#include "support/ProcessCounts.h"
#include "support/ThrowingSink.h"

namespace ZEB::test {
namespace {

using CmpiCpp::CmpiObjectPath;

/// The four interfaces of one provider name.
struct Interfaces {
  Interfaces(FakeBroker& broker, const CMPIContext* context, const char* name, CMPIStatus* status = nullptr)
      : instance(_Generic_Create_InstanceMI(broker.get(), context, name, status)),
        association(_Generic_Create_AssociationMI(broker.get(), context, name, status)),
        method(_Generic_Create_MethodMI(broker.get(), context, name, status)),
        indication(_Generic_Create_IndicationMI(broker.get(), context, name, status)) {}

  CMPIInstanceMI* instance;
  CMPIAssociationMI* association;
  CMPIMethodMI* method;
  CMPIIndicationMI* indication;
};

/// Each test makes its own provider and leaves none behind.
class EntryPointsTest : public ProviderTest {
 protected:
  CMPIrc cleanup(bool terminating = true) {
    FakeBroker::Call call(broker);
    return instance()->ft->cleanup(instance(), &call.context(), terminating ? 1 : 0).rc;
  }
  CMPIInstanceMI* instance() { return _instance; }
  /// One reference, through the instance interface.
  CMPIInstanceMI* create(CMPIStatus* status = nullptr) {
    FakeBroker::Call call(broker);
    _instance = _Generic_Create_InstanceMI(broker.get(), &call.context(), "ZEBEthernetPort", status);
    return _instance;
  }
  CmpiCpp::CmpiProvider* registered() {
    // Asking counts a reference, which is taken back at once.
    auto* provider = ProviderRegistry::instance().getProvider(broker.handle(), "ZEBEthernetPort");
    if (provider) provider->decRefcount();
    return provider;
  }
  CMPIrc enumerate(CMPIInstanceMI* mi, const char* className, std::size_t* found = nullptr) {
    FakeBroker::Call call(broker);
    const auto status = mi->ft->enumerateInstanceNames(mi, &call.context(), &call.result(),
                                                       call.path({"root/jxv", className}));
    if (found) *found = call.result().paths.size();
    return status.rc;
  }

 private:
  CMPIInstanceMI* _instance = nullptr;
};

TEST_F(EntryPointsTest, AllFourLeadToOneObjectBuiltOnce) {
  FakeBroker::Call call(broker);
  const Interfaces interfaces(broker, &call.context(), "ZEBEthernetPort");
  ASSERT_NE(interfaces.instance, nullptr);
  ASSERT_NE(interfaces.association, nullptr);
  ASSERT_NE(interfaces.method, nullptr);
  ASSERT_NE(interfaces.indication, nullptr);
  EXPECT_EQ(interfaces.instance->hdl, interfaces.association->hdl);
  EXPECT_EQ(interfaces.instance->hdl, interfaces.method->hdl);
  EXPECT_EQ(interfaces.instance->hdl, interfaces.indication->hdl);
  EXPECT_EQ(log->count("_cmpiManagedInstanceFactory"), 1U);
  EXPECT_EQ(registered()->refcount(), 4);

  EXPECT_EQ(interfaces.instance->ft->cleanup(interfaces.instance, &call.context(), 1).rc, CMPI_RC_OK);
  EXPECT_EQ(interfaces.association->ft->cleanup(interfaces.association, &call.context(), 1).rc, CMPI_RC_OK);
  EXPECT_EQ(interfaces.method->ft->cleanup(interfaces.method, &call.context(), 1).rc, CMPI_RC_OK);
  EXPECT_EQ(log->count("dxtor() unloading provider"), 0U);
  EXPECT_EQ(interfaces.indication->ft->cleanup(interfaces.indication, &call.context(), 1).rc, CMPI_RC_OK);
  EXPECT_EQ(log->count("dxtor() unloading provider"), 1U);
}

TEST_F(EntryPointsTest, AnyOtherNameGivesNullAndConstructsNothing) {
  FakeBroker::Call call(broker);
  CMPIStatus status{CMPI_RC_OK, nullptr};
  const Interfaces interfaces(broker, &call.context(), "AnotherProvider", &status);
  EXPECT_EQ(interfaces.instance, nullptr);
  EXPECT_EQ(interfaces.association, nullptr);
  EXPECT_EQ(interfaces.method, nullptr);
  EXPECT_EQ(interfaces.indication, nullptr);
  EXPECT_EQ(status.rc, CMPI_RC_ERR_FAILED);
  EXPECT_TRUE(log->lines().empty()) << log->lines().front().text;
}

TEST_F(EntryPointsTest, NamesAreCimNames) {
  FakeBroker::Call call(broker);
  create();
  CMPIStatus status{CMPI_RC_ERR_FAILED, nullptr};
  auto* other = _Generic_Create_InstanceMI(broker.get(), &call.context(), "zebETHERNETport", &status);
  EXPECT_EQ(status.rc, CMPI_RC_OK);
  EXPECT_EQ(other, instance());
  EXPECT_EQ(log->count("_cmpiManagedInstanceFactory"), 1U);
  cleanup();
  cleanup();
}

TEST_F(EntryPointsTest, StartsWithoutAStoreDirectoryThatCanBeWritten) {
  // Root may write anywhere, but not below a file.
  configure("ZEB_STORE_DIR", "/dev/null/store");
  ASSERT_NE(create(), nullptr);
  EXPECT_TRUE(log->has(LogLevel::Error, "unable to open datastore"));
  std::size_t ports = 0;
  EXPECT_EQ(enumerate(instance(), "ZEB_EthernetPort", &ports), CMPI_RC_OK);
  EXPECT_EQ(ports, 1U);
  cleanup();
}

TEST_F(EntryPointsTest, ConstructsAndDestroysInTheDocumentedOrder) {
  create();
  cleanup();
  std::vector<std::string> milestones;
  for (const auto& line : log->lines()) {
    for (const char* wanted :
         {"setStop: 0, 3", "calling makeDataStore...", "Entered StartNetlinkThread.",
          "In StartNetlinkThread.", "Netlink Thread Started", "_cmpiManagedInstanceFactory", "setStop: 1, 3",
          "dxtor() unloading provider", "wrote to pipeFd."}) {
      if (line.text == wanted) milestones.push_back(line.text);
    }
  }
  EXPECT_EQ(milestones, (std::vector<std::string>{
                            "setStop: 0, 3", "calling makeDataStore...", "Entered StartNetlinkThread.",
                            "In StartNetlinkThread.", "Netlink Thread Started", "_cmpiManagedInstanceFactory",
                            "calling makeDataStore...",  // that of the settings
                            "setStop: 1, 3", "dxtor() unloading provider", "wrote to pipeFd."}));
  EXPECT_EQ(pipeFd[0], -1);
  EXPECT_EQ(pipeFd[1], -1);
}

TEST_F(EntryPointsTest, ACallAfterTheLastReleaseFailsAndALaterOneBuildsAnew) {
  create();
  CMPIInstanceMI* const before = instance();
  cleanup();
  EXPECT_EQ(enumerate(before, "ZEB_EthernetPort"), CMPI_RC_ERR_FAILED);
  EXPECT_EQ(cleanup(), CMPI_RC_ERR_FAILED);

  create();
  EXPECT_EQ(enumerate(instance(), "ZEB_EthernetPort"), CMPI_RC_OK);
  EXPECT_EQ(enumerate(before, "ZEB_EthernetPort"), CMPI_RC_OK);
  EXPECT_EQ(log->count("_cmpiManagedInstanceFactory"), 2U);
  cleanup();
}

TEST_F(EntryPointsTest, ALastCleanUpThatIsRefusedLeavesTheBackgroundWorkGoing) {
  create();
  create();
  static std::promise<void> inside, goOn;
  std::thread client([&] {
    FakeBroker::Call call(broker);
    CMPIResultFT table = *call.result().ft;
    table.returnDone = [](const CMPIResult*) -> CMPIStatus {
      inside.set_value();
      goOn.get_future().wait();
      return {CMPI_RC_OK, nullptr};
    };
    call.result().ft = &table;
    instance()->ft->enumerateInstanceNames(instance(), &call.context(), &call.result(),
                                           call.path({"root/jxv", "ZEB_EthernetPort"}));
  });
  inside.get_future().wait();
  EXPECT_EQ(cleanup(), CMPI_RC_OK);
  EXPECT_TRUE(ZEBUtil::stopRequested());
  EXPECT_EQ(cleanup(), CMPI_RC_DO_NOT_UNLOAD) << "the client is still there";
  EXPECT_FALSE(ZEBUtil::stopRequested());
  EXPECT_EQ(enumerate(instance(), "ZEB_EthernetPort"), CMPI_RC_OK);
  goOn.set_value();
  client.join();
  EXPECT_EQ(cleanup(), CMPI_RC_OK);
}

TEST_F(EntryPointsTest, StaysLoadedWhileIndicationsAreEnabled) {
  FakeBroker::Call call(broker);
  create();
  auto* indication = _Generic_Create_IndicationMI(broker.get(), &call.context(), "ZEBEthernetPort", nullptr);
  EXPECT_EQ(call.enableIndications(indication).rc, CMPI_RC_OK);
  log->clear();
  EXPECT_EQ(cleanup(false), CMPI_RC_DO_NOT_UNLOAD);
  EXPECT_EQ(indication->ft->cleanup(indication, &call.context(), 0).rc, CMPI_RC_DO_NOT_UNLOAD);
  EXPECT_EQ(registered()->refcount(), 2);
  // The provider was not reached: nothing asked its background work to stop.
  EXPECT_EQ(log->count("setStop: 1, 3"), 0U);
  EXPECT_EQ(enumerate(instance(), "ZEB_EthernetPort"), CMPI_RC_OK);

  EXPECT_EQ(call.disableIndications(indication).rc, CMPI_RC_OK);
  EXPECT_EQ(cleanup(false), CMPI_RC_OK);
  EXPECT_EQ(indication->ft->cleanup(indication, &call.context(), 0).rc, CMPI_RC_OK);
  EXPECT_EQ(log->count("setStop: 1, 3"), 2U);
  EXPECT_EQ(log->count("dxtor() unloading provider"), 1U);
}

TEST_F(EntryPointsTest, TerminatingIsNotPutOffByIndications) {
  FakeBroker::Call call(broker);
  auto* indication = _Generic_Create_IndicationMI(broker.get(), &call.context(), "ZEBEthernetPort", nullptr);
  call.enableIndications(indication);
  EXPECT_EQ(indication->ft->cleanup(indication, &call.context(), 1).rc, CMPI_RC_OK);
  EXPECT_EQ(log->count("dxtor() unloading provider"), 1U);
}

TEST_F(EntryPointsTest, FilterCallsAnswerOk) {
  FakeBroker::Call call(broker);
  auto* mi = _Generic_Create_IndicationMI(broker.get(), &call.context(), "ZEBEthernetPort", nullptr);
  auto* path = call.path({"root/jxv", "ZEB_EthernetIndication"});
  EXPECT_EQ(mi->ft->authorizeFilter(mi, &call.context(), nullptr, "ZEB_EthernetIndication", path, "root").rc,
            CMPI_RC_OK);
  // Whatever stands in the arguments of this one is not touched.
  auto* wild = reinterpret_cast<const CMPIResult*>(1);
  EXPECT_EQ(
      mi->ft->mustPoll(mi, &call.context(), wild, nullptr, reinterpret_cast<const char*>(1), nullptr).rc,
      CMPI_RC_OK);
  EXPECT_EQ(mi->ft->activateFilter(mi, &call.context(), nullptr, "ZEB_EthernetIndication", path, 1).rc,
            CMPI_RC_OK);
  EXPECT_EQ(mi->ft->deActivateFilter(mi, &call.context(), nullptr, "ZEB_EthernetIndication", path, 1).rc,
            CMPI_RC_OK);
  mi->ft->cleanup(mi, &call.context(), 1);
}

TEST_F(EntryPointsTest, AProviderThatCannotBeMadeGivesNullAndAReasonAndLeavesNothing) {
  configure("ZEB_SOURCE_FILE", "/nonexistent/recording.json");
  FakeBroker::Call call(broker);
  const auto before = threads();
  struct {
    const char* name;
    void* interface;
  } const results[] = {
      {"_Generic_Create_InstanceMI",
       _Generic_Create_InstanceMI(broker.get(), &call.context(), "ZEBEthernetPort", nullptr)},
      {"_Generic_Create_AssociationMI",
       _Generic_Create_AssociationMI(broker.get(), &call.context(), "ZEBEthernetPort", nullptr)},
      {"_Generic_Create_MethodMI",
       _Generic_Create_MethodMI(broker.get(), &call.context(), "ZEBEthernetPort", nullptr)},
      {"_Generic_Create_IndicationMI",
       _Generic_Create_IndicationMI(broker.get(), &call.context(), "ZEBEthernetPort", nullptr)},
  };
  for (const auto& result : results) {
    EXPECT_EQ(result.interface, nullptr) << result.name;
    EXPECT_TRUE(log->mentions(
        LogLevel::Error,
        std::string(result.name) + ": ZEBEthernetPort constructor threw CmpiStatus exception: "))
        << result.name;
  }
  // The netlink thread had been started; it is gone, and its pipe with it.
  EXPECT_EQ(log->count("Netlink Thread Started"), 4U);
  EXPECT_EQ(threads(), before);
  EXPECT_EQ(pipeFd[0], -1);

  CMPIStatus status{CMPI_RC_OK, nullptr};
  EXPECT_EQ(_Generic_Create_InstanceMI(broker.get(), &call.context(), "ZEBEthernetPort", &status), nullptr);
  EXPECT_EQ(status.rc, CMPI_RC_ERR_FAILED);
  ASSERT_NE(status.msg, nullptr);
  EXPECT_NE(std::string(status.msg->ft->getCharPtr(status.msg, nullptr)).find("/nonexistent/recording.json"),
            std::string::npos);

  // The registry kept nothing: with a source that can be read the next call succeeds.
  serve("one_port.json");
  EXPECT_NE(create(), nullptr);
  cleanup();
}

// The first line is written before anything was obtained, the last one when everything was.
TEST_F(EntryPointsTest, WhateverAConstructorThrowsIsLoggedByItsKindAndLeavesNothing) {
  const auto before = threads();
  for (const char* line :
       {"calling makeDataStore...", "In StartNetlinkThread.", "_cmpiManagedInstanceFactory"}) {
    const auto expectFailure = [&](auto thrown, const std::string& message, CMPIrc rc = CMPI_RC_ERR_FAILED) {
      const auto sink = std::make_shared<ThrowingSink<decltype(thrown)>>(line, thrown);
      setProcessLogSink(sink, LogLevel::Info);
      CMPIStatus status{CMPI_RC_OK, nullptr};
      EXPECT_EQ(create(&status), nullptr) << line;
      EXPECT_EQ(status.rc, rc) << line;
      EXPECT_TRUE(sink->has(LogLevel::Error, "_Generic_Create_InstanceMI: ZEBEthernetPort " + message))
          << line;
      EXPECT_EQ(threads(), before) << line;
      EXPECT_EQ(pipeFd[1], -1) << line;
    };
    expectFailure(std::runtime_error("no more"), "constructor threw std::exception: no more");
    expectFailure(42, "constructor threw unknown exception");
    expectFailure(CmpiCpp::CmpiStatus(CMPI_RC_ERR_ACCESS_DENIED, "not here"),
                  "constructor threw CmpiStatus exception: not here", CMPI_RC_ERR_ACCESS_DENIED);
  }
  setProcessLogSink(log, LogLevel::Info);
  EXPECT_NE(create(), nullptr);
  cleanup();
}

TEST_F(EntryPointsTest, OperationsAreTimedWherePerformanceIsMonitored) {
  for (const bool monitored : {false, true}) {
    configure("ZEB_PERFMON", monitored ? "true" : "false");
    log->clear();
    create();
    EXPECT_EQ(enumerate(instance(), "ZEB_EthernetPort"), CMPI_RC_OK);
    cleanup();
    EXPECT_EQ(log->mentions(LogLevel::Info, "perfmon enumInstanceNames: 1 calls, 0 failed, "), monitored);
  }
}

TEST_F(EntryPointsTest, AThreadThatCannotBeStartedIsLoggedAndTheProviderServes) {
  // No address space for a thread's stack: creating one fails, everything else has what it needs.
  pthread_attr_t defaults;
  pthread_attr_t huge;
  pthread_getattr_default_np(&defaults);
  pthread_attr_init(&huge);
  pthread_attr_setstacksize(&huge, std::size_t{1} << 46);
  ASSERT_EQ(pthread_setattr_default_np(&huge), 0);
  CMPIStatus status{CMPI_RC_ERR_FAILED, nullptr};
  create(&status);
  pthread_setattr_default_np(&defaults);
  ASSERT_NE(instance(), nullptr);
  EXPECT_TRUE(log->mentions(LogLevel::Error, "pthread create error return code: "));
  EXPECT_EQ(enumerate(instance(), "ZEB_EthernetPort"), CMPI_RC_OK);
  log->clear();
  cleanup();
  EXPECT_EQ(log->count("Invalid file descriptor"), 1U);
}

TEST_F(EntryPointsTest, OneQuestionAboutARecordingLeavesTheKernelAlone) {
  configure("ZEB_ONE_QUESTION", "1");
  ASSERT_NE(create(), nullptr);
  EXPECT_FALSE(log->mentions(LogLevel::Info, "Netlink Thread Started"));
  EXPECT_EQ(enumerate(instance(), "ZEB_EthernetPort"), CMPI_RC_OK);
  cleanup();
}

}  // namespace
}  // namespace ZEB::test
