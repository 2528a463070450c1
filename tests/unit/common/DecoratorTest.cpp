#include <gmock/gmock.h>

#include <thread>

#include "TestProvider.h"
#include "cmpicpp/CmpiStatus.h"
#include "common/LoggedProvider.h"
#include "common/PerfmonDecorator.h"
#include "support/RecordingLogSink.h"

namespace ZEB {
namespace {

using namespace CmpiCpp;
using test::TestProvider;
using testing::ElementsAre;

class DecoratorTest : public testing::Test {
 protected:
  std::shared_ptr<TestProvider::Seen> seen = std::make_shared<TestProvider::Seen>();
  test::RecordedLogger recorded;
  CmpiObjectPath path{"n", "C"};
  CmpiContext context;
};

/// Every operation once.
void callAll(ProviderDecorator& provider, const CmpiContext& context, const CmpiObjectPath& path) {
  CmpiObjectPathResult paths;
  CmpiInstanceResult instances;
  CmpiMethodResult method;
  CmpiArgs out;
  provider.cleanup(context, true);
  provider.enumInstanceNames(paths, context, path);
  provider.enumInstances(instances, context, path, nullptr);
  provider.getInstance(instances, context, path, nullptr);
  provider.createInstance(paths, context, path, {});
  provider.modifyInstance(context, path, {}, nullptr);
  provider.deleteInstance(context, path);
  provider.execQuery(instances, context, path, "", "");
  provider.associators(instances, context, path, "", "", "", "", nullptr);
  provider.associatorNames(paths, context, path, "", "", "", "");
  provider.references(instances, context, path, "", "", nullptr);
  provider.referenceNames(paths, context, path, "", "");
  provider.invokeMethod(method, context, path, "M", {}, out);
  provider.authorizeFilter(context, "", path, "");
  provider.mustPoll(context, "", path);
  EXPECT_FALSE(provider.activateFilter(context, "", path, true)) << "the inner provider's answer";
  EXPECT_TRUE(provider.deActivateFilter(context, "", path, false));
  provider.enableIndications(context);
  provider.disableIndications(context);
  EXPECT_EQ(method.value(), CmpiData(std::uint32_t{0}));
}

const std::vector<std::string>& operations() {
  static const std::vector<std::string> kOperations = {
      "cleanup",        "enumInstanceNames", "enumInstances",     "getInstance",       "createInstance",
      "modifyInstance", "deleteInstance",    "execQuery",         "associators",       "associatorNames",
      "references",     "referenceNames",    "invokeMethod M",    "authorizeFilter",   "mustPoll",
      "activateFilter", "deActivateFilter",  "enableIndications", "disableIndications"};
  return kOperations;
}

TEST_F(DecoratorTest, everyOperationGoesToTheInnerProvider) {
  {
    LoggedProvider outer(
        CmpiBroker(), recorded.logger,
        [&](const CmpiBroker& broker, const Logger& logger) -> std::unique_ptr<CmpiProvider> {
          return std::make_unique<PerfmonDecorator>(broker, logger, TestProvider::creator(seen));
        });
    callAll(outer, context, path);
    EXPECT_EQ(seen->calls, operations());
    EXPECT_FALSE(seen->destroyed);
  }
  EXPECT_TRUE(seen->destroyed) << "a decorator owns what is in it";
}

TEST_F(DecoratorTest, aLoggedProviderSaysWhatComesInAndHowItEnded) {
  LoggedProvider provider(CmpiBroker(), recorded.logger, TestProvider::creator(seen));
  CmpiInstanceResult result;
  provider.getInstance(result, context, path, nullptr);
  EXPECT_THAT(recorded.sink->texts(), ElementsAre("getInstance(n:C) begins", "getInstance(n:C) ends"));
  EXPECT_EQ(recorded.sink->lines()[0].level, LogLevel::Info);
}

struct Failure {
  CmpiStatus status;
  LogLevel level;
  std::string text;
};

TEST_F(DecoratorTest, aFailureIsLoggedByItsWeightAndThrownOn) {
  const Failure failures[] = {
      {CmpiStatus(CMPI_RC_ERR_NOT_FOUND), LogLevel::Info, "getInstance(n:C) ends: no such instance"},
      {CmpiStatus(CMPI_RC_ERR_NOT_SUPPORTED), LogLevel::Info,
       "getInstance(n:C) ends: operation not supported"},
      {CmpiStatus(CMPI_RC_ERR_FAILED, "disk"), LogLevel::Warn, "getInstance(n:C) failed: disk"},
  };
  for (const Failure& failure : failures) {
    recorded.sink->clear();
    seen->during = [&](const std::string&) { throw failure.status; };
    LoggedProvider provider(CmpiBroker(), recorded.logger, TestProvider::creator(seen));
    CmpiInstanceResult result;
    EXPECT_THROW(provider.getInstance(result, context, path, nullptr), CmpiStatus);
    EXPECT_TRUE(recorded.sink->has(failure.level, failure.text)) << failure.text;
  }
  seen->during = [](const std::string&) { throw std::logic_error("null"); };
  LoggedProvider provider(CmpiBroker(), recorded.logger, TestProvider::creator(seen));
  CmpiInstanceResult result;
  EXPECT_THROW(provider.getInstance(result, context, path, nullptr), std::logic_error);
  EXPECT_TRUE(recorded.sink->has(LogLevel::Warn, "getInstance(n:C) failed: null"));
}

TEST_F(DecoratorTest, aPerfmonDecoratorCountsCallsAndFailures) {
  {
    PerfmonDecorator provider(CmpiBroker(), recorded.logger, TestProvider::creator(seen));
    CmpiInstanceResult result;
    provider.getInstance(result, context, path, nullptr);
    seen->during = [](const std::string&) {
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
      throw CmpiStatus(CMPI_RC_ERR_FAILED);
    };
    EXPECT_THROW(provider.getInstance(result, context, path, nullptr), CmpiStatus);
    const auto sums = provider.sums();
    ASSERT_EQ(sums.size(), 1u);
    const auto& sum = sums.at("getInstance");
    EXPECT_EQ(sum.calls, 2u);
    EXPECT_EQ(sum.failures, 1u);
    EXPECT_GE(sum.longest, std::chrono::milliseconds(5));
    EXPECT_GE(sum.total, sum.longest);
  }
  EXPECT_TRUE(recorded.sink->mentions(LogLevel::Info, "perfmon getInstance: 2 calls, 1 failed, "));
}

}  // namespace
}  // namespace ZEB
