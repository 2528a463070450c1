#include <gtest/gtest.h>

#include <thread>

#include "BrokerValues.h"
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

TEST(BrokerTest, aThreadAttachesItselfForItsLife) {
  FakeBroker broker;
  CMPIContext* prepared = nullptr;
  {
    FakeBroker::Call factory(broker);
    prepared = broker.handle(&factory.context()).prepareAttachThread();
  }
  std::thread([&] {
    const ThreadAttachment attachment(broker.handle(), prepared);
    EXPECT_TRUE(attachment.attached());
    EXPECT_EQ(broker.counts().attached, 1);
    toBroker(broker.get(), std::string("made while attached"));
    EXPECT_EQ(broker.counts().detached, 0);
  }).join();
  EXPECT_EQ(broker.counts().detached, 1);
  EXPECT_TRUE(broker.violations().empty());
}

TEST(BrokerTest, aRefusedAttachmentIsNotDetached) {
  FakeBroker broker;
  broker.bft.attachThread = [](const CMPIBroker*, const CMPIContext*) {
    return CMPIStatus{CMPI_RC_ERR_FAILED, nullptr};
  };
  FakeBroker::Call factory(broker);
  {
    const ThreadAttachment attachment(broker.handle(),
                                      broker.handle(&factory.context()).prepareAttachThread());
    EXPECT_FALSE(attachment.attached());
  }
  EXPECT_EQ(broker.counts().detached, 0);
}

TEST(BrokerTest, anObjectManagerWithoutThreadsPreparesNothing) {
  FakeBroker broker;
  broker.bft.prepareAttachThread = nullptr;
  FakeBroker::Call factory(broker);
  EXPECT_EQ(broker.handle(&factory.context()).prepareAttachThread(), nullptr);
  EXPECT_EQ(broker.handle().prepareAttachThread(), nullptr);
  EXPECT_FALSE(ThreadAttachment(broker.handle(), nullptr).attached());
}

TEST(BrokerTest, aMarkFreesWhatWasMadeSince) {
  FakeBroker broker;
  const FakeBroker::Call call(broker);
  {
    const BrokerMemoryMark mark(broker.handle());
    toBroker(broker.get(), std::string("temporary"));
    EXPECT_EQ(broker.counts().releases, 0);
  }
  EXPECT_EQ(broker.counts().marks, 1);
  EXPECT_EQ(broker.counts().releases, 1);
}

TEST(BrokerTest, withoutAMemoryTableNothingIsMarked) {
  FakeBroker broker;
  broker.broker.mft = nullptr;
  { const BrokerMemoryMark mark(broker.handle()); }
  broker.broker.mft = &broker.mft;
  broker.mft.release = nullptr;
  { const BrokerMemoryMark mark(broker.handle()); }
  EXPECT_EQ(broker.counts().marks, 0);
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

}  // namespace
}  // namespace CmpiCpp
