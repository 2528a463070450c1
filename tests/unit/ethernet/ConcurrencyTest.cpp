#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "FakeSource.h"
#include "SnapshotBuilder.h"
#include "ethernet/EthernetMRA.h"
#include "ethernet/EthernetTeamMRA.h"
#include "ethernet/RefreshScope.h"
#include "records/Inventory.h"

namespace ZEB::ethernet::test {
namespace {

/// A port whose frame size and packet counter always say the same number: a mixture of two answers would not.
HostSnapshot hostOf(std::uint32_t number) {
  HostSnapshot host;
  for (std::uint32_t index = 2; index < 12; ++index) {
    LinkFacts link = pciPort(index, "eth" + std::to_string(index), "0000:01:00.0");
    link.mtu = number;
    link.statistics = LinkStatistics{number, number, number, number};
    if (index % 2 == 0) link = memberOf(link, 20, number % 2 == 0 ? 0 : 1);
    carrier(link, number % 3 != 0);
    host.links.push_back(link);
  }
  LinkFacts bond = bondLink(20, "bond0");
  bond.mtu = number;
  host.links.push_back(bond);
  return host;
}

class ConcurrencyTest : public testing::Test {
 protected:
  ConcurrencyTest() { host.snapshot = hostOf(1); }

  /// Runs all of them at once for a while.
  void together(std::vector<std::function<void()>> parts) {
    std::atomic<bool> stop = false;
    std::vector<std::thread> threads;
    for (auto& part : parts) {
      threads.emplace_back([&stop, part] {
        while (!stop) part();
      });
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(700));
    stop = true;
    for (auto& thread : threads) thread.join();
  }

  /// Whether a port's facts are all of one answer.
  static void expectWhole(const EthernetPort& port) {
    const EthernetPort copy = port;
    unsigned long size = 0;
    ethStats_st statistics;
    ASSERT_EQ(copy.getPortMaxFrameSize(size), 0);
    ASSERT_EQ(copy.getEthStats(statistics), 0);
    ASSERT_EQ(statistics.packetsReceived, size);
  }

  FakeSource::Host host;
  std::shared_ptr<Inventory> inventory =
      std::make_shared<Inventory>(std::make_unique<FakeSource>(host), false);
};

TEST_F(ConcurrencyTest, ReadersRefreshersAndReplacements) {
  auto portSource = std::make_shared<EthernetMRA>(inventory);
  auto teamSource = std::make_shared<EthernetTeamMRA>(inventory);
  EthernetAdapterDataObject adapter;
  EthernetTeamDataObject team;
  ASSERT_EQ(portSource->getFirstData(false, adapter), 0);
  ASSERT_EQ(teamSource->getFirstData(false, team), 0);
  EthernetPort& shared = adapter.ports.at(0);
  std::uint32_t number = 1;
  int reads = 0;
  together({
      [&] { host.edit([&](HostSnapshot& s) { s = hostOf(++number); }); },
      [&] {
        expectWhole(shared);
        ++reads;
      },
      [&] { EXPECT_EQ(shared.refresh(), 0); },
      [&] {
        RefreshScope pass;
        std::vector<std::string> added, removed;
        portSource->forceReload();
        teamSource->forceReload(added, removed);
        EXPECT_EQ(team.refresh(), 0);
        EXPECT_EQ(team.getSlaves().size(), 5u);
        EthernetAdapterDataObject other;
        for (int rc = portSource->getFirstData(false, other); rc == 0;
             rc = portSource->getNextData(false, other)) {
          for (EthernetPort& port : other.ports) expectWhole(port);
        }
        portSource->ethEventDetected();
      },
      [&] {
        // Another who makes data sources and drops them, as a rebuild does.
        EthernetMRA mine(inventory);
        EthernetAdapterDataObject other;
        mine.updateAll();
        ASSERT_EQ(mine.getFirstData(true, other), 0);
        expectWhole(other.ports.at(3));
      },
  });
  EXPECT_GT(reads, 100);
}

TEST_F(ConcurrencyTest, AssignmentBesideReading) {
  EthernetMRA source(inventory);
  EthernetAdapterDataObject adapter;
  ASSERT_EQ(source.getFirstData(false, adapter), 0);
  EthernetPort port = adapter.ports.at(0);
  together({[&] { expectWhole(port); }, [&] { expectWhole(port); }, [&] { port.refresh(); },
            [&] { host.edit([&](HostSnapshot& s) { s = hostOf(s.links[0].mtu.value() + 1); }); }});
}

}  // namespace
}  // namespace ZEB::ethernet::test
