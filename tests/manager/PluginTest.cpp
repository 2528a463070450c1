// The plug-in in the test's own process: loading, typed operations, indications, unloading.
#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <thread>

#include "broker/SelectQuery.h"
#include "plugin/PluginLibrary.h"
#include "posix/TemporaryFolder.h"
#include "support/Content.h"
#include "values/CallMemory.h"
#include "values/ObjectPathText.h"
#include "values/Values.h"

namespace ZebManager {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::Not;
using ZEB::test::contentOf;

bool isMapped(const std::string& file) {
  return contentOf("/proc/self/maps").find(std::filesystem::path(file).filename().string()) !=
         std::string::npos;
}

class Plugin : public testing::Test {
 protected:
  ObjectPath& path(const std::string& text) { return *parsePath(arena, repository, kNameSpace, text); }
  Reply invoke(const char* method, const char* argument = nullptr, const CMPIData& value = {}) {
    Args& in = *makeArgs(arena);
    if (argument) in.ft->addArg(&in, argument, &value.value, value.type);
    return broker.provider().invokeMethod(*makePath(arena, kNameSpace, "T_Thing"), method, in,
                                          *makeArgs(arena));
  }
  CMPIData text(const char* value) { return dataOf(makeString(arena, value)); }

  ClassRepository repository = ClassRepository::fromFile(ZEB_TEST_SCHEMA);
  Broker broker{repository};
  std::unique_ptr<PluginLibrary> library = std::make_unique<PluginLibrary>(broker, ZEB_TEST_PLUGIN);
  Arena arena;
};

TEST_F(Plugin, LeavesTheProcessWhenItIsUnloaded) {
  EXPECT_TRUE(isMapped(ZEB_TEST_PLUGIN));
  library.reset();
  EXPECT_FALSE(isMapped(ZEB_TEST_PLUGIN));
}

TEST_F(Plugin, CanBeLoadedAgain) {
  for (int round = 0; round < 100; ++round) {
    library.reset();
    library = std::make_unique<PluginLibrary>(broker, ZEB_TEST_PLUGIN);
    EXPECT_EQ(broker.provider().enumerateInstances("T_Base").items().size(), 2U);
  }
}

TEST_F(Plugin, BeginsAnewWhileItStaysLoaded) {
  library->restart();
  EXPECT_EQ(broker.provider().enumerateInstances("T_Base").items().size(), 2U);
  setenv("ZEB_TEST_REFUSE", "no", 1);
  EXPECT_THROW(library->restart(), ManagerError);
  unsetenv("ZEB_TEST_REFUSE");
  library.reset();
  EXPECT_FALSE(isMapped(ZEB_TEST_PLUGIN));
}

TEST_F(Plugin, ARefusalLeavesNothingBehind) {
  library.reset();
  setenv("ZEB_TEST_REFUSE", "no", 1);
  EXPECT_THROW(PluginLibrary(broker, ZEB_TEST_PLUGIN), ManagerError);
  unsetenv("ZEB_TEST_REFUSE");
  EXPECT_FALSE(isMapped(ZEB_TEST_PLUGIN));
}

TEST_F(Plugin, WithoutItEveryOperationIsNotSupported) {
  library.reset();
  EXPECT_EQ(broker.provider().enumerateInstances("T_Thing").code, CMPI_RC_ERR_NOT_SUPPORTED);
  EXPECT_EQ(broker.provider().associatorNames(path("T_Thing.Name=\"a\""), {}).code,
            CMPI_RC_ERR_NOT_SUPPORTED);
  EXPECT_EQ(invoke("CountUp").code, CMPI_RC_ERR_NOT_SUPPORTED);
}

TEST_F(Plugin, InstancesAreHandedOverUntilItRefuses) {
  std::vector<std::string> handed;
  const auto take = [&](const InstanceBody& body) { handed.emplace_back(body.path->className); };
  EXPECT_EQ(broker.provider().forEachInstance("T_Base", nullptr, take).code, CMPI_RC_OK);
  EXPECT_EQ(handed, (std::vector<std::string>{"T_Thing", "T_Special"}));
  handed.clear();
  const Reply refused = broker.provider().forEachInstance("T_Numbered", nullptr, take);
  EXPECT_EQ(refused.code, CMPI_RC_ERR_FAILED);
  EXPECT_EQ(refused.message, "not\ntoday");
  EXPECT_TRUE(handed.empty());
}

TEST_F(Plugin, AnUnknownClassIsNotAsked) {
  EXPECT_EQ(broker.provider().enumerateInstances("T_None").code, CMPI_RC_ERR_INVALID_CLASS);
  EXPECT_EQ(broker.provider().enumerateInstanceNames("T_None").code, CMPI_RC_ERR_INVALID_CLASS);
}

TEST_F(Plugin, TheMessageOfAFailureOutlivesTheCall) {
  const Reply reply = broker.provider().enumerateInstances("T_Numbered");
  EXPECT_EQ(reply.code, CMPI_RC_ERR_FAILED);
  EXPECT_EQ(reply.message, "not\ntoday");
}

TEST_F(Plugin, WhatItRefusesKeepsItsCode) {
  const ObjectPath& target = path("T_Thing.Name=\"a\"");
  EXPECT_EQ(broker.provider().getInstance(target).code, CMPI_RC_ERR_NOT_FOUND);
  EXPECT_EQ(broker.provider().deleteInstance(target).code, CMPI_RC_ERR_NOT_SUPPORTED);
  const Instance& instance = *makeInstance(arena, target, *repository.find("T_Thing"));
  EXPECT_EQ(broker.provider().createInstance(target, instance).code, CMPI_RC_ERR_NOT_SUPPORTED);
}

TEST_F(Plugin, AnUpCallAnswersInsideACall) {
  const Reply reply = invoke("CountUp");
  ASSERT_EQ(reply.items().size(), 1U);
  EXPECT_EQ(reply.items()[0].value.uint32, 2U);
}

TEST_F(Plugin, AnIndicationIsQueuedAndOutlivesItsCall) {
  broker.indications().open();
  const Reply reply = invoke("Alert", "Text", text("cable out"));
  EXPECT_EQ(reply.items()[0].value.uint32, 0U);
  const auto delivered = broker.indications().next(0ms);
  ASSERT_NE(delivered, nullptr);
  EXPECT_EQ(textOf(delivered->instance->body().properties.find("Text")->data.value.string), "cable out");
  EXPECT_EQ(broker.indications().next(0ms), nullptr);
}

TEST_F(Plugin, AnAttachedThreadMayDeliver) {
  broker.indications().open();
  EXPECT_EQ(invoke("AlertFromThread", "Text", text("from afar")).items()[0].value.uint32, 0U);
  const auto delivered = broker.indications().next(0ms);
  ASSERT_NE(delivered, nullptr);
  EXPECT_EQ(textOf(delivered->instance->body().properties.find("Text")->data.value.string), "from afar");
}

TEST_F(Plugin, WithoutAListenerADeliveryIsAcceptedAndDropped) {
  EXPECT_EQ(invoke("Alert", "Text", text("unheard")).items()[0].value.uint32, 0U);
  broker.indications().open();
  EXPECT_EQ(broker.indications().next(0ms), nullptr);
}

TEST_F(Plugin, ListeningActivatesAndEnables) {
  const ZEB::TemporaryFolder folder;
  const std::string file = (folder / "listening").string();
  setenv("ZEB_TEST_TRACE", file.c_str(), 1);
  const SelectExp& filter = *makeSelectExp(arena, repository, "SELECT * FROM T_Alert");
  EXPECT_EQ(broker.provider().startIndications(filter, "T_Alert").code, CMPI_RC_OK);
  EXPECT_EQ(broker.provider().stopIndications(filter, "T_Alert").code, CMPI_RC_OK);
  unsetenv("ZEB_TEST_TRACE");
  EXPECT_EQ(
      contentOf(file),
      "authorize T_Alert SELECT * FROM T_Alert\nactivate T_Alert SELECT * FROM T_Alert\nenable\ndisable\n"
      "deactivate T_Alert SELECT * FROM T_Alert\n");
  std::filesystem::remove(file);
}

TEST_F(Plugin, CallsOnManyThreadsDoNotDisturbEachOther) {
  broker.indications().open();
  std::vector<std::thread> threads;
  std::atomic<int> right = 0;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([this, &right] {
      Arena own;
      for (int round = 0; round < 200; ++round) {
        const Reply reply = broker.provider().enumerateInstances("T_Base");
        right += reply.items().size() == 2 && reply.items()[1].type == CMPI_instance;
        Args& in = *makeArgs(own);
        const CMPIData value = dataOf(makeString(own, "x"));
        in.ft->addArg(&in, "Text", &value.value, value.type);
        const char* const method = round % 2 ? "Alert" : "AlertFromThread";
        const Reply alert =
            broker.provider().invokeMethod(*makePath(own, kNameSpace, "T_Thing"), method, in, *makeArgs(own));
        right += alert.items().size() == 1 && alert.items()[0].value.uint32 == 0;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(right, 4 * 200 * 2);
  int delivered = 0;
  while (broker.indications().next(0ms)) ++delivered;
  EXPECT_EQ(delivered, 4 * 200);
}

TEST(PluginPath, TheOptionGoesFirstThenTheEnvironment) {
  setenv("ZEB_PLUGIN", "/from/environment.so", 1);
  EXPECT_EQ(findPlugin("/from/option.so", "/nowhere"), "/from/option.so");
  EXPECT_EQ(findPlugin("", "/nowhere"), "/from/environment.so");
  unsetenv("ZEB_PLUGIN");
}

TEST(PluginPath, BesideTheExecutableAsInABuildTree) {
  const ZEB::TemporaryFolder root;
  std::filesystem::create_directories(root / "host");
  std::filesystem::create_directories(root / "provider");
  std::ofstream(root / "provider/libZEBEthernetPortProvider.so") << "x";
  EXPECT_EQ(findPlugin("", (root / "host").string()),
            (root / "provider/libZEBEthernetPortProvider.so").string());
}

TEST(PluginPath, NowhereIsAnErrorThatNamesTheFile) {
  try {
    findPlugin("", "/nowhere/bin");
    FAIL() << "found one";
  } catch (const ManagerError& error) {
    EXPECT_THAT(error.what(), HasSubstr("libZEBEthernetPortProvider.so"));
    EXPECT_THAT(error.what(), Not(HasSubstr("\n")));
  }
}

}  // namespace
}  // namespace ZebManager
