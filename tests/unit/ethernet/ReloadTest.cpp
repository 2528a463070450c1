#include "InventoryFixture.h"
#include "ethernet/RefreshScope.h"

// What a reload says has changed, and how long an event is there.

namespace ZEB::ethernet::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(InventoryTest, ReloadAlwaysAsksAndBothShareTheAnswer) {
  build();
  EXPECT_FALSE(portSource.forceReload());
  EXPECT_FALSE(reloadTeams());
  EXPECT_EQ(host.dumps, 2);
  EXPECT_FALSE(portSource.forceReload());
  EXPECT_EQ(host.dumps, 3);
  EXPECT_FALSE(portSource.forceReload());
  EXPECT_EQ(host.dumps, 4);
}

TEST_F(InventoryTest, ReloadDoesNotShareWhatWasOvertaken) {
  build();
  EXPECT_FALSE(portSource.forceReload());
  host.edit([](HostSnapshot& s) { s.links.push_back(bondLink(11, "bond1")); });
  EXPECT_TRUE(reloadTeams());
  EXPECT_EQ(host.dumps, 3);
}

TEST_F(InventoryTest, ReloadBeforeTheFirstBuildAnswersChanged) {
  EXPECT_TRUE(portSource.forceReload());
  EXPECT_TRUE(reloadTeams());
  EXPECT_THAT(added, ElementsAre("bond0"));
  build();
  EXPECT_FALSE(portSource.forceReload());
  EXPECT_FALSE(reloadTeams());
}

TEST_F(InventoryTest, ReloadAfterABuildThatFailedAnswersChanged) {
  build();
  EthernetAdapterDataObject adapter;
  portSource.getFirstData(false, adapter);
  EXPECT_TRUE(portSource.forceReload()) << "the walk never reached its end";
  EXPECT_FALSE(reloadTeams());
  build();
  EXPECT_FALSE(portSource.forceReload());
  portSource.buildFailed();
  teamSource.buildFailed();
  EXPECT_TRUE(portSource.forceReload());
  EXPECT_TRUE(reloadTeams());
  EXPECT_THAT(added, IsEmpty());
  EXPECT_THAT(removed, IsEmpty());
}

TEST_F(InventoryTest, ReloadFindsAdaptersAtOnceEvenBesideAnEvent) {
  build();
  unplug(4);
  portSource.updateAll();
  host.edit([](HostSnapshot& s) { s.links.push_back(pciPort(9, "eth9", "0000:09:00.0")); });
  EXPECT_TRUE(portSource.forceReload());
  EXPECT_TRUE(portSource.ethEventDetected());
}

TEST_F(InventoryTest, ReloadNamesTeamsThatCameAndWent) {
  build();
  host.edit([](HostSnapshot& s) { s.links[3].name = "bond9"; });
  EXPECT_FALSE(portSource.forceReload());
  added = {"stale"};
  EXPECT_TRUE(reloadTeams());
  EXPECT_THAT(added, ElementsAre("bond9"));
  EXPECT_THAT(removed, ElementsAre("bond0"));
}

TEST_F(InventoryTest, ReloadTellsOfLayersBesideAnEvent) {
  build();
  unplug(4);
  host.edit([](HostSnapshot& s) { s.addresses.clear(); });
  EXPECT_TRUE(portSource.forceReload());
  EXPECT_TRUE(portSource.ethEventDetected());
  build();
  EXPECT_FALSE(portSource.forceReload());
}

TEST_F(InventoryTest, ReloadTellsOfMembershipBesideAnEvent) {
  build();
  host.edit([](HostSnapshot& s) {
    s.links[1].masterIndex.reset();
    s.links[1].bondMember.reset();
  });
  EXPECT_FALSE(portSource.forceReload());
  EXPECT_TRUE(reloadTeams());
  EXPECT_THAT(added, IsEmpty());
  EXPECT_THAT(removed, IsEmpty());
  EXPECT_FALSE(portSource.ethEventDetected());
  EXPECT_TRUE(teamSource.ethTeamEventDetected());
}

TEST_F(InventoryTest, ReloadThatFailsIsNoChange) {
  build();
  host.failing = true;
  EXPECT_FALSE(portSource.forceReload());
  EXPECT_FALSE(reloadTeams());
}

TEST_F(InventoryTest, ReloadThatFailsSaysSo) {
  build();
  host.failing = true;
  portSource.forceReload();
  reloadTeams();
  EXPECT_TRUE(portSource.reloadFailed());
  EXPECT_TRUE(teamSource.reloadFailed());
  host.failing = false;
  portSource.forceReload();
  reloadTeams();
  EXPECT_FALSE(portSource.reloadFailed());
  EXPECT_FALSE(teamSource.reloadFailed());
}

TEST_F(InventoryTest, EventIsThereUntilItWasProcessed) {
  build();
  EXPECT_FALSE(portSource.ethEventDetected());
  unplug(4);
  portSource.updateAll();
  EXPECT_FALSE(teamSource.ethTeamEventDetected());
  EXPECT_TRUE(portSource.ethEventDetected());
  EXPECT_TRUE(portSource.ethEventDetected());
  portSource.eventsProcessed();
  EXPECT_FALSE(portSource.ethEventDetected());
}

TEST_F(InventoryTest, APassThatARequestOvertakesLeavesTheEventToTheNext) {
  build();
  {
    const RefreshScope pass;
    portSource.forceReload();
    unplug(4);
    std::thread request([&] { EXPECT_EQ(portSource.updateAll(), 0); });
    request.join();
    EXPECT_FALSE(portSource.ethEventDetected()) << "the pass works with what was there before";
    portSource.eventsProcessed();
  }
  const RefreshScope pass;
  portSource.forceReload();
  EXPECT_TRUE(portSource.ethEventDetected());
}

TEST_F(InventoryTest, APassThatCannotReadLeavesTheEventToTheNext) {
  build();
  unplug(4);
  host.failing = true;
  {
    const RefreshScope pass;
    portSource.forceReload();
    EXPECT_FALSE(portSource.ethEventDetected());
    portSource.eventsProcessed();
  }
  host.failing = false;
  const RefreshScope pass;
  portSource.forceReload();
  EXPECT_TRUE(portSource.ethEventDetected());
}

TEST_F(InventoryTest, TheSameStateAHundredTimesIsNoEvent) {
  build();
  for (int i = 0; i < 100; ++i) {
    host.edit([](HostSnapshot&) {});
    portSource.updateAll();
  }
  EXPECT_EQ(host.dumps, 101);
  EXPECT_FALSE(portSource.ethEventDetected());
  EXPECT_FALSE(teamSource.ethTeamEventDetected());
}

TEST_F(InventoryTest, EventOutlastsNewDataSources) {
  build();
  unplug(4);
  portSource.updateAll();
  EthernetMRA another(inventory);
  EXPECT_TRUE(another.ethEventDetected());
}

}  // namespace
}  // namespace ZEB::ethernet::test
