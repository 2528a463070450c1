#include <gmock/gmock.h>

#include <thread>

#include "FakeSource.h"
#include "SnapshotBuilder.h"
#include "ethernet/EthernetMRA.h"
#include "ethernet/EthernetTeamMRA.h"
#include "ethernet/RefreshScope.h"
#include "records/Inventory.h"

namespace ZEB::ethernet::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Two ports in a team, a third on its own with a VLAN, and both data sources over them.
class InventoryTest : public testing::Test {
 protected:
  InventoryTest() {
    host.snapshot.links = {
        memberOf(pciPort(2, "eth0", "0000:01:00.0"), 10), memberOf(pciPort(3, "eth1", "0000:01:00.1"), 10, 1),
        pciPort(4, "eth2", "0000:02:00.0"), bondLink(10, "bond0"), vlanLink(20, "eth2.7", 4, 7)};
    host.snapshot.addresses = {addressOn(4, "10.0.0.4")};
  }

  /// Walks both sources to their ends, as a build does.
  void build() {
    ports.clear();
    teams.clear();
    EthernetAdapterDataObject adapter;
    EthernetTeamDataObject team;
    for (int rc = teamSource.getFirstData(false, team); rc == 0; rc = teamSource.getNextData(false, team)) {
      teams.push_back(team);
    }
    for (int rc = portSource.getFirstData(false, adapter); rc == 0;
         rc = portSource.getNextData(false, adapter)) {
      ports.insert(ports.end(), adapter.ports.begin(), adapter.ports.end());
    }
  }

  bool reloadTeams() { return teamSource.forceReload(added, removed); }

  operationalStatus statusOf(const EthernetPort& port) {
    operationalStatus status{};
    return port.getPortStatus(status) == 0 ? status : operationalStatus::Unknown;
  }

  void unplug(std::uint32_t index) {
    host.edit([&](HostSnapshot& s) {
      for (LinkFacts& link : s.links) {
        if (link.index == index) carrier(link, false);
      }
    });
  }

  FakeSource::Host host;
  std::shared_ptr<Inventory> inventory =
      std::make_shared<Inventory>(std::make_unique<FakeSource>(host), false);
  EthernetMRA portSource{inventory};
  EthernetTeamMRA teamSource{inventory};
  std::vector<EthernetPort> ports;
  std::vector<EthernetTeamDataObject> teams;
  std::vector<std::string> added, removed;
};

TEST_F(InventoryTest, BothWalksShareOneDump) {
  build();
  EXPECT_EQ(host.dumps, 1);
  EXPECT_EQ(ports.size(), 3u);
  EXPECT_EQ(teams.size(), 1u);
  build();
  EXPECT_EQ(host.dumps, 1) << "nothing was announced since";
}

TEST_F(InventoryTest, WalkWithFreshDataAsksAnew) {
  build();
  EthernetAdapterDataObject adapter;
  portSource.getFirstData(true, adapter);
  EXPECT_EQ(host.dumps, 2);
}

TEST_F(InventoryTest, WalkEndsAndStaysEnded) {
  EthernetTeamDataObject team;
  EXPECT_EQ(teamSource.getFirstData(false, team), 0);
  EXPECT_EQ(teamSource.getNextData(false, team), 2);
  EXPECT_EQ(teamSource.getNextData(false, team), 2);
  host.edit([](HostSnapshot& s) { s.links.clear(); });
  EXPECT_EQ(teamSource.getFirstData(false, team), 2);
}

TEST_F(InventoryTest, WalkOverNothingFails) {
  host.failing = true;
  EthernetAdapterDataObject adapter;
  EXPECT_EQ(portSource.getNextData(false, adapter), 1) << "without a beginning";
  EXPECT_EQ(portSource.getFirstData(false, adapter), 1);
  EXPECT_EQ(portSource.getNextData(false, adapter), 1);
  EXPECT_EQ(portSource.failureText(), "the kernel is silent");
  host.failing = false;
  EXPECT_EQ(portSource.getFirstData(false, adapter), 0);
  EXPECT_EQ(portSource.failureText(), "");
}

TEST_F(InventoryTest, WalkKeepsToTheAnswerItBeganWith) {
  EthernetAdapterDataObject adapter;
  EXPECT_EQ(portSource.getFirstData(false, adapter), 0);
  host.edit([](HostSnapshot& s) { s.links.clear(); });
  portSource.updateAll();
  EXPECT_EQ(portSource.getNextData(false, adapter), 0);
  EXPECT_EQ(portSource.getNextData(false, adapter), 2);
}

TEST_F(InventoryTest, UpdateAsksOnlyWhatWasAnnounced) {
  build();
  EXPECT_EQ(portSource.updateAll(), 0);
  EXPECT_EQ(teamSource.updateAll(), 0);
  EXPECT_EQ(host.dumps, 1);
  unplug(4);
  EXPECT_EQ(portSource.updateAll(), 0);
  EXPECT_EQ(teamSource.updateAll(), 0);
  EXPECT_EQ(host.dumps, 2) << "one answer for both";
  host.failing = true;
  unplug(4);
  EXPECT_NE(portSource.updateAll(), 0);
}

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

TEST_F(InventoryTest, GettersAnswerFromTheRecordsOwnCopy) {
  build();
  EthernetPort& port = ports[2];
  EthernetPort copy = port;
  unplug(4);
  portSource.updateAll();
  EXPECT_EQ(statusOf(port), operationalStatus::OK);
  EXPECT_EQ(port.refresh(), 0);
  EXPECT_EQ(statusOf(port), operationalStatus::Error);
  EXPECT_EQ(statusOf(copy), operationalStatus::OK) << "a copy is refreshed on its own";
  copy = port;
  EXPECT_EQ(statusOf(copy), operationalStatus::Error);
}

TEST_F(InventoryTest, RefreshAsksForOneInterface) {
  build();
  EXPECT_EQ(ports[2].refresh(), 0);
  EXPECT_EQ(teams[0].refresh(), 0);
  EXPECT_EQ(ports[2].vlans.at(0).refresh(), 0);
  EXPECT_EQ(host.dumps, 1);
  EXPECT_EQ(host.singles, 3);
  std::uint16_t number = 0;
  EXPECT_EQ(ports[1].refresh(), 0);
  EXPECT_EQ(ports[1].getPortNumber(number), 0);
  EXPECT_EQ(number, 2) << "its place on the card stays known";
  EXPECT_EQ(teams[0].getSlaves().size(), 2u);
}

TEST_F(InventoryTest, RefreshOfWhatIsGoneLeavesNothingKnown) {
  build();
  host.edit([](HostSnapshot& s) { s.links.clear(); });
  for (EthernetPort& port : ports) {
    std::string name;
    EXPECT_NE(port.refresh(), 0);
    EXPECT_NE(port.getOsDeviceName(name), 0);
    EXPECT_EQ(statusOf(port), operationalStatus::Unknown);
    EXPECT_NE(port.refresh(), 0);
  }
  EXPECT_NE(teams[0].refresh(), 0);
  std::uint32_t count = 0;
  EXPECT_NE(teams[0].getNumberOfSlaves(count), 0);
  EXPECT_THAT(teams[0].getCapabilities(), IsEmpty());
  EXPECT_NE(ports[2].vlans[0].refresh(), 0);
}

TEST_F(InventoryTest, RefreshFindsAnInterfaceThatCameBack) {
  build();
  const HostSnapshot before = host.snapshot;
  host.edit([](HostSnapshot& s) { s.links.clear(); });
  EXPECT_NE(ports[2].refresh(), 0);
  host.edit([&](HostSnapshot& s) { s = before; });
  EXPECT_EQ(ports[2].refresh(), 0);
  EXPECT_EQ(statusOf(ports[2]), operationalStatus::OK);
}

TEST_F(InventoryTest, RefreshThatFailsKeepsTheOldFacts) {
  build();
  host.failing = true;
  EXPECT_NE(ports[2].refresh(), 0);
  EXPECT_EQ(statusOf(ports[2]), operationalStatus::OK);
}

TEST_F(InventoryTest, ScopeSharesEachAnswer) {
  build();
  RefreshScope scope;
  EthernetPort copy = ports[2];
  EXPECT_EQ(ports[2].refresh(), 0);
  unplug(4);
  EXPECT_EQ(copy.refresh(), 0);
  EXPECT_EQ(host.singles, 1);
  EXPECT_EQ(statusOf(copy), operationalStatus::OK) << "the scope's answer, begun before the cable was pulled";
}

TEST_F(InventoryTest, ScopeBringsADumpForMany) {
  host.edit([](HostSnapshot& s) {
    for (std::uint32_t i = 100; i < 120; ++i) {
      s.links.push_back(pciPort(i, "eth" + std::to_string(i), "0000:05:00.0"));
    }
  });
  build();
  RefreshScope scope;
  for (EthernetPort& port : ports) EXPECT_EQ(port.refresh(), 0);
  EXPECT_EQ(host.singles, 8);
  EXPECT_EQ(host.dumps, 2) << "one more, for all that followed";
}

/// Twelve ports on cards of their own, with an address each and counters that say the interface's number.
class PartsTest : public InventoryTest {
 protected:
  static constexpr std::uint32_t kFirst = 100, kPorts = 12;

  PartsTest() {
    host.inParts = true;
    host.snapshot = {};
    host.snapshot.sampleTime = 1000;
    for (std::uint32_t index = kFirst; index < kFirst + kPorts; ++index) {
      const std::string bus = std::to_string(index);
      host.snapshot.links.push_back(pciPort(index, "eth" + bus, ("0000:" + bus.substr(1) + ":00.0").c_str()));
      host.snapshot.links.back().statistics = LinkStatistics{index, index, index, index};
      host.snapshot.addresses.push_back(addressOn(index, "10.0.0.4"));
    }
    build();
    host.dumps = 0;
  }

  void refreshAll(RefreshPart part) {
    const RefreshScope scope;
    for (EthernetPort& port : ports) port.refresh(part);
  }
  std::uint64_t bytesReceived(std::size_t port) {
    ethStats_st statistics{};
    EXPECT_EQ(ports.at(port).getEthStats(statistics), 0);
    return statistics.bytesReceived;
  }
  /// Counts without a word.
  void count(std::uint64_t bytes) {
    const std::scoped_lock lock(host.mutex);
    host.snapshot.sampleTime = 2000;
    for (LinkFacts& link : host.snapshot.links) link.statistics->rxBytes += bytes;
  }
};

TEST_F(PartsTest, LinksBringNeitherAddressesNorRoutes) {
  {
    const std::scoped_lock lock(host.mutex);
    for (LinkFacts& link : host.snapshot.links) carrier(link, false);
  }
  refreshAll(RefreshPart::Link);
  EXPECT_EQ(host.dumps, 0);
  EXPECT_EQ(host.linkDumps, 1);
  EXPECT_EQ(host.singles, 8);
  for (const EthernetPort& port : ports) EXPECT_NE(statusOf(port), operationalStatus::OK);
  EXPECT_THAT(ports.back().getIPv4Addresses(), IsEmpty());
  refreshAll(RefreshPart::Everything);
  EXPECT_EQ(host.dumps, 1);
  EXPECT_EQ(ports.back().getIPv4Addresses().size(), 1u);
}

TEST_F(PartsTest, LinksSettleNothingThatWasAnnounced) {
  unplug(kFirst);
  refreshAll(RefreshPart::Link);
  EXPECT_TRUE(inventory->announced());
}

TEST_F(PartsTest, CountersAreNewAndTheRestIsWhatWasLastHeard) {
  count(5);
  refreshAll(RefreshPart::Counters);
  EXPECT_EQ(host.dumps, 0);
  EXPECT_EQ(host.counterDumps, 1);
  for (std::size_t i = 0; i < ports.size(); ++i) EXPECT_EQ(bytesReceived(i), kFirst + i + 5);
  ethStats_st statistics{};
  ports.back().getEthStats(statistics);
  EXPECT_EQ(statistics.sampleTime, 2000);
  EXPECT_EQ(statusOf(ports.back()), operationalStatus::OK);
  EXPECT_EQ(ports.back().getIPv4Addresses().size(), 1u);
}

TEST_F(PartsTest, CountersComeWithEverythingWhenSomethingWasAnnounced) {
  count(5);
  host.edit([](HostSnapshot& s) { s.links.pop_back(); });
  refreshAll(RefreshPart::Counters);
  EXPECT_EQ(host.counterDumps, 0);
  EXPECT_EQ(host.dumps, 1);
  EXPECT_EQ(bytesReceived(kPorts - 2), kFirst + kPorts - 2 + 5);
  EXPECT_FALSE(ports.back().hasStatistics()) << "the interface is gone";
}

TEST_F(PartsTest, PortWithoutCountersIsGone) {
  {
    const std::scoped_lock lock(host.mutex);
    host.snapshot.links.pop_back();
  }
  refreshAll(RefreshPart::Counters);
  EXPECT_EQ(host.counterDumps, 1);
  EXPECT_FALSE(ports.back().hasStatistics());
}

TEST_F(PartsTest, PartsOfASourceThatKnowsNoneAreEverything) {
  host.inParts = false;
  refreshAll(RefreshPart::Link);
  refreshAll(RefreshPart::Counters);
  EXPECT_EQ(host.dumps, 2);
  EXPECT_EQ(ports.back().getIPv4Addresses().size(), 1u);
}

TEST_F(InventoryTest, ScopeServesTheRefreshesAfterAReload) {
  build();
  unplug(4);
  {
    RefreshScope pass;
    portSource.forceReload();
    reloadTeams();
    for (EthernetPort& port : ports) EXPECT_EQ(port.refresh(), 0);
    EXPECT_EQ(teams[0].refresh(), 0);
    build();
    EXPECT_EQ(host.dumps, 2) << "reloads, refreshes and the rebuild share one";
    EXPECT_EQ(host.singles, 0);
  }
  EXPECT_EQ(statusOf(ports[2]), operationalStatus::Error);
  EXPECT_EQ(ports[2].refresh(), 0);
  EXPECT_EQ(host.singles, 1) << "outside, each is asked for again";
}

TEST_F(InventoryTest, ScopeSharesTheReloadEvenIfMoreWasAnnounced) {
  build();
  RefreshScope pass;
  portSource.forceReload();
  unplug(4);
  reloadTeams();
  EXPECT_EQ(host.dumps, 2);
}

TEST_F(InventoryTest, ScopeTakesNoReloadFromBeforeItBegan) {
  build();
  portSource.forceReload();
  RefreshScope pass;
  reloadTeams();
  EXPECT_EQ(host.dumps, 3);
}

TEST_F(InventoryTest, ScopeInsideAScopeJoinsIt) {
  build();
  RefreshScope outer;
  EXPECT_EQ(ports[2].refresh(), 0);
  {
    RefreshScope inner;
    EXPECT_EQ(ports[2].refresh(), 0);
  }
  EXPECT_EQ(ports[2].refresh(), 0);
  EXPECT_EQ(host.singles, 1);
}

TEST_F(InventoryTest, ScopeIsTheThreadsOwn) {
  build();
  RefreshScope scope;
  EXPECT_EQ(ports[2].refresh(), 0);
  std::thread([&] { EXPECT_EQ(ports[2].refresh(), 0); }).join();
  EXPECT_EQ(host.singles, 2);
}

TEST_F(InventoryTest, ScopeWhereNothingCanBeRead) {
  build();
  host.failing = true;
  RefreshScope scope;
  EXPECT_NE(ports[2].refresh(), 0);
  EthernetAdapterDataObject adapter;
  EXPECT_EQ(portSource.getFirstData(false, adapter), 1);
}

TEST_F(InventoryTest, DeviceThatVanishesDropsOnlyItself) {
  build();
  host.edit([](HostSnapshot& s) { s.links.erase(s.links.begin() + 2); });
  RefreshScope scope;
  portSource.forceReload();
  EXPECT_EQ(ports[0].refresh(), 0);
  EXPECT_EQ(ports[1].refresh(), 0);
  EXPECT_NE(ports[2].refresh(), 0);
  EXPECT_EQ(teams[0].refresh(), 0);
}

}  // namespace
}  // namespace ZEB::ethernet::test
