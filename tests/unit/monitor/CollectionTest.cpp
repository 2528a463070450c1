#include <gmock/gmock.h>

#include <thread>

#include "Members.h"
#include "common/ZEBUtil.h"
#include "monitor/ZEB_EthernetCollection.h"
#include "monitor/ZEB_EthernetGroupHostedCollection.h"
#include "support/Environment.h"
#include "support/RecordingLogSink.h"
#include "support/TestFolder.h"

// The collection of all ports: which members count, and what the group says.

namespace ZEB::test {
namespace {

using CmpiCpp::CmpiData;
using CmpiCpp::CmpiInstance;
using testing::ElementsAre;
using Kind = CollectionMember::Kind;
using Status = operationalStatus;

class CollectionTest : public testing::Test {
 protected:
  Member& add(Kind kind, Status status) {
    auto* member = new Member(Logger("", std::make_shared<RecordingLogSink>(), LogLevel::Error), kind,
                              std::to_string(instances.size()), status);
    instances.createInstance(member);
    return *member;
  }

  /// One pass over all instances.
  void pass(bool force = false) {
    collection.reset();
    collection.updateMembers(instances, force);
  }

  std::uint64_t groupStatus() {
    return collection.makeInstance().getProperty("GroupOperationalStatus").asArray()[0].asUnsigned();
  }
  std::string groupText() {
    return collection.makeInstance().getProperty("GroupStatusDescriptions").asArray()[0].asString();
  }

  RecordedLogger recorded;
  CmpiManagedInstanceCollection instances{recorded.logger};
  ZEB_EthernetCollection collection{recorded.logger, "root/jxv"};
};

TEST_F(CollectionTest, theInstanceHasItsPropertiesInOrder) {
  const CmpiInstance instance = collection.makeInstance();
  EXPECT_EQ(instance.path().str(),
            "//" + ZEBUtil::getHostName() +
                "/root/jxv:ZEB_EthernetCollection.InstanceID=\"JXV:ZEB_EthernetCollection-1\"");
  CmpiCpp::CmpiArray status(1, CMPI_uint16), text(1, CMPI_string);
  status.setElementAt(0, std::uint16_t{2});
  text.setElementAt(0, "OK");
  const std::vector<std::pair<std::string, CmpiData>> expected = {
      {"InstanceID", "JXV:ZEB_EthernetCollection-1"},
      {"ElementName", "Ethernet Adapter Collection"},
      {"Caption", "Ethernet Adapter Collection"},
      {"GroupOperationalStatus", status},
      {"GroupStatusDescriptions", text},
      {"Description", "This is a collection of all Ethernet Ports."},
  };
  ASSERT_EQ(instance.properties().size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    EXPECT_EQ(instance.properties()[i].name.view(), expected[i].first);
    EXPECT_EQ(instance.properties()[i].value, expected[i].second) << expected[i].first;
  }
}

TEST_F(CollectionTest, aStatusOutsideTheThreeIsUnknown) {
  for (std::uint32_t code = 0; code <= 20; ++code) {
    const auto group = ZEB_EthernetCollection::reported(static_cast<Status>(code));
    const bool known = code == 2 || code == 3 || code == 6;
    EXPECT_EQ(static_cast<std::uint32_t>(group.status), known ? code : 0);
    const std::string text = code == 2 ? "OK" : code == 3 ? "Degraded" : code == 6 ? "Error" : "Unknown";
    EXPECT_EQ(group.text, text);
  }
}

TEST_F(CollectionTest, theWorstPortDecides) {
  add(Kind::Port, Status::OK);
  add(Kind::Port, Status::Degraded);
  add(Kind::Port, Status::Error);
  pass();
  EXPECT_EQ(groupStatus(), 6u);
  EXPECT_EQ(groupText(), "Error");
}

TEST_F(CollectionTest, aPortThatIsExcludedDoesNotCount) {
  add(Kind::Port, Status::OK);
  add(Kind::Port, Status::Degraded);
  add(Kind::Port, Status::Error).setIncluded(false);
  pass();
  EXPECT_EQ(groupStatus(), 3u);
  EXPECT_EQ(groupText(), "Degraded");
}

TEST_F(CollectionTest, aPortThatIsInvisibleDoesNotCount) {
  add(Kind::Port, Status::Error).setVisible(false);
  pass();
  EXPECT_EQ(groupStatus(), 2u);
}

TEST_F(CollectionTest, aTeamCountsEvenWhenItIsExcluded) {
  add(Kind::Team, Status::Degraded).setIncluded(false);
  pass();
  EXPECT_EQ(groupStatus(), 3u);
}

TEST_F(CollectionTest, aTeamThatIsInvisibleDoesNotCount) {
  add(Kind::Team, Status::Error).setVisible(false);
  pass();
  EXPECT_EQ(groupStatus(), 2u);
}

TEST_F(CollectionTest, otherInstancesDoNotCount) {
  instances.createInstance(new Bystander(recorded.logger));
  pass();
  EXPECT_EQ(groupStatus(), 2u);
}

struct Pair {
  Status first;
  Status second;
  std::uint64_t group;
};

class CollectionCombineTest : public CollectionTest, public testing::WithParamInterface<Pair> {};

TEST_P(CollectionCombineTest, twoMembersInThisOrder) {
  add(Kind::Port, GetParam().first);
  add(Kind::Port, GetParam().second);
  pass();
  EXPECT_EQ(groupStatus(), GetParam().group);
}

INSTANTIATE_TEST_SUITE_P(
    Statuses, CollectionCombineTest,
    testing::Values(Pair{Status::OK, Status::OK, 2}, Pair{Status::OK, Status::Degraded, 3},
                    Pair{Status::OK, Status::Error, 6}, Pair{Status::OK, Status::Dormant, 2},
                    Pair{Status::Degraded, Status::OK, 3}, Pair{Status::Degraded, Status::Degraded, 3},
                    Pair{Status::Degraded, Status::Error, 6}, Pair{Status::Degraded, Status::Dormant, 3},
                    Pair{Status::Error, Status::OK, 6}, Pair{Status::Error, Status::Degraded, 6},
                    Pair{Status::Error, Status::Error, 6}, Pair{Status::Error, Status::Unknown, 6},
                    Pair{Status::Dormant, Status::Degraded, 3}, Pair{Status::Unknown, Status::Error, 6},
                    Pair{Status::Unknown, Status::NonRecoverableError, 2}));

TEST_F(CollectionTest, aPassSaysWhatItSees) {
  add(Kind::Port, Status::OK);
  add(Kind::Team, Status::Degraded);
  add(Kind::Port, Status::Error).setIncluded(false);
  recorded.sink->clear();
  pass();
  EXPECT_THAT(
      recorded.sink->texts(),
      ElementsAre("manageDynamic()", "ethPort found: current collection status: 2: ethport->_included is: 1",
                  "updateWorstEthernetPort Begin: current 2, update 2", "updated is statusOK",
                  "updateWorstEthernetPort End: current 2, update 2",
                  "new Ethernet collection status: 2",  //
                  "manageDynamic()", "ethTeam found in collection...", "current collection status: 2",
                  "updateWorstEthernetPort Begin: current 2, update 3",
                  "updateWorstEthernetPort End: current 3, update 3", "new Ethernet collection status: 3",
                  "send Ethernet collection state change indication",  //
                  "manageDynamic()", "ethPort found: current collection status: 3: ethport->_included is: 0",
                  "new Ethernet collection status: 3"));
}

TEST_F(CollectionTest, theVeryFirstUpdateIsNoStateChange) {
  add(Kind::Port, Status::Error);
  pass();
  EXPECT_EQ(recorded.sink->count("send Ethernet collection state change indication"), 0u);
  pass();
  EXPECT_EQ(recorded.sink->count("send Ethernet collection state change indication"), 1u);
}

TEST_F(CollectionTest, onlyForceMarksTheStateAsChanged) {
  add(Kind::Port, Status::OK);
  add(Kind::Port, Status::Error);
  pass();
  pass();
  EXPECT_FALSE(collection.testAndClearStateChanged());
  pass(true);
  EXPECT_TRUE(collection.testAndClearStateChanged());
  EXPECT_FALSE(collection.testAndClearStateChanged());
}

TEST_F(CollectionTest, passesMayMeet) {
  for (int i = 0; i < 20; ++i) add(Kind::Port, i == 7 ? Status::Error : Status::OK);
  std::vector<std::thread> threads;
  for (int t = 0; t < 3; ++t) {
    threads.emplace_back([this] {
      for (int i = 0; i < 50; ++i) pass();
      collection.makeInstance();
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(groupStatus(), 6u);
}

class StatusFilterTest : public CollectionTest {
 protected:
  static std::string key(Member& member) { return member.makeObjectPath().str(); }

  TestFolder directory;
  Environment storeDirectory{"ZEB_STORE_DIR", directory.file("stores")};
  std::unique_ptr<DataStore> store = makeDataStore("ZEBEthernetPort");
};

TEST_F(StatusFilterTest, isRestoredForPortsThatTheStoreKnows) {
  Member& excluded = add(Kind::Port, Status::OK);
  Member& included = add(Kind::Port, Status::OK);
  Member& unknown = add(Kind::Port, Status::OK);
  included.setIncluded(false);
  unknown.setIncluded(false);
  store->setBool(key(excluded), false);
  store->setBool(key(included), true);
  recorded.sink->clear();
  collection.updateStatusFilter(instances, store.get());
  EXPECT_FALSE(excluded.included());
  EXPECT_TRUE(included.included());
  EXPECT_FALSE(unknown.included());
  EXPECT_THAT(recorded.sink->texts(), ElementsAre("updateStatusFilter Start", "firstState is True",
                                                  "updateStatusFilter: ethPort found in collection...",
                                                  "updateStatusFilter: ethPort found in collection...",
                                                  "updateStatusFilter: ethPort found in collection..."));
}

TEST_F(StatusFilterTest, isNotRestoredForTeamsNorForInvisiblePorts) {
  Member& team = add(Kind::Team, Status::OK);
  Member& invisible = add(Kind::Port, Status::OK);
  invisible.setVisible(false);
  store->setBool(key(team), false);
  store->setBool(key(invisible), false);
  collection.updateStatusFilter(instances, store.get());
  EXPECT_TRUE(team.included());
  EXPECT_TRUE(invisible.included());
}

TEST_F(StatusFilterTest, isNotRestoredAfterTheFirstPass) {
  Member& port = add(Kind::Port, Status::OK);
  store->setBool(key(port), false);
  pass();
  recorded.sink->clear();
  collection.updateStatusFilter(instances, store.get());
  EXPECT_TRUE(port.included());
  EXPECT_THAT(recorded.sink->texts(), ElementsAre("updateStatusFilter Start"));
}

TEST_F(StatusFilterTest, isNotRestoredWithoutAStore) {
  Member& port = add(Kind::Port, Status::OK);
  recorded.sink->clear();
  collection.updateStatusFilter(instances, nullptr);
  EXPECT_TRUE(port.included());
  EXPECT_THAT(recorded.sink->texts(),
              ElementsAre("updateStatusFilter Start", "DataStore not open, update not persistent"));
  EXPECT_TRUE(recorded.sink->has(LogLevel::Warn, "DataStore not open, update not persistent"));
}

TEST_F(StatusFilterTest, isRestoredThoughTheFileWasDamagedWhileItWasOpen) {
  Member& port = add(Kind::Port, Status::OK);
  port.setIncluded(false);
  store->setBool(key(port), false);
  port.setIncluded(true);
  std::ofstream(directory.file("stores/ZEBEthernetPort.db"), std::ios::in | std::ios::out)
      << std::string(9000, 'n');
  collection.updateStatusFilter(instances, store.get());
  EXPECT_FALSE(port.included());
}

TEST_F(StatusFilterTest, followsWhatAnotherProcessHasKept) {
  Member& good = add(Kind::Port, Status::OK);
  Member& bad = add(Kind::Port, Status::Error);
  store->addDefaults({{key(good), 1}, {key(bad), 1}});
  collection.updateStatusFilter(instances, store.get());
  pass();
  EXPECT_EQ(groupStatus(), 6u);

  makeDataStore("ZEBEthernetPort")->setBool(key(bad), false);
  collection.follow(instances, *store);
  EXPECT_FALSE(bad.included());
  EXPECT_TRUE(good.included());
  EXPECT_EQ(groupStatus(), 2u);
  EXPECT_FALSE(collection.testAndClearStateChanged()) << "only a client of this process reports it";

  recorded.sink->clear();
  collection.follow(instances, *store);
  EXPECT_THAT(recorded.sink->texts(), ElementsAre()) << "nothing is new";
}

TEST_F(StatusFilterTest, followsForNoTeamAndNoPortThatTheStoreLacks) {
  Member& team = add(Kind::Team, Status::OK);
  Member& port = add(Kind::Port, Status::OK);
  store->setBool(key(team), false);
  port.setIncluded(false);
  collection.follow(instances, *store);
  EXPECT_TRUE(team.included());
  EXPECT_FALSE(port.included());
}

TEST_F(CollectionTest, isHostedByTheComputerSystem) {
  const auto system = ZEBUtil::getComputerSystemPath();
  ZEB_EthernetGroupHostedCollection hosted(recorded.logger, "root/jxv", collection, system);
  const CmpiInstance instance = hosted.makeInstance();
  EXPECT_EQ(instance.className().view(), "ZEB_EthernetGroupHostedCollection");
  ASSERT_EQ(instance.properties().size(), 2u);
  EXPECT_EQ(instance.properties()[0].name.view(), "Antecedent");
  EXPECT_EQ(instance.properties()[0].value.asReference(), system);
  EXPECT_EQ(instance.properties()[1].name.view(), "Dependent");
  EXPECT_EQ(instance.properties()[1].value.asReference(), collection.makeObjectPath());
  EXPECT_EQ(hosted.otherEnd(system), collection.makeObjectPath());
  EXPECT_EQ(hosted.otherEnd(collection.makeObjectPath()), system);
}

}  // namespace
}  // namespace ZEB::test
