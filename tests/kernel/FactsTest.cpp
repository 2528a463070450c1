#include <gmock/gmock.h>
#include <linux/if.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "KernelSnapshot.h"
#include "Namespace.h"
#include "ethernet/EthernetMRA.h"
#include "ethernet/Sources.h"
#include "kernel/DeviceMemory.h"

namespace ZEB::test {
namespace {

using testing::Contains;

TEST(KernelFacts, LinksAreWhatIpSays) {
  IN_NAMESPACE([] {
    makePairs(3);
    ip("link set a1 down");
    ip("link set b2 down");
    ip("link set a0 mtu 1400");
    ip("link set a0 address 02:00:00:00:aa:01");
    ip("link add br0 type bridge");
    ip("link set a2 master br0");
    const auto expected = ipJson("-d link");
    const HostSnapshot snapshot = readAll();
    ASSERT_EQ(snapshot.links.size(), expected.size());
    for (const auto& said : expected) {
      const LinkFacts& link = linkNamed(snapshot, said["ifname"]);
      const auto flags = said["flags"].get<std::vector<std::string>>();
      EXPECT_EQ(link.index, said["ifindex"]);
      EXPECT_EQ(link.mtu, said["mtu"].get<std::uint32_t>());
      EXPECT_EQ((*link.flags & IFF_UP) != 0, std::ranges::count(flags, "UP") > 0) << link.name;
      EXPECT_EQ((*link.flags & IFF_LOWER_UP) != 0, std::ranges::count(flags, "LOWER_UP") > 0) << link.name;
      EXPECT_EQ(link.address ? toText(*link.address) : "00:00:00:00:00:00", said["address"]) << link.name;
      EXPECT_EQ(link.kind, said.contains("linkinfo") ? said["linkinfo"].value("info_kind", "") : "")
          << link.name;
      EXPECT_EQ(link.masterIndex.has_value(), said.contains("master")) << link.name;
      EXPECT_TRUE(link.statistics) << link.name;
    }
    EXPECT_EQ(toText(*linkNamed(snapshot, "a0").address), "02:00:00:00:aa:01");
    EXPECT_EQ(linkNamed(snapshot, "a0").mtu, 1400u);
    EXPECT_EQ(linkNamed(snapshot, "a0").ethtool.speed, 10000u) << "what veth says of itself";
    EXPECT_EQ(linkNamed(snapshot, "a0").ethtool.fullDuplex, true);
    EXPECT_EQ(linkNamed(snapshot, "a0").driver->name, "veth");
  });
}

TEST(KernelFacts, AddressesAreWhatIpSays) {
  IN_NAMESPACE([] {
    makePairs(1);
    ip("addr add 10.1.2.3/20 dev a0");
    ip("addr add 10.1.2.4/32 dev a0 valid_lft 1000 preferred_lft 1000");
    ip("addr add 2001:db8::5/64 dev a0");
    ip("addr add 10.9.0.1 peer 10.9.0.2/32 dev b0");
    std::multiset<std::string> expected, found;
    for (const auto& link : ipJson("addr")) {
      for (const auto& address : link["addr_info"]) {
        expected.insert(link["ifname"].get<std::string>() + " " + address["local"].get<std::string>() + "/" +
                        address["prefixlen"].dump());
      }
    }
    const HostSnapshot snapshot = readAll();
    for (const AddressFacts& address : snapshot.addresses) {
      const auto link = std::ranges::find(snapshot.links, address.index, &LinkFacts::index);
      found.insert(link->name + " " + toText(address.address) + "/" + std::to_string(address.prefixLength));
    }
    EXPECT_EQ(found, expected);
    EXPECT_THAT(found, Contains("a0 10.1.2.3/20"));
    EXPECT_THAT(found, Contains("b0 10.9.0.1/32"));
  });
}

TEST(KernelFacts, CountersAloneAreThoseOfTheLinks) {
  IN_NAMESPACE([] {
    makePairs(2);
    KernelSource source;
    EXPECT_FALSE(source.readCounters()->has_value()) << "before the first whole answer";
    // Until links that just came up are quiet.
    std::optional<CounterSnapshot> counters;
    HostSnapshot snapshot;
    for (int i = 0; i < 100 && !counters; ++i) {
      usleep(50'000);
      snapshot = std::move(*source.readAll());
      counters = *source.readCounters();
    }
    ASSERT_TRUE(counters);
    ASSERT_EQ(counters->interfaces.size(), snapshot.links.size());
    for (std::size_t i = 0; i < snapshot.links.size(); ++i) {
      EXPECT_EQ(counters->interfaces[i].index, snapshot.links[i].index);
      EXPECT_GE(counters->interfaces[i].statistics.txBytes, snapshot.links[i].statistics->txBytes);
      EXPECT_GE(counters->interfaces[i].statistics.rxPackets, snapshot.links[i].statistics->rxPackets);
    }
    ip("link set a1 down");
    EXPECT_FALSE(source.readCounters()->has_value()) << "something was announced";
  });
}

TEST(KernelFacts, LinksAloneAreThoseOfEverything) {
  IN_NAMESPACE([] {
    makePairs(2);
    ip("addr add 10.1.2.3/20 dev a0");
    KernelSource source;
    const HostSnapshot all = std::move(*source.readAll());
    ip("link set a1 mtu 1400");
    const auto links = source.readLinks();
    ASSERT_TRUE(links && *links);
    EXPECT_TRUE(source.announced()) << "left to the next whole answer";
    ASSERT_EQ((*links)->links.size(), all.links.size());
    EXPECT_EQ(linkNamed(**links, "a1").mtu, 1400u);
    EXPECT_EQ(linkNamed(**links, "a0").ethtool, linkNamed(all, "a0").ethtool);
    EXPECT_EQ(linkNamed(**links, "a0").driver->name, "veth");
    EXPECT_TRUE((*links)->routes.empty());
  });
}

TEST(KernelFacts, PortsInAllTheirParts) {
  IN_NAMESPACE([] {
    makePairs(1);
    ip("addr add 10.1.2.3/20 dev a0 valid_lft 1000 preferred_lft 1000");
    ip("addr add 2001:db8::5/64 dev b0");
    ip("route add default via 10.1.0.1 dev a0 metric 300");
    ip("route add default via 10.1.0.2 dev a0 metric 100 table 77");
    ip("route add default via 10.1.0.3 dev a0 metric 10 table 78");
    ip("rule add to 192.0.2.0/24 table 77");
    ip("route add default via 2001:db8::1 dev b0 metric 50");
    EthernetMRA source(kernelInventory(true));
    std::map<std::string, EthernetPort> ports;
    EthernetAdapterDataObject adapter;
    for (int rc = source.getFirstData(false, adapter); rc == 0; rc = source.getNextData(false, adapter)) {
      std::string name;
      EXPECT_EQ(adapter.ports.at(0).getOsDeviceName(name), 0);
      ports[name] = adapter.ports.at(0);
    }
    for (const char* name : {"a0", "b0"}) {
      EthernetPort& port = ports[name];
      // The same facts, asked for by the dump and for the one interface.
      for (int i = 0; i < 2; ++i) {
        route_t route;
        EXPECT_EQ(port.getDefaultGateway(route), 0);
        EXPECT_EQ(route, name == std::string("a0") ? (route_t{"ipv4", "10.1.0.2", "255.255.240.0", 20})
                                                   : (route_t{"ipv6", "2001:db8::1", "", 64}));
        EthPortAddressOriginEnum origin{};
        EXPECT_EQ(port.getAddressOrigin(origin), 0);
        EXPECT_EQ(origin, name == std::string("a0") ? EthPortAddressOriginEnum::Dhcp
                                                    : EthPortAddressOriginEnum::Static);
        EXPECT_EQ(port.getIPv4Addresses().size(), name == std::string("a0") ? 1u : 0u);
        EXPECT_EQ(port.refresh(), 0);
      }
    }
    route_t route;
    const auto gateway = [&] {
      EXPECT_EQ(ports["a0"].refresh(), 0);
      EXPECT_EQ(ports["a0"].getDefaultGateway(route), 0);
      return route.gateway;
    };
    ip("rule del to 192.0.2.0/24 table 77");
    EXPECT_EQ(gateway(), "10.1.0.1") << "nobody looks into the other tables";
    ip("rule add to 192.0.2.0/24 table 77");
    EXPECT_EQ(gateway(), "10.1.0.2");
    ip("route del default via 10.1.0.2 dev a0 table 77");
    EXPECT_EQ(gateway(), "10.1.0.1");
    ip("link set a0 down");
    EXPECT_EQ(ports["a0"].refresh(), 0);
    EXPECT_NE(ports["a0"].getDefaultGateway(route), 0) << "its routes went with the link, unannounced";
  });
}

TEST(KernelFacts, BridgePortGoesByTheBridge) {
  IN_NAMESPACE([] {
    makePairs(1);
    ip("link add br0 type bridge");
    ip("link set a0 master br0");
    ip("link set br0 up");
    ip("addr add 10.5.0.2/24 dev br0");
    ip("route add default via 10.5.0.1");
    EthernetMRA source(kernelInventory(true));
    EthernetAdapterDataObject adapter;
    ASSERT_EQ(source.getFirstData(false, adapter), 0);
    for (std::string name; adapter.ports.at(0).getOsDeviceName(name) == 0 && name != "a0";) {
      ASSERT_EQ(source.getNextData(false, adapter), 0);
    }
    EthernetPort port = adapter.ports.at(0);
    for (int i = 0; i < 2; ++i) {
      route_t route;
      EXPECT_EQ(port.getDefaultGateway(route), 0);
      EXPECT_EQ(route, (route_t{"ipv4", "10.5.0.1", "255.255.255.0", 24}));
      EXPECT_EQ(port.refresh(), 0);
    }
  });
}

TEST(KernelFacts, VirtualInterfacesAreNoPortsUnlessConfigured) {
  IN_NAMESPACE([] {
    makePairs(2);
    EthernetAdapterDataObject adapter;
    EXPECT_EQ(EthernetMRA(kernelInventory(false)).getFirstData(false, adapter), EthernetMRA::kNoMoreData);
    EthernetMRA source(kernelInventory(true));
    int adapters = 0;
    for (int rc = source.getFirstData(false, adapter); rc == 0; rc = source.getNextData(false, adapter))
      ++adapters;
    EXPECT_EQ(adapters, 4);
  });
}

TEST(KernelFacts, EveryCardOfThisMachineIsThere) {
  std::set<std::string> expected, found;
  for (const auto& entry : std::filesystem::directory_iterator("/sys/class/net")) {
    std::string type;
    std::ifstream(entry.path() / "type") >> type;
    if (type == "1" && std::filesystem::exists(entry.path() / "device"))
      expected.insert(entry.path().filename());
  }
  if (expected.empty()) GTEST_SKIP() << "no Ethernet card in this machine";
  EthernetMRA source(kernelInventory(false));
  EthernetAdapterDataObject adapter;
  for (int rc = source.getFirstData(false, adapter); rc == 0; rc = source.getNextData(false, adapter)) {
    std::string driver;
    EXPECT_EQ(adapter.getDriverName(driver), 0);
    for (const EthernetPort& port : adapter.ports) {
      std::string name;
      EXPECT_EQ(port.getOsDeviceName(name), 0);
      EXPECT_TRUE(port.hasStatistics());
      found.insert(name);
    }
  }
  EXPECT_EQ(found, expected);
}

/// The driver of what is taken for a card, though a virtual interface answers.
LinkFacts cardNamed(const std::string& name) {
  LinkFacts card;
  card.index = 7;
  card.name = name;
  card.parentBus = "pci";
  card.parentDevice = "0000:ff:1f.7";
  return card;
}

TEST(KernelFacts, ADeviceThatWasRenamedIsAskedByItsNewName) {
  IN_NAMESPACE([] {
    makePairs(1);
    EthtoolIoctl ioctl;
    DeviceMemory memory(ioctl);
    LinkFacts early = cardNamed("before");
    memory.complete(early);
    EXPECT_EQ(early.driver, nullptr);
    LinkFacts late = cardNamed("a0");
    memory.complete(late);
    ASSERT_NE(late.driver, nullptr);
    EXPECT_EQ(late.driver->name, "veth");
  });
}

TEST(KernelFacts, AFirmwareThatIsNotKnownIsAskedForWhenThePortComesUp) {
  IN_NAMESPACE([] {
    makePairs(1);
    EthtoolIoctl ioctl;
    DeviceMemory memory(ioctl);
    const auto driverWith = [&](std::uint32_t flags) {
      LinkFacts card = cardNamed("a0");
      card.flags = flags;
      memory.complete(card);
      return card.driver;
    };
    const auto first = driverWith(0);
    EXPECT_EQ(driverWith(0), first) << "it is remembered";
    const auto whenUp = driverWith(IFF_UP);
    EXPECT_NE(whenUp, first);
    EXPECT_EQ(driverWith(IFF_UP), whenUp);
    EXPECT_EQ(driverWith(0), whenUp);
    EXPECT_NE(driverWith(IFF_UP), whenUp);
  });
}

}  // namespace
}  // namespace ZEB::test
