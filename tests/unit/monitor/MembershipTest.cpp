#include <gmock/gmock.h>
#include <sys/resource.h>

#include <csignal>

#include "Members.h"
#include "cmpicpp/CmpiStatus.h"
#include "monitor/ZEB_EthernetCollection.h"
#include "monitor/ZEB_EthernetMemberOfCollection.h"
#include "posix/ChildProcess.h"
#include "support/Environment.h"
#include "support/RecordingLogSink.h"
#include "support/TestFolder.h"

// The membership in the collection, and the filter that a client sets through it.

namespace ZEB::test {
namespace {

using CmpiCpp::CmpiData;
using CmpiCpp::CmpiInstance;
using CmpiCpp::CmpiObjectPath;
using CmpiCpp::CmpiStatus;
using testing::ElementsAre;
using Kind = CollectionMember::Kind;

class MembershipTest : public testing::Test {
 protected:
  static CmpiInstance wanted(const CmpiData& included) {
    CmpiInstance instance;
    instance.addProperty("Included", included);
    return instance;
  }

  std::string key() { return port.makeObjectPath().str(); }

  TestFolder directory;
  Environment storeDirectory{"ZEB_STORE_DIR", directory.file("stores")};
  RecordedLogger recorded;
  std::unique_ptr<DataStore> store = makeDataStore("ZEBEthernetPort");
  Member port{recorded.logger, Kind::Port, "port", operationalStatus::OK};
  ZEB_EthernetCollection collection{recorded.logger, "root/jxv"};
  ZEB_EthernetMemberOfCollection membership{recorded.logger, "root/jxv", port, collection};
  bool changed = true;
};

TEST_F(MembershipTest, theInstanceHasItsPropertiesInOrder) {
  const CmpiInstance instance = membership.makeInstance();
  EXPECT_EQ(instance.className().view(), "ZEB_EthernetMemberOfCollection");
  ASSERT_EQ(instance.properties().size(), 3u);
  EXPECT_EQ(instance.properties()[0].name.view(), "Member");
  EXPECT_EQ(instance.properties()[0].value.asReference(), port.makeObjectPath());
  EXPECT_EQ(instance.properties()[1].name.view(), "Collection");
  EXPECT_EQ(instance.properties()[1].value.asReference(), collection.makeObjectPath());
  EXPECT_EQ(instance.properties()[2].name.view(), "Included");
  EXPECT_EQ(instance.properties()[2].value, CmpiData(true));
  port.setIncluded(false);
  EXPECT_EQ(membership.makeInstance().getProperty("Included"), CmpiData(false));
}

TEST_F(MembershipTest, leadsFromOneEndToTheOther) {
  EXPECT_EQ(membership.otherEnd(port.makeObjectPath()), collection.makeObjectPath());
  EXPECT_EQ(membership.otherEnd(collection.makeObjectPath()), port.makeObjectPath());
  EXPECT_TRUE(membership.otherEnd(CmpiObjectPath("root/jxv", "ZEB_EthernetPort")).empty());
}

TEST_F(MembershipTest, aChangeIsKeptUnderTheMembersPath) {
  store->setBool(key(), true);
  recorded.sink->clear();
  EXPECT_EQ(membership.modify(wanted(false), store.get(), changed), collection.makeObjectPath());
  EXPECT_TRUE(changed);
  EXPECT_FALSE(port.included());
  EXPECT_FALSE(makeDataStore("ZEBEthernetPort")->getBool(key()));
  EXPECT_THAT(recorded.sink->texts(),
              ElementsAre("::modifyInstance() start", "Change in property _included detected..."));
  membership.modify(wanted(true), store.get(), changed);
  EXPECT_TRUE(changed);
  EXPECT_TRUE(store->getBool(key()));
}

TEST_F(MembershipTest, theCurrentValueIsNoChangeAndNoWrite) {
  // The store has another value, so that a write could be seen.
  store->setBool(key(), false);
  recorded.sink->clear();
  EXPECT_EQ(membership.modify(wanted(true), store.get(), changed), collection.makeObjectPath());
  EXPECT_FALSE(changed);
  EXPECT_FALSE(store->getBool(key()));
  EXPECT_THAT(recorded.sink->texts(), ElementsAre("::modifyInstance() start"));
}

TEST_F(MembershipTest, aKeyThatTheStoreLacksIsNotMadeAndTheLogSaysSo) {
  membership.modify(wanted(false), store.get(), changed);
  EXPECT_TRUE(
      recorded.sink->has(LogLevel::Warn, "datastore has no key " + key() + ", modify not persistent"));
  EXPECT_TRUE(changed);
  EXPECT_FALSE(port.included());
  EXPECT_FALSE(store->exists(key()));
}

TEST_F(MembershipTest, withoutAStoreTheChangeHoldsAndIsNotKept) {
  recorded.sink->clear();
  membership.modify(wanted(false), nullptr, changed);
  EXPECT_TRUE(changed);
  EXPECT_FALSE(port.included());
  EXPECT_THAT(recorded.sink->texts(),
              ElementsAre("::modifyInstance() start", "Change in property _included detected...",
                          "datastore not open, modify not persistent"));
  EXPECT_TRUE(recorded.sink->has(LogLevel::Warn, "datastore not open, modify not persistent"));
}

TEST_F(MembershipTest, anotherTypeFailsAndChangesNothing) {
  for (const CmpiData& wrong : {CmpiData(std::uint32_t{0}), CmpiData("false"), CmpiData::null(CMPI_string)}) {
    recorded.sink->clear();
    try {
      membership.modify(wanted(wrong), store.get(), changed);
      ADD_FAILURE();
    } catch (const CmpiStatus& status) {
      EXPECT_EQ(status.rc(), CMPI_RC_ERR_INVALID_PARAMETER);
    }
    EXPECT_FALSE(changed);
    EXPECT_TRUE(port.included());
    EXPECT_THAT(recorded.sink->texts(), ElementsAre("::modifyInstance() start",
                                                    "data type is not boolean.  throw CmpiStatus error!"));
  }
}

TEST_F(MembershipTest, aMissingValueFails) {
  try {
    membership.modify(CmpiInstance(), store.get(), changed);
    ADD_FAILURE();
  } catch (const CmpiStatus& status) {
    EXPECT_EQ(status.rc(), CMPI_RC_ERR_NO_SUCH_PROPERTY);
  }
  EXPECT_TRUE(port.included());
}

TEST_F(MembershipTest, aNullBooleanIsFalse) {
  membership.modify(wanted(CmpiData::null(CMPI_boolean)), store.get(), changed);
  EXPECT_FALSE(port.included());
}

TEST_F(MembershipTest, aTeamIsChangedInTheSameWay) {
  Member team(recorded.logger, Kind::Team, "team", operationalStatus::OK);
  ZEB_EthernetMemberOfCollection membershipOfTeam(recorded.logger, "root/jxv", team, collection);
  store->setBool(team.makeObjectPath().str(), true);
  EXPECT_EQ(membershipOfTeam.modify(wanted(false), store.get(), changed), collection.makeObjectPath());
  EXPECT_FALSE(team.included());
  EXPECT_FALSE(store->getBool(team.makeObjectPath().str()));
}

TEST_F(MembershipTest, aMemberWithoutAFilterIsIncludedAndCannotBeChanged) {
  Bystander bystander(recorded.logger);
  ZEB_EthernetMemberOfCollection other(recorded.logger, "root/jxv", bystander, collection);
  EXPECT_EQ(other.makeInstance().getProperty("Included"), CmpiData(true));
  EXPECT_TRUE(other.modify(wanted(false), store.get(), changed).empty());
  EXPECT_FALSE(changed);
  EXPECT_EQ(other.makeInstance().getProperty("Included"), CmpiData(true));
}

TEST_F(MembershipTest, aWriteThatFailsTellsTheClientAndChangesNothing) {
  store->setBool(key(), true);
  const int result = ChildProcess([&] {
                       const auto mine = makeDataStore("ZEBEthernetPort");
                       signal(SIGXFSZ, SIG_IGN);
                       const rlimit limit{100, RLIM_INFINITY};
                       if (setrlimit(RLIMIT_FSIZE, &limit) != 0) return 1;
                       try {
                         membership.modify(wanted(false), mine.get(), changed);
                         return 2;
                       } catch (const CmpiStatus& status) {
                         return status.rc() == CMPI_RC_ERR_FAILED && port.included() && !changed ? 0 : 3;
                       }
                     }).wait();
  EXPECT_EQ(result, 0);
  EXPECT_TRUE(store->getBool(key()));
}

}  // namespace
}  // namespace ZEB::test
