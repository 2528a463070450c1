#include <gmock/gmock.h>
#include <sys/resource.h>

#include <csignal>

#include "ClientFixture.h"
#include "common/DataStore.h"
#include "support/ChildProcess.h"

namespace ZEB::test {
namespace {

using CmpiCpp::CmpiData;
using CmpiCpp::CmpiInstance;
using CmpiCpp::CmpiObjectPath;

/// Changes through the exported functions, and what is left of them after a restart of the provider.
class ModifyTest : public ClientTest {
 protected:
  ModifyTest() { start(); }
  ~ModifyTest() override { stop(); }
};

TEST_F(ModifyTest, aSettingIsChangedAndSeenAfterARestart) {
  EXPECT_EQ(change(only("ZEB_EthEventSettings"), "PollInterval", std::uint32_t{60}), CMPI_RC_OK);
  EXPECT_EQ(only("ZEB_EthEventSettings").getProperty("PollInterval"), CmpiData(std::uint32_t{60}));
  EXPECT_EQ(log->count("Found ZEB_EthEventSettings instance path in collection"), 1U);
  restart();
  EXPECT_EQ(only("ZEB_EthEventSettings").getProperty("PollInterval"), CmpiData(std::uint32_t{60}));
}

TEST_F(ModifyTest, aFilterIsChangedAndSeenAfterARestart) {
  const CmpiInstance membership = only("ZEB_EthernetMemberOfCollection");
  EXPECT_EQ(membership.getProperty("Included"), CmpiData(true));
  EXPECT_EQ(change(membership, "Included", false), CMPI_RC_OK);
  EXPECT_EQ(only("ZEB_EthernetMemberOfCollection").getProperty("Included"), CmpiData(false));
  EXPECT_EQ(log->count("Found ZEB_EthernetMemberOfCollection instance path in collection"), 1U);
  restart();
  EXPECT_EQ(only("ZEB_EthernetMemberOfCollection").getProperty("Included"), CmpiData(false));
}

TEST_F(ModifyTest, theFirstBuildMakesThePortKnownToTheStoreAndTheSecondLeavesItAlone) {
  const std::string key = only("ZEB_EthernetPort").path().str();
  EXPECT_EQ(log->count("store key for " + key + "..."), 1U);
  EXPECT_TRUE(makeDataStore("ZEBEthernetPort")->getBool(key));
  restart();
  EXPECT_EQ(log->count("store key for " + key + "..."), 1U);
}

TEST_F(ModifyTest, anExcludedPortDoesNotCount) {
  stop();
  serve("two_cards.json");
  start();
  // The second port is switched on and has no carrier, the sixth is switched off, the others work.
  EXPECT_EQ(enumerate("ZEB_EthernetMemberOfCollection").size(), 6U);
  EXPECT_EQ(groupStatus(), 6U);
  EXPECT_EQ(change(membershipOfPort(2), "Included", false), CMPI_RC_OK);
  EXPECT_EQ(groupStatus(), 2U);
  restart();
  EXPECT_EQ(groupStatus(), 2U);
  EXPECT_EQ(change(membershipOfPort(2), "Included", true), CMPI_RC_OK);
  EXPECT_EQ(groupStatus(), 6U);
}

TEST_F(ModifyTest, aFilterThatStaysTheSameDoesNotTouchTheCollection) {
  log->clear();
  EXPECT_EQ(change(only("ZEB_EthernetMemberOfCollection"), "Included", true), CMPI_RC_OK);
  EXPECT_EQ(log->count("manageDynamic()"), 0U);
  EXPECT_EQ(change(only("ZEB_EthernetMemberOfCollection"), "Included", false), CMPI_RC_OK);
  EXPECT_GT(log->count("manageDynamic()"), 0U);
}

TEST_F(ModifyTest, thePropertyListIsNotConsultedForAFilter) {
  CmpiInstance membership = only("ZEB_EthernetMemberOfCollection");
  membership.addProperty("Included", false);
  EXPECT_EQ(modify(membership.path(), membership, {"Member"}), CMPI_RC_OK);
  EXPECT_EQ(only("ZEB_EthernetMemberOfCollection").getProperty("Included"), CmpiData(false));
}

TEST_F(ModifyTest, aValueOfAnotherTypeIsRefusedAndLogged) {
  log->clear();
  EXPECT_EQ(change(only("ZEB_EthernetMemberOfCollection"), "Included", "no"), CMPI_RC_ERR_INVALID_PARAMETER);
  EXPECT_EQ(change(only("ZEB_EthEventSettings"), "MonitorPorts", std::uint32_t{1}),
            CMPI_RC_ERR_INVALID_PARAMETER);
  EXPECT_TRUE(log->has(LogLevel::Error, "::modifyInstance() exception: invalid parameter"));
  EXPECT_EQ(log->count("::modifyInstance() exception: invalid parameter"), 2U);
  EXPECT_EQ(only("ZEB_EthernetMemberOfCollection").getProperty("Included"), CmpiData(true));
  EXPECT_EQ(change(only("ZEB_EthEventSettings"), "MonitorPorts", false), CMPI_RC_OK)
      << "the lock was released";
}

TEST_F(ModifyTest, aPathThatIsNotThereIsAWarningAndNoError) {
  for (const char* className : {"ZEB_EthEventSettings", "ZEB_EthernetMemberOfCollection"}) {
    log->clear();
    CmpiInstance instance(only(className));
    EXPECT_EQ(modify({"root/jxv", className, "", {{"InstanceId", "JXV:9"}}}, instance, {}), CMPI_RC_OK);
    EXPECT_TRUE(log->has(LogLevel::Warn, "instance not found"));
  }
}

TEST_F(ModifyTest, theHostOfThePathDoesNotMatter) {
  CmpiInstance settings = only("ZEB_EthEventSettings");
  CmpiObjectPath path = settings.path();
  path.setHost("elsewhere");
  settings.addProperty("PollInterval", std::uint32_t{61});
  EXPECT_EQ(modify(path, settings, {"PollInterval"}), CMPI_RC_OK);
  EXPECT_EQ(only("ZEB_EthEventSettings").getProperty("PollInterval"), CmpiData(std::uint32_t{61}));
}

TEST_F(ModifyTest, anInstanceOfOneClassUnderThePathOfTheOtherChangesNothing) {
  CmpiInstance settings = only("ZEB_EthEventSettings");
  settings.addProperty("PollInterval", std::uint32_t{62});
  EXPECT_EQ(modify(only("ZEB_EthernetMemberOfCollection").path(), settings, {"PollInterval"}), CMPI_RC_OK);
  EXPECT_EQ(only("ZEB_EthEventSettings").getProperty("PollInterval"), CmpiData(std::uint32_t{200}));
}

TEST_F(ModifyTest, withoutStoresItServesAndChangesHoldUntilARestart) {
  stop();
  configure("ZEB_STORE_DIR", "/dev/null/store");
  start();
  EXPECT_TRUE(log->has(LogLevel::Error, "unable to open datastore ZEB_EthEventSettings"));
  EXPECT_EQ(change(only("ZEB_EthernetMemberOfCollection"), "Included", false), CMPI_RC_OK);
  EXPECT_TRUE(log->has(LogLevel::Warn, "datastore not open, modify not persistent"));
  EXPECT_EQ(only("ZEB_EthernetMemberOfCollection").getProperty("Included"), CmpiData(false));
  restart();
  EXPECT_EQ(only("ZEB_EthernetMemberOfCollection").getProperty("Included"), CmpiData(true));
}

TEST_F(ModifyTest, whatTheStoreDoesNotKeepIsRefusedAndNotChanged) {
  const int result =
      ChildProcess([&] {
        signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{100, RLIM_INFINITY};
        if (setrlimit(RLIMIT_FSIZE, &limit) != 0) return 1;
        if (change(only("ZEB_EthEventSettings"), "PollInterval", std::uint32_t{60}) != CMPI_RC_ERR_FAILED) {
          return 2;
        }
        if (change(only("ZEB_EthernetMemberOfCollection"), "Included", false) != CMPI_RC_ERR_FAILED) return 3;
        const bool included = only("ZEB_EthernetMemberOfCollection").getProperty("Included").asBoolean();
        return included ? 0 : 4;
      }).wait();
  EXPECT_EQ(result, 0);
}

}  // namespace
}  // namespace ZEB::test
