#include <gmock/gmock.h>

#include <thread>

#include "BrokerValues.h"
#include "cmpicpp/AttachedThread.h"
#include "cmpicpp/CmpiMBService.h"
#include "cmpicpp/CmpiStatus.h"
#include "support/FakeBroker.h"

// What a provider asks of the object manager.

namespace CmpiCpp {
namespace {

using ZEB::test::FakeBroker;

TEST(BrokerTest, knowsDescent) {
  FakeBroker broker;
  broker.declareClass("ZEB_EthernetPort", "CIM_EthernetPort");
  broker.declareClass("CIM_EthernetPort", "CIM_NetworkPort");
  const FakeBroker::Call call(broker);
  const CmpiObjectPath path("n", "ZEB_EthernetPort", "", {{"K", "k"}});
  EXPECT_TRUE(broker.handle().classPathIsA(path, "CIM_NetworkPort"));
  EXPECT_TRUE(broker.handle().classPathIsA(path, "cim_ETHERNETport"));
  EXPECT_FALSE(broker.handle().classPathIsA(path, "CIM_Other"));
  EXPECT_EQ(broker.ancestryQuestions(), 3);
}

TEST(BrokerTest, aClassIsItselfWithoutAsking) {
  FakeBroker broker;
  EXPECT_TRUE(broker.handle().classPathIsA({"n", "C"}, "c"));
  EXPECT_EQ(broker.ancestryQuestions(), 0);
}

TEST(BrokerTest, withoutTheSlotNothingElseDescends) {
  FakeBroker broker;
  broker.eft.classPathIsA = nullptr;
  EXPECT_FALSE(broker.handle().classPathIsA({"n", "C"}, "D"));
  EXPECT_FALSE(CmpiBroker().classPathIsA({"n", "C"}, "D"));
}

CMPIContext* prepare(FakeBroker& broker) {
  FakeBroker::Call factory(broker);
  return broker.handle(&factory.context()).prepareAttachThread();
}

/// Works three times on a thread of its own, each time with an object of the object manager.
void workThrice(FakeBroker& broker, std::vector<std::size_t>& liveAfterwards) {
  CMPIContext* prepared = prepare(broker);
  std::thread([&] {
    AttachedThread thread(broker.handle(), prepared);
    for (int i = 0; i < 3; ++i) {
      EXPECT_TRUE(thread.run([&](const CmpiContext& context) {
        EXPECT_NE(context.get(), nullptr);
        toBroker(broker.get(), std::string("made while attached"));
      }));
      liveAfterwards.push_back(broker.liveObjects());
    }
  }).join();
}

TEST(BrokerTest, withAMemoryTableAThreadIsAttachedOnceAndEveryPieceOfWorkIsMarked) {
  FakeBroker broker(ZEB::test::kEmbeddedHabits);
  std::vector<std::size_t> live;
  workThrice(broker, live);
  EXPECT_THAT(live, testing::Each(0U));
  const auto counts = broker.counts();
  EXPECT_EQ(counts.prepared, 1);
  EXPECT_EQ(counts.attached, 1);
  EXPECT_EQ(counts.detached, 1);
  EXPECT_EQ(counts.marks, 3);
  EXPECT_EQ(counts.releases, 3);
  EXPECT_TRUE(broker.violations().empty());
}

TEST(BrokerTest, withoutOneEveryPieceOfWorkHasAnAttachmentOfItsOwn) {
  FakeBroker broker(ZEB::test::kAgentHabits);
  std::vector<std::size_t> live;
  workThrice(broker, live);
  EXPECT_THAT(live, testing::Each(0U));
  const auto counts = broker.counts();
  EXPECT_EQ(counts.prepared, 4);
  EXPECT_EQ(counts.attached, 4) << "the last one gives the last context back";
  EXPECT_EQ(counts.detached, 4);
  EXPECT_EQ(counts.marks, 0);
  EXPECT_TRUE(broker.violations().empty());
}

TEST(BrokerTest, aMemoryTableThatReleasesNothingIsNone) {
  FakeBroker broker(ZEB::test::kEmbeddedHabits);
  broker.mft.release = nullptr;
  std::vector<std::size_t> live;
  workThrice(broker, live);
  EXPECT_EQ(broker.counts().marks, 0);
  EXPECT_EQ(broker.counts().attached, 4);
}

TEST(BrokerTest, withoutAnotherContextTheThreadStaysAttached) {
  FakeBroker broker(ZEB::test::kAgentHabits);
  CMPIContext* prepared = prepare(broker);
  broker.bft.prepareAttachThread = [](const CMPIBroker*, const CMPIContext*) -> CMPIContext* {
    return nullptr;
  };
  int worked = 0;
  std::thread([&] {
    AttachedThread thread(broker.handle(), prepared);
    for (int i = 0; i < 2; ++i) thread.run([&](const CmpiContext&) { ++worked; });
  }).join();
  EXPECT_EQ(worked, 2);
  EXPECT_EQ(broker.counts().attached, 1);
  EXPECT_EQ(broker.counts().detached, 1);
}

TEST(BrokerTest, aRefusedAttachmentRunsNothingIsNotDetachedAndIsTriedAgain) {
  FakeBroker broker(ZEB::test::kEmbeddedHabits);
  const auto attachThread = broker.bft.attachThread;
  broker.bft.attachThread = [](const CMPIBroker*, const CMPIContext*) {
    return CMPIStatus{CMPI_RC_ERR_FAILED, nullptr};
  };
  AttachedThread thread(broker.handle(), prepare(broker));
  int worked = 0;
  EXPECT_FALSE(thread.run([&](const CmpiContext&) { ++worked; }));
  EXPECT_EQ(worked, 0);
  EXPECT_EQ(broker.counts().detached, 0);
  broker.bft.attachThread = attachThread;
  EXPECT_TRUE(thread.run([&](const CmpiContext&) { ++worked; }));
  EXPECT_EQ(worked, 1);
}

TEST(BrokerTest, anObjectManagerWithoutThreadsPreparesNothing) {
  FakeBroker broker;
  broker.bft.prepareAttachThread = nullptr;
  EXPECT_EQ(prepare(broker), nullptr);
  EXPECT_EQ(broker.handle().prepareAttachThread(), nullptr);
  EXPECT_FALSE(AttachedThread(broker.handle(), nullptr).run([](const CmpiContext&) { FAIL(); }));
}

CMPIrc deliver(FakeBroker& broker) {
  const FakeBroker::Call call(broker);
  try {
    CmpiMBService(broker.handle(), 0)
        .deliverIndication(CmpiContext(), "n", CmpiInstance(CmpiObjectPath("n", "C")));
    return CMPI_RC_OK;
  } catch (const CmpiStatus& status) {
    return status.rc();
  }
}

TEST(BrokerTest, indicationsAreHandedOver) {
  FakeBroker broker;
  EXPECT_EQ(deliver(broker), CMPI_RC_OK);
  ASSERT_EQ(broker.deliveries().size(), 1u);
  EXPECT_EQ(broker.deliveries()[0].nameSpace, "n");
  broker.answerDeliveries(CMPI_RC_ERR_ACCESS_DENIED);
  EXPECT_EQ(deliver(broker), CMPI_RC_ERR_ACCESS_DENIED);
  broker.bft.deliverIndication = nullptr;
  EXPECT_EQ(deliver(broker), CMPI_RC_ERR_NOT_SUPPORTED);
}

TEST(BrokerTest, anAgentTakesIndicationsWhileTheyAreEnabledAlone) {
  FakeBroker broker(ZEB::test::kAgentHabits);
  EXPECT_EQ(deliver(broker), CMPI_RC_ERR_FAILED);
  static CMPIrc during;
  during = CMPI_RC_OK;
  CMPIIndicationMIFT table{};
  table.enableIndications = [](CMPIIndicationMI* mi, const CMPIContext*) {
    during = deliver(*static_cast<FakeBroker*>(const_cast<void*>(mi->hdl)));
    return CMPIStatus{CMPI_RC_OK, nullptr};
  };
  table.disableIndications = table.enableIndications;
  CMPIIndicationMI mi{&broker, &table};
  FakeBroker::Call call(broker);
  call.enableIndications(&mi);
  EXPECT_EQ(during, CMPI_RC_OK);
  EXPECT_EQ(deliver(broker), CMPI_RC_OK);
  call.disableIndications(&mi);
  EXPECT_EQ(during, CMPI_RC_OK);
  EXPECT_EQ(deliver(broker), CMPI_RC_ERR_FAILED);
  EXPECT_EQ(broker.deliveries().size(), 3u);
}

/// The answers of a method that a call up reaches, and that delivers an indication itself.
std::vector<CMPIrc> deliverInCallUp(FakeBroker& broker) {
  static std::vector<CMPIrc> answers;
  answers.clear();
  CMPIMethodMIFT table{};
  table.invokeMethod = [](CMPIMethodMI* mi, const CMPIContext*, const CMPIResult*, const CMPIObjectPath*,
                          const char*, const CMPIArgs*, CMPIArgs*) {
    answers.push_back(deliver(*static_cast<FakeBroker*>(const_cast<void*>(mi->hdl))));
    return CMPIStatus{CMPI_RC_OK, nullptr};
  };
  CMPIMethodMI mi{&broker, &table};
  broker.serve(&mi);
  FakeBroker::Call call(broker);
  CMPIStatus status{CMPI_RC_OK, nullptr};
  broker.bft.invokeMethod(broker.get(), &call.context(), call.path({"n", "C"}), "m", call.args(), call.args(),
                          &status);
  answers.push_back(status.rc);
  answers.push_back(deliver(broker));
  return answers;
}

TEST(BrokerTest, whereCallsUpAreOneLevelDeepASecondOneIsAViolation) {
  using Answers = std::vector<CMPIrc>;
  FakeBroker several(ZEB::test::kGroupHabits);
  EXPECT_EQ(deliverInCallUp(several), (Answers{CMPI_RC_OK, CMPI_RC_OK, CMPI_RC_OK}));
  EXPECT_TRUE(several.violations().empty());
  FakeBroker one({.callsUpOneLevel = true});
  EXPECT_EQ(deliverInCallUp(one), (Answers{CMPI_RC_ERR_FAILED, CMPI_RC_OK, CMPI_RC_OK}));
  EXPECT_EQ(one.violations().size(), 1u);
}

}  // namespace
}  // namespace CmpiCpp
