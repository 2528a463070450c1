#include <gmock/gmock.h>

#include "SnapshotBuilder.h"
#include "model/Cards.h"
#include "model/Kinds.h"
#include "model/Location.h"
#include "model/Model.h"

namespace ZEB::ethernet::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> portNames(const AdapterEntry& adapter) {
  std::vector<std::string> names;
  for (const PortEntry& port : adapter.ports) names.push_back(port.facts->link.name);
  return names;
}

std::vector<std::string> vlanNames(const std::vector<std::shared_ptr<const VlanFacts>>& vlans) {
  std::vector<std::string> names;
  for (const auto& vlan : vlans) names.push_back(vlan->link.name);
  return names;
}

std::shared_ptr<const Model> model(std::vector<LinkFacts> links, bool includeVirtual = false) {
  HostSnapshot snapshot;
  snapshot.links = std::move(links);
  return buildModel(std::move(snapshot), includeVirtual);
}

LinkFacts withParent(std::uint32_t index, const std::string& name, const char* bus, const char* device) {
  LinkFacts link = ethernetLink(index, name);
  link.parentBus = bus;
  link.parentDevice = device;
  HardwareFacts hardware;
  hardware.bus = bus;
  hardware.device = device;
  link.hardware = std::make_shared<HardwareFacts>(hardware);
  return link;
}

LinkFacts ofKind(std::uint32_t index, const char* kind) {
  LinkFacts link = ethernetLink(index, kind);
  link.kind = kind;
  return link;
}

TEST(Kinds, HardwareMakesAPortWhateverTheBus) {
  for (const char* bus : {"pci", "usb", "platform", "virtio", "vmbus"}) {
    EXPECT_TRUE(isPort(withParent(2, "eth0", bus, "x"), false)) << bus;
  }
  EXPECT_FALSE(isPort(ethernetLink(2, "eth0"), false));
  LinkFacts unread = ethernetLink(2, "eth0");
  unread.parentDevice = "0000:01:00.0";
  EXPECT_TRUE(isPort(unread, false)) << "hardware that could not be read is still there";
  LinkFacts infiniband = withParent(2, "ib0", "pci", "0000:01:00.0");
  infiniband.type = 32;
  EXPECT_FALSE(isPort(infiniband, true));
}

TEST(Kinds, VirtualOnesOnlyWhenConfigured) {
  for (const char* kind : {"veth", "dummy", "tun", "macvlan"}) {
    EXPECT_FALSE(isPort(ofKind(2, kind), false)) << kind;
    EXPECT_TRUE(isPort(ofKind(2, kind), true)) << kind;
  }
  for (const char* kind : {"bond", "vlan", "bridge", "vxlan"})
    EXPECT_FALSE(isPort(ofKind(2, kind), true)) << kind;
}

TEST(Kinds, Representors) {
  for (const char* name : {"pf0", "pf0vf1", "c1pf0vf12", "pf1sf4", "c12pf3sf4", "c1pf0"})
    EXPECT_TRUE(isRepresentorName(name)) << name;
  for (const char* name : {"", "p0", "pf0vf", "vf1", "pfvf1", "p0s1", "pf0vf1x", "c1p0"}) {
    EXPECT_FALSE(isRepresentorName(name)) << name;
  }
  LinkFacts representor = withParent(2, "eth0_1", "pci", "0000:01:00.0");
  representor.portName = "pf0vf1";
  EXPECT_FALSE(isPort(representor, false));
  EXPECT_TRUE(isPort(representor, true));
  representor.portName = "p0";
  EXPECT_TRUE(isPort(representor, false));
}

TEST(Model, CardsInBusOrderAndPortsInFunctionOrder) {
  const auto built = model({pciPort(2, "eth0", "0000:04:00.1"), pciPort(3, "eth1", "0000:04:00.0"),
                            pciPort(4, "eth2", "0000:01:00.0"), pciPort(5, "eth3", "0001:00:00.0"),
                            pciPort(6, "eth4", "0000:10:00.0")});
  ASSERT_EQ(built->adapters.size(), 4u);
  EXPECT_THAT(portNames(built->adapters[0]), ElementsAre("eth2"));
  EXPECT_THAT(portNames(built->adapters[1]), ElementsAre("eth1", "eth0"));
  EXPECT_THAT(portNames(built->adapters[2]), ElementsAre("eth4"));
  EXPECT_THAT(portNames(built->adapters[3]), ElementsAre("eth3"));
  EXPECT_EQ(built->adapters[1].ports[1].facts->number, 2);
  EXPECT_EQ(built->adapters[1].facts->portCount, 2u);
  EXPECT_EQ(built->adapters[1].key, "pci 0000:04:00");
}

TEST(Model, PortsOfOneFunctionByTheirOwnNumber) {
  const auto onFunction = [](std::uint32_t index, const char* name, std::uint16_t devicePort) {
    LinkFacts link = pciPort(index, name, "0000:01:00.0");
    HardwareFacts hardware = *link.hardware;
    hardware.devicePort = devicePort;
    link.hardware = std::make_shared<HardwareFacts>(hardware);
    return link;
  };
  const auto built = model({onFunction(2, "eth0", 1), onFunction(3, "eth1", 0)});
  ASSERT_EQ(built->adapters.size(), 1u);
  EXPECT_THAT(portNames(built->adapters[0]), ElementsAre("eth1", "eth0"));
}

TEST(Model, VirtualFunctionsArePortsOfTheirFunctionsCard) {
  LinkFacts virtualFunction = pciPort(9, "eth9", "0000:01:10.2");
  HardwareFacts hardware = *virtualFunction.hardware;
  hardware.physicalFunction = parsePciAddress("0000:01:00.1");
  hardware.virtualFunction = 0;
  virtualFunction.hardware = std::make_shared<HardwareFacts>(hardware);
  const auto built =
      model({virtualFunction, pciPort(2, "eth0", "0000:01:00.0"), pciPort(3, "eth1", "0000:01:00.1")});
  ASSERT_EQ(built->adapters.size(), 1u);
  EXPECT_THAT(portNames(built->adapters[0]), ElementsAre("eth0", "eth1", "eth9"));
}

TEST(Model, OtherBusesAfterPciAndVirtualOnesLast) {
  const auto built =
      model({ofKind(2, "veth"), withParent(3, "usb0", "usb", "1-1:1.0"),
             withParent(4, "usb1", "usb", "1-1:1.2"), pciPort(5, "eth0", "0000:01:00.0"), ofKind(6, "dummy")},
            true);
  ASSERT_EQ(built->adapters.size(), 4u);
  EXPECT_THAT(portNames(built->adapters[0]), ElementsAre("eth0"));
  EXPECT_THAT(portNames(built->adapters[1]), ElementsAre("usb0", "usb1")) << "interfaces of one USB device";
  EXPECT_THAT(portNames(built->adapters[2]), ElementsAre("veth"));
  EXPECT_THAT(portNames(built->adapters[3]), ElementsAre("dummy"));
  EXPECT_FALSE(built->adapters[2].ports[0].facts->number) << "a virtual interface has no place on a card";
  EXPECT_EQ(built->adapters[1].ports[1].facts->number, 2);
}

TEST(Model, VlansHangUnderTheirCarrier) {
  const auto built =
      model({pciPort(2, "eth0", "0000:01:00.0"), bondLink(3, "bond0"), vlanLink(12, "eth0.2.3", 11, 3),
             vlanLink(11, "eth0.2", 2, 2), vlanLink(13, "bond0.4", 3, 4), vlanLink(14, "br0.5", 99, 5)});
  EXPECT_THAT(vlanNames(built->adapters.at(0).ports.at(0).vlans), ElementsAre("eth0.2", "eth0.2.3"));
  EXPECT_THAT(vlanNames(built->teams.at(0).vlans), ElementsAre("bond0.4"));
  EXPECT_EQ(built->vlans.size(), 3u) << "a VLAN on nothing known is left out";
}

TEST(Model, VlansThatBiteTheirTail) {
  const auto built = model({pciPort(2, "eth0", "0000:01:00.0"), vlanLink(5, "a", 6, 1),
                            vlanLink(6, "b", 5, 1), vlanLink(7, "c", 7, 1)});
  EXPECT_THAT(built->vlans, IsEmpty());
  EXPECT_EQ(built->adapters.size(), 1u);
}

TEST(Model, TeamsWithMembersByNumber) {
  const auto built =
      model({bondLink(10, "bond0"), bondLink(4, "bond1"), memberOf(pciPort(3, "eth1", "0000:01:00.1"), 10),
             memberOf(pciPort(2, "eth0", "0000:01:00.0"), 10)});
  ASSERT_EQ(built->teams.size(), 2u);
  EXPECT_EQ(built->teams[0].facts->link.name, "bond1");
  const auto& members = built->teams[1].facts->members;
  ASSERT_EQ(members.size(), 2u);
  EXPECT_EQ(members[0].slave.name, "eth0");
  EXPECT_EQ(members[1].slave.name, "eth1");
  EXPECT_EQ(built->adapters.at(0).ports.size(), 2u) << "a team is no port, its members are";
}

TEST(Model, AdapterStatusFromItsPorts) {
  const auto status = [](std::vector<int> ports) {
    std::vector<LinkFacts> links;
    for (const int kind : ports) {
      const auto number = static_cast<std::uint32_t>(links.size());
      links.push_back(pciPort(number + 2, "eth" + std::to_string(number),
                              ("0000:01:00." + std::to_string(number)).c_str()));
      if (kind == 6) carrier(links.back(), false);
      if (kind == 15) links.back().flags = 0;
      if (kind == 0) links.back().flags.reset();
    }
    return model(links)->adapters.at(0).facts->status;
  };
  EXPECT_EQ(status({2, 2}), operationalStatus::OK);
  EXPECT_EQ(status({2, 15}), operationalStatus::OK);
  EXPECT_EQ(status({2, 6}), operationalStatus::Degraded);
  EXPECT_EQ(status({6, 15}), operationalStatus::Error);
  EXPECT_EQ(status({15, 15}), operationalStatus::Dormant);
  EXPECT_FALSE(status({0}));
}

/// What the adapters' places are told apart by.
std::vector<std::string> positions(const std::vector<LinkFacts>& links) {
  std::vector<std::string> texts;
  const auto built = model(links);
  for (const AdapterEntry& adapter : built->adapters) {
    char text[32];
    texts.push_back(
        BMC_physloc_to_str(locationOf(*adapter.facts).value_or(BMC_physloc_NULL), text, sizeof text));
  }
  return texts;
}

template <class Edit>
LinkFacts withHardware(LinkFacts link, Edit edit) {
  HardwareFacts hardware = *link.hardware;
  edit(hardware);
  link.hardware = std::make_shared<HardwareFacts>(hardware);
  return link;
}

TEST(Model, NoTwoAdaptersShareALocation) {
  const auto inSlot = [](std::uint32_t index, const char* function, std::uint16_t slot) {
    return withHardware(pciPort(index, "eth" + std::to_string(index), function),
                        [&](HardwareFacts& hardware) {
                          hardware.slot = slot;
                          hardware.slotKind = SlotKind::PciExpress;
                        });
  };
  EXPECT_THAT(
      positions({inSlot(2, "0000:01:00.0", 0), inSlot(3, "0000:02:00.0", 0), inSlot(4, "0000:02:00.1", 0),
                 inSlot(5, "0000:03:00.0", 3), inSlot(6, "0000:04:00.0", 0)}),
      ElementsAre("05", "05000001", "0503", "05000002"));
  const auto onBoard = [](std::uint32_t index, const char* function, const char* label) {
    return withHardware(pciPort(index, label, function),
                        [&](HardwareFacts& hardware) { hardware.onboardLabel = label; });
  };
  EXPECT_THAT(positions({onBoard(2, "0000:00:19.0", "LAN A"), onBoard(3, "0000:00:1a.0", "LAN B")}),
              ElementsAre("08", "08000001"));
}

TEST(Model, OneOfSeveralLinksWithANumberStands) {
  const auto built = model({pciPort(2, "eth0", "0000:01:00.0"), pciPort(2, "eth1", "0000:02:00.0")});
  ASSERT_EQ(built->adapters.size(), 1u);
  EXPECT_THAT(portNames(built->adapters[0]), ElementsAre("eth0"));
}

TEST(Model, BridgePortWithoutARouteHasTheBridges) {
  HostSnapshot snapshot;
  LinkFacts port = pciPort(2, "eth0", "0000:01:00.0");
  port.masterIndex = 5;
  snapshot.links = {port, ofKind(5, "bridge")};
  snapshot.addresses = {addressOn(5, "10.0.0.5", 8)};
  snapshot.routes = {{5, *parseIpAddress("10.0.0.1"), 0, 254}};
  const auto through = buildModel(snapshot, false);
  EXPECT_EQ(through->ports.at(2)->gateway, (route_t{"ipv4", "10.0.0.1", "255.0.0.0", 8}));
  snapshot.routes.push_back({2, *parseIpAddress("10.9.0.1"), 900, 254});
  EXPECT_EQ(buildModel(snapshot, false)->ports.at(2)->gateway->gateway, "10.9.0.1");
}

TEST(Model, OneInterfaceOutOfASnapshot) {
  HostSnapshot snapshot;
  snapshot.links = {pciPort(2, "eth0", "0000:01:00.0"), vlanLink(11, "eth0.2", 2, 2), bondLink(3, "bond0")};
  PortFacts before;
  before.link.index = 2;
  before.number = 4;
  const auto port = onePort(snapshot, before);
  ASSERT_TRUE(port);
  EXPECT_EQ(port->number, 4) << "its place on the card is not to be seen from here";
  VlanFacts vlan;
  vlan.link.index = 11;
  EXPECT_EQ(oneVlan(snapshot, vlan)->link.name, "eth0.2");
  vlan.link.index = 2;
  EXPECT_FALSE(oneVlan(snapshot, vlan)) << "the number belongs to something else by now";
  TeamFacts team;
  team.link.index = 99;
  EXPECT_FALSE(oneTeam(snapshot, team));
}

TEST(Cards, Names) {
  EXPECT_EQ(placeOf(pciPort(2, "eth0", "0001:0a:1f.3")).cardName(), "pci 0001:0a:1f");
  EXPECT_EQ(placeOf(withParent(2, "usb0", "usb", "1-1:1.0")).cardName(), "usb 1-1");
  EXPECT_EQ(placeOf(ofKind(7, "veth")).cardName(), "virtual 7");
}

}  // namespace
}  // namespace ZEB::ethernet::test
