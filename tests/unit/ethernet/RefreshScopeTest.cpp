#include <thread>

#include "InventoryFixture.h"
#include "ethernet/RefreshScope.h"

// What the refreshes of one scope share, and what they cost when only a part is asked for.

namespace ZEB::ethernet::test {
namespace {

using testing::IsEmpty;

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

  using Clock = RefreshScope::Clock;

  void refreshAll(RefreshPart part, std::optional<Clock::time_point> sharedSince = {}) {
    const RefreshScope scope(sharedSince);
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

TEST_F(PartsTest, ScopesOfOneMomentAskForCountersAlone) {
  count(5);
  const auto moment = Clock::now();
  refreshAll(RefreshPart::Link, moment);
  refreshAll(RefreshPart::Everything, moment);
  refreshAll(RefreshPart::Counters, moment);
  EXPECT_EQ(host.dumps + host.linkDumps + host.singles, 0);
  EXPECT_EQ(host.counterDumps, 1);
  for (std::size_t i = 0; i < ports.size(); ++i) EXPECT_EQ(bytesReceived(i), kFirst + i + 5);
}

TEST_F(PartsTest, ScopesOfOneMomentShareAnAnswerWhenSomethingWasAnnounced) {
  count(5);
  unplug(kFirst);
  const auto moment = Clock::now();
  refreshAll(RefreshPart::Link, moment);
  EXPECT_NE(statusOf(ports.front()), operationalStatus::OK);
  unplug(kFirst + 1);
  refreshAll(RefreshPart::Everything, moment);
  EXPECT_EQ(statusOf(ports[1]), operationalStatus::OK) << "the moment's answer";
  refreshAll(RefreshPart::Counters, moment);
  EXPECT_EQ(host.dumps, 1);
  EXPECT_EQ(host.counterDumps + host.linkDumps + host.singles, 0) << "the answer has counters as well";
  for (std::size_t i = 0; i < ports.size(); ++i) EXPECT_EQ(bytesReceived(i), kFirst + i + 5);
  refreshAll(RefreshPart::Link, Clock::now());
  EXPECT_EQ(host.dumps, 2) << "another moment";
  EXPECT_NE(statusOf(ports[1]), operationalStatus::OK);
}

TEST_F(PartsTest, WhatClientsHaveHeardIsStillNewsForWhoFollows) {
  unplug(kFirst);
  refreshAll(RefreshPart::Everything, Clock::now());
  EXPECT_TRUE(inventory->announced());
  EXPECT_TRUE(inventory->update());
  EXPECT_FALSE(inventory->announced());
  EXPECT_EQ(host.dumps, 1) << "the news are there";
}

TEST_F(PartsTest, ScopesOfOneMomentShareAWholeAnswerOfASourceThatKnowsNoParts) {
  host.inParts = false;
  count(5);
  const auto moment = Clock::now();
  refreshAll(RefreshPart::Link, moment);
  refreshAll(RefreshPart::Counters, moment);
  refreshAll(RefreshPart::Counters, moment);
  EXPECT_EQ(host.dumps, 1);
  for (std::size_t i = 0; i < ports.size(); ++i) EXPECT_EQ(bytesReceived(i), kFirst + i + 5);
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

}  // namespace
}  // namespace ZEB::ethernet::test
