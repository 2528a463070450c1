// The broker's own tables: versions, ancestry, types of objects, threads, indications, services.
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <thread>

#include "BrokerFixture.h"
#include "broker/SelectQuery.h"

namespace ZebManager {
namespace {

using namespace std::chrono_literals;

using Tables = BrokerFixture;
using Ancestry = BrokerFixture;
using Types = BrokerFixture;
using Threads = BrokerFixture;
using Indications = BrokerFixture;
using Services = BrokerFixture;
using UpCalls = BrokerFixture;

/// A table is a version (for the first of them two numbers) and then pointers to functions.
template <class Table>
bool isComplete(const Table& table, std::size_t firstSlot) {
  const auto* const slots = reinterpret_cast<void* const*>(reinterpret_cast<const char*>(&table) + firstSlot);
  for (std::size_t i = 0; i < (sizeof(Table) - firstSlot) / sizeof(void*); ++i) {
    if (!slots[i]) return false;
  }
  return true;
}

TEST_F(Tables, HaveTheirVersionsAndEverySlot) {
  EXPECT_EQ(face->bft->brokerVersion, CMPIVersion210);
  EXPECT_STREQ(face->bft->brokerName, "zebcim");
  EXPECT_EQ(face->bft->brokerCapabilities, 7U | 9U | 129U | 256U | 16384U);
  EXPECT_EQ(face->eft->ftVersion, CMPIVersion210);
  EXPECT_EQ(face->xft->ftVersion, CMPIVersion210);
  EXPECT_EQ(face->mft->ftVersion, CMPIVersion210);
  EXPECT_TRUE(isComplete(*face->bft, 8));
  EXPECT_TRUE(isComplete(*face->eft, 8));
  EXPECT_TRUE(isComplete(*face->xft, 8));
  EXPECT_TRUE(isComplete(*face->mft, 8));
  EXPECT_TRUE(isComplete(kStringFT, 8));
  EXPECT_TRUE(isComplete(kDateTimeFT, 8));
  EXPECT_TRUE(isComplete(kArrayFT, 8));
  EXPECT_TRUE(isComplete(kObjectPathFT, 8));
  EXPECT_TRUE(isComplete(kInstanceFT, 8));
  EXPECT_TRUE(isComplete(kArgsFT, 8));
  EXPECT_TRUE(isComplete(kContextFT, 8));
  EXPECT_TRUE(isComplete(kResultFT, 8));
  EXPECT_TRUE(isComplete(kEnumerationFT, 8));
  EXPECT_TRUE(isComplete(kSelectExpFT, 8));
}

TEST_F(Tables, WhatIsNotOfferedSaysSo) {
  CMPIMsgFileHandle file = &file;
  const auto notSupported = [this] {
    return std::exchange(status, {CMPI_RC_OK, nullptr}).rc == CMPI_RC_ERR_NOT_SUPPORTED;
  };
  EXPECT_EQ(
      face->eft->newCMPIError(face, "", "", "", ErrorSevUnknown, ErrorProbCauseUnknown, CMPI_RC_OK, &status),
      nullptr);
  EXPECT_TRUE(notSupported());
  EXPECT_EQ(face->eft->openMessageFile(face, "x", &file).rc, CMPI_RC_ERR_NOT_SUPPORTED);
  EXPECT_EQ(file, nullptr);
  EXPECT_EQ(face->eft->closeMessageFile(face, nullptr).rc, CMPI_RC_ERR_NOT_SUPPORTED);
  EXPECT_EQ(face->eft->newPropertyList(face, nullptr, &status), nullptr);
  EXPECT_TRUE(notSupported());
  EXPECT_EQ(face->eft->newStringCP(face, "x", "latin1", &status), nullptr);
  EXPECT_TRUE(notSupported());
  EXPECT_EQ(face->eft->newEnumerationFilter(face, "WQL", "x", &status), nullptr);
  EXPECT_TRUE(notSupported());
  EXPECT_EQ(face->bft->execQuery(face, nullptr, newPath(), "x", "WQL", &status), nullptr);
  EXPECT_TRUE(notSupported());
  EXPECT_EQ(face->bft->setProperty(face, nullptr, newPath(), "x", nullptr, CMPI_string).rc,
            CMPI_RC_ERR_NOT_SUPPORTED);
  face->bft->getProperty(face, nullptr, newPath(), "x", &status);
  EXPECT_TRUE(notSupported());
  EXPECT_EQ(face->bft->enumerateInstancesFiltered(face, nullptr, newPath(), nullptr, "", "", &status),
            nullptr);
  EXPECT_TRUE(notSupported());
  EXPECT_EQ(
      face->bft->associatorsFiltered(face, nullptr, newPath(), "", "", "", "", nullptr, "", "", &status),
      nullptr);
  EXPECT_TRUE(notSupported());
  EXPECT_EQ(face->bft->referencesFiltered(face, nullptr, newPath(), "", "", nullptr, "", "", &status),
            nullptr);
  EXPECT_TRUE(notSupported());
}

TEST_F(Tables, MessagesAreTheirDefaults) {
  EXPECT_EQ(text(face->eft->getMessage(face, "id", "default", &status, 0)), "default");
  EXPECT_EQ(text(face->eft->getMessage2(face, "id", nullptr, "default", &status, 0)), "default");
  EXPECT_EQ(face->eft->logMessage(face, CMPI_SEV_INFO, "zebcim test", "a message", nullptr).rc, CMPI_RC_OK);
  EXPECT_EQ(face->eft->trace(face, CMPI_LEV_VERBOSE, "zebcim test", nullptr, newString("a trace")).rc,
            CMPI_RC_OK);
}

TEST_F(Ancestry, ComesFromTheSchema) {
  const auto isA = [this](const char* className, const char* ancestor) {
    return face->eft->classPathIsA(face, newPath(className), ancestor, &status) != 0;
  };
  EXPECT_TRUE(isA("A_SubPort", "A_Base"));
  EXPECT_TRUE(isA("a_subport", "A_PORT"));
  EXPECT_TRUE(isA("A_Port", "A_Port"));
  EXPECT_FALSE(isA("A_Port", "A_SubPort"));
  EXPECT_FALSE(isA("A_Other", "A_Base"));
  EXPECT_FALSE(isA("A_None", "A_Base"));
  EXPECT_EQ(status.rc, CMPI_RC_OK);
  EXPECT_FALSE(face->eft->classPathIsA(face, nullptr, "A_Base", &status));
  EXPECT_EQ(status.rc, CMPI_RC_ERR_INVALID_PARAMETER);
}

TEST_F(Types, ObjectsSayWhatTheyAre) {
  CMPIObjectPath* path = newPath("A_Port", "one");
  EXPECT_EQ(text(face->eft->getType(face, path, &status)), "CMPIObjectPath");
  EXPECT_TRUE(face->eft->isOfType(face, path, "CMPIObjectPath", &status));
  EXPECT_FALSE(face->eft->isOfType(face, path, "CMPIString", &status));
  EXPECT_EQ(text(face->eft->toString(face, path, &status)), "root/jxv:A_Port.Name=\"one\"");
  EXPECT_EQ(text(face->eft->toString(face, newString("x"), &status)), "x");
  EXPECT_EQ(text(face->eft->toString(face, newInstance(), &status)), "root/jxv:A_Port.Name=\"one\"");
  EXPECT_EQ(text(face->eft->toString(face, face->eft->newDateTimeFromBinary(face, 0, 1, nullptr), &status)),
            "00000000000000.000000:000");
  EXPECT_EQ(text(face->eft->toString(face, face->eft->newArgs(face, nullptr), &status)), "CMPIArgs");
  EXPECT_EQ(face->eft->toString(face, nullptr, &status), nullptr);
  EXPECT_EQ(status.rc, CMPI_RC_ERR_INVALID_HANDLE);
  EXPECT_EQ(face->eft->getType(face, face, &status), nullptr);
}

TEST_F(Threads, APreparedContextServesForOneAttachment) {
  CMPIContext* prepared = face->bft->prepareAttachThread(face, makeCallContext(arena, "root/jxv"));
  ASSERT_NE(prepared, nullptr);
  std::thread([&] {
    EXPECT_EQ(face->eft->newString(face, "x", nullptr), nullptr);
    EXPECT_EQ(face->bft->attachThread(face, prepared).rc, CMPI_RC_OK);
    EXPECT_EQ(face->bft->attachThread(face, prepared).rc, CMPI_RC_ERR_FAILED);
    EXPECT_EQ(text(face->eft->newString(face, "attached", nullptr)), "attached");
    EXPECT_EQ(text(prepared->ft->getEntry(prepared, CMPIInitNameSpace, nullptr)), "root/jxv");
    EXPECT_EQ(face->bft->detachThread(face, prepared).rc, CMPI_RC_OK);
    EXPECT_EQ(face->eft->newString(face, "x", nullptr), nullptr);
    EXPECT_EQ(face->bft->attachThread(face, prepared).rc, CMPI_RC_ERR_INVALID_HANDLE);
  }).join();
}

TEST_F(Threads, AThreadInsideACallCannotAttach) {
  CMPIContext* prepared = face->bft->prepareAttachThread(face, makeCallContext(arena, "root/jxv"));
  EXPECT_EQ(face->bft->attachThread(face, prepared).rc, CMPI_RC_ERR_FAILED);
  EXPECT_EQ(face->bft->detachThread(face, prepared).rc, CMPI_RC_OK);
}

TEST_F(Threads, OnlyTheAttachedThreadCanDetach) {
  CMPIContext* prepared = face->bft->prepareAttachThread(face, makeCallContext(arena, "root/jxv"));
  std::atomic<int> step = 0;
  std::thread worker([&] {
    EXPECT_EQ(face->bft->attachThread(face, prepared).rc, CMPI_RC_OK);
    step = 1;
    while (step < 2) std::this_thread::yield();
    EXPECT_EQ(face->bft->detachThread(face, prepared).rc, CMPI_RC_OK);
  });
  while (step < 1) std::this_thread::yield();
  EXPECT_EQ(face->bft->detachThread(face, prepared).rc, CMPI_RC_ERR_FAILED);
  step = 2;
  worker.join();
}

TEST_F(Threads, WhatIsNotPreparedIsRefused) {
  const CMPIContext* context = makeCallContext(arena, "root/jxv");
  EXPECT_EQ(face->bft->prepareAttachThread(face, nullptr), nullptr);
  EXPECT_EQ(face->bft->attachThread(face, context).rc, CMPI_RC_ERR_INVALID_HANDLE);
  EXPECT_EQ(face->bft->detachThread(face, context).rc, CMPI_RC_ERR_INVALID_HANDLE);
}

TEST_F(Indications, AreCopiedIntoTheQueueInTheirOrder) {
  broker.indications().open();
  for (const char* message : {"first", "second"}) {
    Arena own;
    const ArenaScope inner(own);
    CMPIInstance* alert = face->eft->newInstance(face, newPath("A_SubAlert"), &status);
    alert->ft->setProperty(alert, "Text", reinterpret_cast<const CMPIValue*>(message), CMPI_chars);
    EXPECT_EQ(face->bft->deliverIndication(face, nullptr, "ROOT/jxv", alert).rc, CMPI_RC_OK);
  }
  for (const char* message : {"first", "second"}) {
    const auto delivered = broker.indications().next(0ms);
    ASSERT_NE(delivered, nullptr);
    EXPECT_EQ(textOf(delivered->instance->body().properties.find("Text")->data.value.string), message);
  }
  EXPECT_EQ(broker.indications().next(0ms), nullptr);
}

TEST_F(Indications, WhatIsNoneIsRefused) {
  broker.indications().open();
  const CMPIInstance* alert = face->eft->newInstance(face, newPath("A_Alert"), &status);
  EXPECT_EQ(face->bft->deliverIndication(face, nullptr, "root/other", alert).rc,
            CMPI_RC_ERR_INVALID_NAMESPACE);
  EXPECT_EQ(face->bft->deliverIndication(face, nullptr, nullptr, alert).rc, CMPI_RC_ERR_INVALID_NAMESPACE);
  EXPECT_EQ(face->bft->deliverIndication(face, nullptr, "root/jxv", newInstance()).rc,
            CMPI_RC_ERR_INVALID_PARAMETER);
  EXPECT_EQ(face->bft->deliverIndication(face, nullptr, "root/jxv", nullptr).rc, CMPI_RC_ERR_INVALID_HANDLE);
  EXPECT_EQ(broker.indications().next(0ms), nullptr);
}

TEST_F(Indications, AWaitingReaderIsWoken) {
  broker.indications().open();
  std::thread waker([this] { broker.indications().wake(); });
  EXPECT_EQ(broker.indications().next(1h), nullptr);
  waker.join();
  broker.indications().close();
  EXPECT_EQ(broker.indications().next(0ms), nullptr);
}

TEST_F(Indications, WhatWaitsGoesWithTheEndOfListening) {
  broker.indications().open();
  const CMPIInstance* alert = face->eft->newInstance(face, newPath("A_Alert"), &status);
  EXPECT_EQ(face->bft->deliverIndication(face, nullptr, "root/jxv", alert).rc, CMPI_RC_OK);
  broker.indications().close();
  broker.indications().open();
  EXPECT_EQ(broker.indications().next(0ms), nullptr);
}

TEST_F(Indications, AFullQueueTakesNoMore) {
  broker.indications().open();
  const CMPIInstance* alert = face->eft->newInstance(face, newPath("A_Alert"), &status);
  CMPIrc code = CMPI_RC_OK;
  int taken = -1;
  for (; code == CMPI_RC_OK && taken < 200'000; ++taken) {
    code = face->bft->deliverIndication(face, nullptr, "root/jxv", alert).rc;
  }
  EXPECT_EQ(code, CMPI_RC_ERR_SERVER_LIMITS_EXCEEDED);
  EXPECT_EQ(taken, 100'000);
}

TEST_F(UpCalls, WithoutAProviderAreNotSupported) {
  const CMPIContext* context = makeCallContext(arena, "root/jxv");
  EXPECT_EQ(face->bft->enumerateInstances(face, context, newPath(), nullptr, &status), nullptr);
  EXPECT_EQ(status.rc, CMPI_RC_ERR_NOT_SUPPORTED);
  EXPECT_EQ(face->bft->enumerateInstanceNames(face, context, newPath(), &status), nullptr);
  EXPECT_EQ(face->bft->getInstance(face, context, newPath(), nullptr, &status), nullptr);
  EXPECT_EQ(status.rc, CMPI_RC_ERR_NOT_SUPPORTED);
  EXPECT_EQ(face->bft->createInstance(face, context, newPath(), newInstance(), &status), nullptr);
  EXPECT_EQ(face->bft->createInstance(face, context, newPath(), nullptr, &status), nullptr);
  EXPECT_EQ(status.rc, CMPI_RC_ERR_INVALID_HANDLE);
  EXPECT_EQ(face->bft->modifyInstance(face, context, newPath(), newInstance(), nullptr).rc,
            CMPI_RC_ERR_NOT_SUPPORTED);
  EXPECT_EQ(face->bft->deleteInstance(face, context, newPath()).rc, CMPI_RC_ERR_NOT_SUPPORTED);
  EXPECT_EQ(
      face->bft->associators(face, context, newPath(), nullptr, nullptr, nullptr, nullptr, nullptr, &status),
      nullptr);
  EXPECT_EQ(face->bft->associatorNames(face, context, newPath(), nullptr, nullptr, nullptr, nullptr, &status),
            nullptr);
  EXPECT_EQ(face->bft->references(face, context, newPath(), nullptr, nullptr, nullptr, &status), nullptr);
  EXPECT_EQ(face->bft->referenceNames(face, context, newPath(), nullptr, nullptr, &status), nullptr);
  EXPECT_EQ(status.rc, CMPI_RC_ERR_NOT_SUPPORTED);
  face->bft->invokeMethod(face, context, newPath(), "M", nullptr, nullptr, &status);
  EXPECT_EQ(status.rc, CMPI_RC_ERR_NOT_SUPPORTED);
  face->bft->invokeMethod(face, context, newPath(), nullptr, nullptr, nullptr, &status);
  EXPECT_EQ(status.rc, CMPI_RC_ERR_INVALID_PARAMETER);
  EXPECT_EQ(face->bft->getInstance(face, context, nullptr, nullptr, &status), nullptr);
  EXPECT_EQ(status.rc, CMPI_RC_ERR_INVALID_HANDLE);
}

TEST_F(Services, ThreadsRunAndAreJoined) {
  void* const thread = face->xft->newThread([](void* argument) -> void* { return argument; }, this, 0);
  void* value = nullptr;
  EXPECT_EQ(face->xft->joinThread(thread, &value), 0);
  EXPECT_EQ(value, this);
}

TEST_F(Services, MutexesExcludeAndConditionsWake) {
  struct Shared {
    const CMPIBrokerExtFT* xft;
    void* mutex;
    void* condition;
    bool done;
  } shared{face->xft, face->xft->newMutex(0), face->xft->newCondition(0), false};
  shared.xft->lockMutex(shared.mutex);
  void* const thread = face->xft->newThread(
      [](void* argument) -> void* {
        auto& own = *static_cast<Shared*>(argument);
        own.xft->lockMutex2(own.mutex);
        own.done = true;
        own.xft->signalCondition(own.condition);
        own.xft->unlockMutex2(own.mutex);
        return nullptr;
      },
      &shared, 0);
  while (!shared.done) EXPECT_EQ(shared.xft->condWait(shared.condition, shared.mutex), 0);
  timespec past{0, 0};
  EXPECT_EQ(shared.xft->timedCondWait(shared.condition, shared.mutex, &past), ETIMEDOUT);
  shared.xft->unlockMutex(shared.mutex);
  EXPECT_EQ(shared.xft->joinThread(thread, nullptr), 0);
  EXPECT_EQ(shared.xft->destroyCondition2(shared.condition), 0);
  shared.xft->destroyCondition(shared.xft->newCondition(0));
  EXPECT_EQ(shared.xft->destroyMutex2(shared.mutex), 0);
  shared.xft->destroyMutex(shared.xft->newMutex(0));
}

TEST_F(Services, KeysOnceSleepAndFileNames) {
  unsigned key = 0;
  EXPECT_EQ(face->xft->createThreadKey(&key, nullptr), 0);
  EXPECT_EQ(face->xft->setThreadSpecific(key, this), 0);
  EXPECT_EQ(face->xft->getThreadSpecific(key), this);
  EXPECT_EQ(face->xft->destroyThreadKey(key), 0);
  static int calls = 0;
  static int once = 0;
  for (int i = 0; i < 2; ++i) EXPECT_EQ(face->xft->threadOnce(&once, [] { ++calls; }), 0);
  EXPECT_EQ(calls, 1);
  const auto before = std::chrono::steady_clock::now();
  EXPECT_EQ(face->xft->threadSleep(5), 0);
  EXPECT_GE(std::chrono::steady_clock::now() - before, 5ms);
  char* const name = face->xft->resolveFileName("Thing");
  EXPECT_STREQ(name, "libThing.so");
  std::free(name);
}

}  // namespace
}  // namespace ZebManager
