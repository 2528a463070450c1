#include <gtest/gtest.h>

#include <chrono>
#include <future>

#include "ProviderFixture.h"
#include "cmpicpp/CmpiData.h"
#include "provider/EntryPoints.h"

namespace ZEB::test {
namespace {

using CmpiCpp::CmpiArgs;
using CmpiCpp::CmpiData;
using CmpiCpp::CmpiInstance;
using CmpiCpp::CmpiObjectPath;

/// CIM operations through the exported functions.
class DispatchTest : public ProviderTest {
 protected:
  explicit DispatchTest(const char* snapshot = "one_port.json") {
    serve(snapshot);
    FakeBroker::Call call(broker);
    instances = _Generic_Create_InstanceMI(broker.get(), &call.context(), "ZEBEthernetPort", nullptr);
    methods = _Generic_Create_MethodMI(broker.get(), &call.context(), "ZEBEthernetPort", nullptr);
    associations = _Generic_Create_AssociationMI(broker.get(), &call.context(), "ZEBEthernetPort", nullptr);
  }
  ~DispatchTest() override {
    FakeBroker::Call call(broker);
    instances->ft->cleanup(instances, &call.context(), 1);
    methods->ft->cleanup(methods, &call.context(), 1);
    associations->ft->cleanup(associations, &call.context(), 1);
  }

  std::vector<CmpiInstance> enumerate(const char* className, const char** properties = nullptr) {
    FakeBroker::Call call(broker);
    rc = instances->ft
             ->enumerateInstances(instances, &call.context(), &call.result(),
                                  call.path({"root/jxv", className}), properties)
             .rc;
    EXPECT_EQ(call.result().done, rc == CMPI_RC_OK ? 1 : 0);
    return call.result().instances;
  }
  std::vector<CmpiObjectPath> enumerateNames(const char* className) {
    FakeBroker::Call call(broker);
    rc = instances->ft
             ->enumerateInstanceNames(instances, &call.context(), &call.result(),
                                      call.path({"root/jxv", className}))
             .rc;
    return call.result().paths;
  }
  std::vector<CmpiInstance> get(const CmpiObjectPath& path, const char** properties = nullptr) {
    FakeBroker::Call call(broker);
    rc = instances->ft->getInstance(instances, &call.context(), &call.result(), call.path(path), properties)
             .rc;
    return call.result().instances;
  }
  CMPIrc modify(const CmpiInstance& instance) {
    FakeBroker::Call call(broker);
    return instances->ft
        ->modifyInstance(instances, &call.context(), &call.result(), call.path(instance.path()),
                         call.instance(instance), nullptr)
        .rc;
  }
  std::vector<CmpiData> invoke(const char* method) {
    FakeBroker::Call call(broker);
    const CmpiObjectPath path{"root/jxv", "ZEB_AutoStartEthernetPort"};
    rc = methods->ft
             ->invokeMethod(methods, &call.context(), &call.result(), call.path(path), method, call.args(),
                            call.args())
             .rc;
    return call.result().data;
  }

  CMPIInstanceMI* instances;
  CMPIMethodMI* methods;
  CMPIAssociationMI* associations;
  CMPIrc rc = CMPI_RC_OK;
};

/// A host without any adapter, so that the collection is empty.
class EmptyHostTest : public DispatchTest {
 protected:
  EmptyHostTest() : DispatchTest("empty.json") {}
};

TEST_F(EmptyHostTest, AutostartIsEnumeratedAndNeverPartOfTheCollection) {
  const auto found = enumerate("ZEB_AutoStart");
  ASSERT_EQ(rc, CMPI_RC_OK);
  ASSERT_EQ(found.size(), 1U);
  EXPECT_TRUE(enumerateNames("ZEB_AutoStart").empty());
  EXPECT_TRUE(get(found.front().path()).empty());
  EXPECT_EQ(rc, CMPI_RC_ERR_NOT_FOUND);
}

TEST_F(DispatchTest, TheAutostartInstanceSaysHowToPoll) {
  const auto found = enumerate("ZEB_AutoStart");
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found.front().className(), CmpiCpp::CmpiName("ZEB_AutoStartEthernetPort"));
  const CmpiObjectPath& path = found.front().path();
  ASSERT_EQ(path.keys().size(), 1U);
  EXPECT_EQ(path.getKey("ProviderName"), CmpiData("ZEBEthernetPort"));
  EXPECT_EQ(path.nameSpace(), "root/jxv");
  EXPECT_FALSE(path.host().empty());

  const std::vector<std::pair<std::string, CmpiData>> expected{
      {"ProviderName", CmpiData("ZEBEthernetPort")},
      {"WorkerMethodNameSpace", CmpiData("root/jxv")},
      {"WorkerPollInterval", CmpiData(std::uint16_t{30})},
      {"WorkerPollIntervalStagger", CmpiData(std::uint16_t{16})},
  };
  ASSERT_EQ(found.front().properties().size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    EXPECT_EQ(found.front().properties()[i].name.str(), expected[i].first);
    EXPECT_EQ(found.front().properties()[i].value, expected[i].second) << expected[i].first;
  }
}

TEST_F(DispatchTest, TheAutostartInstanceIsMadeForTheAnswerAndGoesWithIt) {
  log->clear();
  enumerate("ZEB_AutoStart");
  const std::string source = "ZEBEthernetPort:ZEB_AutoStartEthernetPort";
  std::vector<RecordingLogSink::Line> lines = log->lines();
  std::erase_if(lines, [&](const auto& line) { return line.source != source; });
  EXPECT_EQ(lines, (std::vector<RecordingLogSink::Line>{{LogLevel::Info, source, "cxtor()"},
                                                        {LogLevel::Info, source, "dxtor()"}}));
}

TEST_F(DispatchTest, ModifyingAPortSucceedsAndChangesNothing) {
  auto before = enumerate("ZEB_EthernetPort");
  ASSERT_EQ(before.size(), 1U);
  CmpiInstance changed = before.front();
  changed.addProperty("Caption", "something else");
  EXPECT_EQ(modify(changed), CMPI_RC_OK);
  const auto after = get(before.front().path());
  ASSERT_EQ(after.size(), 1U);
  EXPECT_EQ(after.front().getProperty("Caption"), before.front().getProperty("Caption"));
}

TEST_F(DispatchTest, AnUnknownMethodReturnsOneWithoutAnError) {
  for (const char* name : {"Reboot", "PerformWor", "PerformWorks", ""}) {
    const auto answer = invoke(name);
    EXPECT_EQ(rc, CMPI_RC_OK);
    ASSERT_EQ(answer.size(), 1U) << name;
    EXPECT_EQ(answer.front(), CmpiData(std::uint32_t{1})) << name;
  }
}

TEST_F(DispatchTest, PerformWorkReturnsZeroWhateverItsCase) {
  for (const char* name : {"PerformWork", "performwork", "PERFORMWORK"}) {
    const auto answer = invoke(name);
    ASSERT_EQ(answer.size(), 1U);
    EXPECT_EQ(answer.front(), CmpiData(std::uint32_t{0}));
  }
}

TEST_F(DispatchTest, AnInstanceThatIsNotThereIsNotFound) {
  EXPECT_TRUE(get({"root/jxv", "ZEB_EthernetPort"}).empty());
  EXPECT_EQ(rc, CMPI_RC_ERR_NOT_FOUND);
  EXPECT_TRUE(get({"root/jxv", "ZEB_NoSuchClass", "", {{"DeviceID", "JXV:ZEB_EthernetPort:1"}}}).empty());
  EXPECT_EQ(rc, CMPI_RC_ERR_NOT_FOUND);
}

TEST_F(DispatchTest, APathIsFoundWithoutItsHostAndWithItsKeysInAnyOrder) {
  const auto names = enumerateNames("ZEB_EthernetPort");
  ASSERT_EQ(names.size(), 1U);
  std::vector<CmpiObjectPath::Key> reversed(names.front().keys().rbegin(), names.front().keys().rend());
  EXPECT_EQ(get({"ROOT/jxv", "zeb_ethernetport", "elsewhere", reversed}).size(), 1U);
  EXPECT_EQ(rc, CMPI_RC_OK);
}

TEST_F(DispatchTest, APropertyListIsHonoured) {
  const char* list[] = {"speed", "PortNumber", "NoSuchProperty", nullptr};
  const auto found = enumerate("ZEB_EthernetPort", list);
  ASSERT_EQ(found.size(), 1U);
  ASSERT_EQ(found.front().properties().size(), 2U);
  EXPECT_EQ(found.front().properties()[0].name.str(), "PortNumber");
  EXPECT_EQ(found.front().properties()[1].name.str(), "Speed");
  EXPECT_EQ(found.front().path().keys().size(), 4U);
}

TEST_F(DispatchTest, WhatTheProviderDoesNotOfferIsNotSupported) {
  FakeBroker::Call call(broker);
  auto* path = call.path({"root/jxv", "ZEB_EthernetPort"});
  auto* instance = call.instance(CmpiInstance({"root/jxv", "ZEB_EthernetPort"}));
  EXPECT_EQ(instances->ft->createInstance(instances, &call.context(), &call.result(), path, instance).rc,
            CMPI_RC_ERR_NOT_SUPPORTED);
  EXPECT_EQ(instances->ft->deleteInstance(instances, &call.context(), &call.result(), path).rc,
            CMPI_RC_ERR_NOT_SUPPORTED);
  EXPECT_EQ(instances->ft->execQuery(instances, &call.context(), &call.result(), path, "SELECT", "WQL").rc,
            CMPI_RC_ERR_NOT_SUPPORTED);
}

/// A client that takes its answer only when it is let go. One at a time.
struct SlowClient {
  SlowClient() { current = this; }
  ~SlowClient() { current = nullptr; }

  static CMPIStatus take(const CMPIResult*, const CMPIInstance*) {
    current->asked.set_value();
    current->letGo.get_future().wait();
    return {CMPI_RC_OK, nullptr};
  }

  static inline SlowClient* current = nullptr;
  std::promise<void> asked;
  std::promise<void> letGo;
};

TEST_F(DispatchTest, AClientThatIsSlowToTakeItsAnswerHoldsNobodyUp) {
  SlowClient slow;
  const auto atOnce = std::launch::async;
  auto first = std::async(atOnce, [this] {
    FakeBroker::Call call(broker);
    CMPIResultFT table = *call.result().ft;
    table.returnInstance = SlowClient::take;
    call.result().ft = &table;
    return instances->ft
        ->enumerateInstances(instances, &call.context(), &call.result(),
                             call.path({"root/jxv", "ZEB_EthernetPort"}), nullptr)
        .rc;
  });
  slow.asked.get_future().wait();
  auto second = std::async(atOnce, [this] { return enumerate("ZEB_EthernetPort").size(); });
  EXPECT_EQ(second.wait_for(std::chrono::seconds(10)), std::future_status::ready);
  slow.letGo.set_value();
  EXPECT_EQ(second.get(), 1U);
  EXPECT_EQ(first.get(), CMPI_RC_OK);
}

TEST_F(DispatchTest, EveryOperationLogsItsName) {
  log->clear();
  enumerate("ZEB_EthernetPort");
  const auto names = enumerateNames("ZEB_EthernetPort");
  get(names.front());
  modify(CmpiInstance(names.front()));
  FakeBroker::Call call(broker);
  auto* path = call.path(names.front());
  associations->ft->associators(associations, &call.context(), &call.result(), path, nullptr, nullptr,
                                nullptr, nullptr, nullptr);
  associations->ft->associatorNames(associations, &call.context(), &call.result(), path, nullptr, nullptr,
                                    nullptr, nullptr);
  associations->ft->references(associations, &call.context(), &call.result(), path, nullptr, nullptr,
                               nullptr);
  associations->ft->referenceNames(associations, &call.context(), &call.result(), path, nullptr, nullptr);
  for (const char* line : {"enumInstances()", "enumInstanceNames()", "getInstance()", "modifyInstance()",
                           "associators()", "associatorNames()", "references()", "referenceNames()"}) {
    EXPECT_EQ(log->count(line), 1U) << line;
  }
}

}  // namespace
}  // namespace ZEB::test
