#include "InventoryFixture.h"
#include "ethernet/RefreshScope.h"

// What the data sources deliver, and what a refresh of one record asks for.

namespace ZEB::ethernet::test {
namespace {

using testing::IsEmpty;

TEST_F(InventoryTest, BothWalksShareOneDump) {
  build();
  EXPECT_EQ(host.dumps, 1);
  EXPECT_EQ(ports.size(), 3u);
  EXPECT_EQ(teams.size(), 1u);
  build();
  EXPECT_EQ(host.dumps, 1) << "nothing was announced since";
}

TEST_F(InventoryTest, AChangeConcernsWhatIsServedAndTheBridgesOfThat) {
  const auto concerned = [&](std::set<std::uint32_t> interfaces) {
    return portSource.concernedBy({.anywhere = false, .interfaces = std::move(interfaces)});
  };
  EXPECT_TRUE(concerned({77})) << "nobody knows yet";
  host.edit([](HostSnapshot& s) {
    for (const std::uint32_t bridge : {30u, 31u}) {
      s.links.push_back(ethernetLink(bridge, "br" + std::to_string(bridge)));
      s.links.back().kind = "bridge";
    }
    s.links.at(2).masterIndex = 30;
  });
  build();
  for (const std::uint32_t served : {2u, 4u, 10u, 20u}) EXPECT_TRUE(concerned({served})) << served;
  EXPECT_TRUE(concerned({30})) << "the bridge of eth2";
  EXPECT_FALSE(concerned({31, 77}));
  EXPECT_TRUE(concerned({4, 77}));
  EXPECT_FALSE(concerned({}));
  EXPECT_TRUE(portSource.concernedBy({.anywhere = true, .interfaces = {}}));
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
