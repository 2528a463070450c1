#include <gmock/gmock.h>
#include <sys/resource.h>

#include <csignal>

#include "ClientFixture.h"
#include "common/DataStore.h"

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

// A client that sends one setting and no list. Object managers that complete what it sent have the plug-in
// take their defaults for the others, and one of them sends a list of all names along, the key's too.
TEST_F(ModifyTest, oneSettingWithoutAListIsTakenWhereTheOthersAreFilledIn) {
  change(only("ZEB_EthEventSettings"), "FloodThreshold", std::uint32_t{33});
  CmpiInstance one(only("ZEB_EthEventSettings").path());
  one.addProperty("PollInterval", std::uint32_t{77});
  one.addProperty("InstanceId", "JXV:0");
  FakeBroker::Call call(broker);
  const CMPIrc rc = call.modify(interface, one.path(), one, std::nullopt).rc;
  const CmpiInstance settings = only("ZEB_EthEventSettings");
  if (!broker.habits().completesChanges) {
    EXPECT_EQ(rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
    EXPECT_EQ(settings.getProperty("FloodThreshold"), CmpiData(std::uint32_t{33}));
    return;
  }
  EXPECT_EQ(rc, CMPI_RC_OK);
  EXPECT_EQ(settings.getProperty("PollInterval"), CmpiData(std::uint32_t{77}));
  EXPECT_EQ(settings.getProperty("FloodThreshold"), CmpiData(std::uint32_t{10}));
  EXPECT_EQ(settings.getProperty("MonitorPorts"), CmpiData(true));
  EXPECT_EQ(settings.getProperty("MonitorRedundancySets"), CmpiData(true));
}

TEST_F(ModifyTest, aFilterThatTheObjectManagerFillsInKeepsThePortWatched) {
  const CmpiInstance membership = only("ZEB_EthernetMemberOfCollection");
  CmpiInstance without(membership.path());
  for (const char* end : {"Member", "Collection"}) without.addProperty(end, membership.getProperty(end));
  FakeBroker::Call call(broker);
  const CMPIrc rc = call.modify(interface, without.path(), without, std::nullopt).rc;
  EXPECT_EQ(rc, broker.habits().completesChanges ? CMPI_RC_OK : CMPI_RC_ERR_NO_SUCH_PROPERTY);
  EXPECT_EQ(only("ZEB_EthernetMemberOfCollection").getProperty("Included"), CmpiData(true));
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
  const auto handler = signal(SIGXFSZ, SIG_IGN);
  rlimit limit{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &limit), 0);
  const rlimit full{100, limit.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &full), 0);
  EXPECT_EQ(change(only("ZEB_EthEventSettings"), "PollInterval", std::uint32_t{60}), CMPI_RC_ERR_FAILED);
  EXPECT_EQ(change(only("ZEB_EthernetMemberOfCollection"), "Included", false), CMPI_RC_ERR_FAILED);
  EXPECT_EQ(only("ZEB_EthEventSettings").getProperty("PollInterval"), CmpiData(std::uint32_t{200}));
  EXPECT_EQ(only("ZEB_EthernetMemberOfCollection").getProperty("Included"), CmpiData(true));
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
  signal(SIGXFSZ, handler);
}

}  // namespace
}  // namespace ZEB::test
