#include <gmock/gmock.h>

#include <functional>

#include "FakeSource.h"
#include "RecordedRecords.h"
#include "SnapshotBuilder.h"
#include "records/Inventory.h"

namespace ZEB::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Every getter of a port that can fail, by name, with an argument that was set before.
template <class Record>
struct Getter {
  const char* name;
  std::function<std::pair<int, bool>(const Record&)> call;  ///< result, and whether the argument is untouched
};

template <class Record, class Value>
Getter<Record> getter(const char* name, int (Record::*get)(Value&) const, Value before) {
  return {name, [get, before](const Record& record) {
            Value value = before;
            const int result = (record.*get)(value);
            return std::pair(result, value == before);
          }};
}

using Port = EthernetPort;
const std::vector<Getter<Port>> kPortGetters = {
    getter<Port, std::string>("PciProductStr", &Port::getPortPciProductStr, "before"),
    getter<Port, std::string>("PermanentAddress", &Port::getPermanentAddress, "before"),
    getter<Port, EthPortTypeEnum>("PortType", &Port::getPortType, EthPortTypeEnum{999}),
    getter<Port, EthPortLinkEnum>("LinkType", &Port::getPortLinkType, EthPortLinkEnum{999}),
    getter<Port, std::uint16_t>("PortNumber", &Port::getPortNumber, 999),
    getter<Port, std::uint16_t>("VirtualPortNumber", &Port::getVirtualPortNumber, 999),
    getter<Port, unsigned long>("SupportedSpeed", &Port::getPortSupportedSpeed, 999),
    getter<Port, unsigned long>("Speed", &Port::getPortSpeed, 999),
    getter<Port, unsigned long>("MaxFrameSize", &Port::getPortMaxFrameSize, 999),
    getter<Port, operationalStatus>("Status", &Port::getPortStatus, operationalStatus{999}),
    getter<Port, std::uint16_t>("State", &Port::getPortState, 999),
    getter<Port, std::string>("LinkMessage", &Port::getPortLinkMessage, "before"),
    getter<Port, EthPortAddressOriginEnum>("Origin", &Port::getAddressOrigin, EthPortAddressOriginEnum{999}),
    getter<Port, route_t>("Gateway", &Port::getDefaultGateway, route_t{"x", "y", "z", 9}),
};

TEST(PortRecord, KnowsEverythingOfAFullPort) {
  const auto adapters = adaptersOf("one_port.json");
  ASSERT_EQ(adapters.size(), 1u);
  const EthernetPort& port = adapters[0].ports.at(0);
  for (const auto& each : kPortGetters) EXPECT_EQ(each.call(port), std::pair(0, false)) << each.name;
  std::string text;
  EXPECT_EQ(port.getOsDeviceName(text), 0);
  EXPECT_EQ(text, "eth0");
  EXPECT_EQ(port.getPortPciProductStr(text), 0);
  EXPECT_EQ(text, "82574L Gigabit Network Connection");
  EXPECT_EQ(port.getPermanentAddress(text), 0);
  EXPECT_EQ(text, "00:1b:21:00:00:5e");
  EXPECT_EQ(port.getPortLinkMessage(text), 0);
  EXPECT_EQ(text, "link up, 1000 Mbit/s full duplex");
  EXPECT_THAT(port.networkAddresses(), ElementsAre("00:1b:21:00:00:aa"));
  EXPECT_THAT(port.getCapabilities(), ElementsAre(3, 8));
  EXPECT_THAT(port.getEnabledCapabilities(), ElementsAre(3, 8));
  EXPECT_THAT(port.getIPv4Addresses(), ElementsAre(IPv4AddressRecord{"192.168.1.10", "255.255.255.0"}));
  EXPECT_THAT(port.getIPv6Addresses(), ElementsAre(IPv6AddressRecord{"2001:db8::10", 64},
                                                   IPv6AddressRecord{"fe80::21b:21ff:fe00:5e", 64}));
}

TEST(PortRecord, NumbersOfAFullPort) {
  const EthernetPort port = adaptersOf("one_port.json").at(0).ports.at(0);
  std::uint16_t number = 0;
  unsigned long big = 0;
  bool flag = false;
  EXPECT_EQ(port.getPortNumber(number), 0);
  EXPECT_EQ(number, 1);
  EXPECT_EQ(port.getVirtualPortNumber(number), 0);
  EXPECT_EQ(number, 1);
  EXPECT_EQ(port.getPortState(number), 0);
  EXPECT_EQ(number, 2);
  EXPECT_EQ(port.getPortSupportedSpeed(big), 0);
  EXPECT_EQ(big, 1'000'000'000u);
  EXPECT_EQ(port.getPortSpeed(big), 0);
  EXPECT_EQ(big, 1'000'000'000u);
  EXPECT_EQ(port.getPortMaxFrameSize(big), 0);
  EXPECT_EQ(big, 9000u);
  EXPECT_EQ(port.getFullDuplex(flag), 0);
  EXPECT_TRUE(flag);
  flag = false;
  EXPECT_EQ(port.getAutoSense(flag), 0);
  EXPECT_TRUE(flag);
  EthPortTypeEnum type{};
  EXPECT_EQ(port.getPortType(type), 0);
  EXPECT_EQ(static_cast<int>(type), 62);
  EthPortLinkEnum link{};
  EXPECT_EQ(port.getPortLinkType(link), 0);
  EXPECT_EQ(static_cast<int>(link), 2);
  operationalStatus status{};
  EXPECT_EQ(port.getPortStatus(status), 0);
  EXPECT_EQ(status, operationalStatus::OK);
  EthPortAddressOriginEnum origin{};
  EXPECT_EQ(port.getAddressOrigin(origin), 0);
  EXPECT_EQ(static_cast<int>(origin), 3);
  route_t route;
  EXPECT_EQ(port.getDefaultGateway(route), 0);
  EXPECT_EQ(route, (route_t{"ipv4", "192.168.1.1", "255.255.255.0", 24}));
}

TEST(PortRecord, StatisticsOfAFullPort) {
  const EthernetPort port = adaptersOf("one_port.json").at(0).ports.at(0);
  EXPECT_TRUE(port.hasStatistics());
  ethStats_st statistics;
  ASSERT_EQ(port.getEthStats(statistics), 0);
  EXPECT_EQ(statistics.packetsReceived, 11u);
  EXPECT_EQ(statistics.packetsTransmitted, 22u);
  EXPECT_EQ(statistics.bytesReceived, 3333u);
  EXPECT_EQ(statistics.bytesTransmitted, 4444u);
  EXPECT_EQ(statistics.alignmentErrors, 1u);
  EXPECT_EQ(statistics.fcsErrors, 2u);
  EXPECT_EQ(statistics.singleCollisionFrames, 3u);
  EXPECT_EQ(statistics.multipleCollisionFrames, 4u);
  EXPECT_EQ(statistics.deferredTransmissions, 5u);
  EXPECT_EQ(statistics.lateCollisions, 6u);
  EXPECT_EQ(statistics.excessiveCollisions, 7u);
  EXPECT_EQ(statistics.internalMacTransmitErrors, 8u);
  EXPECT_EQ(statistics.internalMacReceiveErrors, 9u);
  EXPECT_EQ(statistics.interfaceName, "eth0");
  EXPECT_EQ(statistics.sampleTime, 1700000000);
  EXPECT_EQ(statistics.known, 0x1FFFu);
}

/// Whether a record fails all of these getters and leaves their arguments alone.
void expectNothing(const EthernetPort& port) {
  for (const auto& each : kPortGetters) EXPECT_EQ(each.call(port), std::pair(1, true)) << each.name;
  for (const bool before : {true, false}) {
    bool flag = before;
    EXPECT_NE(port.getFullDuplex(flag), 0);
    EXPECT_NE(port.getAutoSense(flag), 0);
    EXPECT_EQ(flag, before);
  }
  ethStats_st statistics;
  statistics.fcsErrors = 77;
  EXPECT_NE(port.getEthStats(statistics), 0);
  EXPECT_EQ(statistics.fcsErrors, 77u);
  EXPECT_FALSE(port.hasStatistics());
  EXPECT_THAT(port.networkAddresses(), IsEmpty());
  EXPECT_THAT(port.getCapabilities(), IsEmpty());
  EXPECT_THAT(port.getEnabledCapabilities(), IsEmpty());
  EXPECT_THAT(port.getIPv4Addresses(), IsEmpty());
  EXPECT_THAT(port.getIPv6Addresses(), IsEmpty());
}

TEST(PortRecord, KnowsNothingOfABarePort) {
  const auto adapters = adaptersOf("bare_port.json");
  ASSERT_EQ(adapters.size(), 1u);
  const EthernetPort& port = adapters[0].ports.at(0);
  std::string name;
  EXPECT_EQ(port.getOsDeviceName(name), 0);
  EXPECT_EQ(name, "eth0");
  expectNothing(port);
}

TEST(PortRecord, DefaultConstructed) {
  EthernetPort port;
  std::string name = "before";
  EXPECT_NE(port.getOsDeviceName(name), 0);
  EXPECT_EQ(name, "before");
  expectNothing(port);
  EXPECT_NE(port.refresh(), 0);
}

TEST(AdapterRecord, OfAFullPort) {
  const EthernetAdapterDataObject adapter = adaptersOf("one_port.json").at(0);
  const auto text = [&](int (EthernetAdapterDataObject::*get)(std::string&) const) {
    std::string value;
    EXPECT_EQ((adapter.*get)(value), 0);
    return value;
  };
  EXPECT_EQ(text(&EthernetAdapterDataObject::getManufacturer), "Intel Corporation");
  EXPECT_EQ(text(&EthernetAdapterDataObject::getModel), "Gigabit Server Adapter");
  EXPECT_EQ(text(&EthernetAdapterDataObject::getpartNumber), "E12345-001");
  EXPECT_EQ(text(&EthernetAdapterDataObject::getHardwareVersion), "1");
  EXPECT_EQ(text(&EthernetAdapterDataObject::getDriverName), "e1000e");
  EXPECT_EQ(text(&EthernetAdapterDataObject::getDriverVersion), "3.8.7");
  EXPECT_EQ(text(&EthernetAdapterDataObject::getFirmwareVersion), "2.1-0");
  std::uint32_t number = 0;
  EXPECT_EQ(adapter.getVendorId(number), 0);
  EXPECT_EQ(number, 0x8086u);
  EXPECT_EQ(adapter.getDeviceId(number), 0);
  EXPECT_EQ(number, 0x10D3u);
  EXPECT_EQ(adapter.getNumberOfPorts(number), 0);
  EXPECT_EQ(number, 1u);
  operationalStatus status{};
  EXPECT_EQ(adapter.getAdapterStatus(status), 0);
  EXPECT_EQ(status, operationalStatus::OK);
  physloc_t location;
  EXPECT_EQ(adapter.getPhysLoc(location), 0);
  EXPECT_EQ(location, makeSlotPhysloc(PhyslocType::PciExpressSlot, 3));
  EXPECT_FALSE(text(&EthernetAdapterDataObject::getPhysLocStr).empty());
}

void expectNothing(const EthernetAdapterDataObject& adapter) {
  using Adapter = EthernetAdapterDataObject;
  for (const auto get : {&Adapter::getManufacturer, &Adapter::getModel, &Adapter::getpartNumber,
                         &Adapter::getHardwareVersion, &Adapter::getDriverName, &Adapter::getDriverVersion,
                         &Adapter::getFirmwareVersion, &Adapter::getPhysLocStr}) {
    std::string text = "before";
    EXPECT_NE((adapter.*get)(text), 0);
    EXPECT_EQ(text, "before");
  }
  for (const auto get : {&Adapter::getVendorId, &Adapter::getDeviceId}) {
    std::uint32_t id = 999;
    EXPECT_NE((adapter.*get)(id), 0);
    EXPECT_EQ(id, 0u) << "an id that is not known reads 0";
  }
  operationalStatus status{999};
  EXPECT_NE(adapter.getAdapterStatus(status), 0);
  physloc_t location = makeEmbeddedPhysloc(9);
  EXPECT_NE(adapter.getPhysLoc(location), 0);
  EXPECT_EQ(location, makeEmbeddedPhysloc(9));
}

TEST(AdapterRecord, OfABarePortAndOfNone) {
  expectNothing(adaptersOf("bare_port.json").at(0));
  expectNothing(EthernetAdapterDataObject());
  const EthernetAdapterDataObject none{Logger()};
  std::uint32_t count = 999;
  EXPECT_NE(none.getNumberOfPorts(count), 0);
  expectNothing(none.portAt(0));
  expectNothing(adaptersOf("one_port.json").at(0).portAt(1));
}

TEST(AdapterRecord, OnTheBoard) {
  const auto adapters = adaptersOf("on_board.json");
  ASSERT_EQ(adapters.size(), 2u);
  physloc_t location;
  EXPECT_EQ(adapters[0].getPhysLoc(location), 0);
  EXPECT_EQ(location, makeEmbeddedPhysloc(1, "Onboard LAN 1"));
  std::string text;
  EXPECT_EQ(adapters[0].getPhysLocStr(text), 0);
  EXPECT_EQ(text, "0801");
  EXPECT_EQ(adapters[1].getPhysLoc(location), 0);
  EXPECT_EQ(location, makeEmbeddedPhysloc(2));
}

TEST(AdapterRecord, TwoInOnePlaceAreToldApart) {
  ethernet::test::FakeSource::Host host;
  for (const char* function : {"0000:01:00.0", "0000:02:00.0"}) {
    auto& link = host.snapshot.links.emplace_back(
        ethernet::test::pciPort(function[6] == '1' ? 2 : 3, function, function));
    ethernet::HardwareFacts hardware = *link.hardware;
    hardware.slot = 0;
    link.hardware = std::make_shared<ethernet::HardwareFacts>(hardware);
  }
  EthernetMRA source(
      std::make_shared<ethernet::Inventory>(std::make_unique<ethernet::test::FakeSource>(host), false));
  EthernetAdapterDataObject first, second;
  ASSERT_EQ(source.getFirstData(false, first), 0);
  ASSERT_EQ(source.getNextData(false, second), 0);
  std::string position, other;
  EXPECT_EQ(first.getPhysLocStr(position), 0);
  EXPECT_EQ(second.getPhysLocStr(other), 0);
  EXPECT_NE(position, other);
}

TEST(AdapterRecord, TwoCards) {
  const auto adapters = adaptersOf("two_cards.json");
  ASSERT_EQ(adapters.size(), 2u);
  EXPECT_EQ(adapters[0].ports.size(), 2u);
  EXPECT_EQ(adapters[1].ports.size(), 4u);
  operationalStatus status{};
  EXPECT_EQ(adapters[0].getAdapterStatus(status), 0);
  EXPECT_EQ(status, operationalStatus::Degraded) << "eth1 has no cable";
  EXPECT_EQ(adapters[1].getAdapterStatus(status), 0);
  EXPECT_EQ(status, operationalStatus::OK) << "eth5 is down on purpose";
  physloc_t location;
  EXPECT_EQ(adapters[1].getPhysLoc(location), 0);
  EXPECT_EQ(location.number(), 7);
  std::string message;
  EXPECT_EQ(adapters[0].ports[1].getPortLinkMessage(message), 0);
  EXPECT_EQ(message, "no link: no cable");
}

TEST(PortRecord, GatewaysOfTwoCards) {
  const auto adapters = adaptersOf("two_cards.json");
  route_t route;
  EXPECT_EQ(adapters[0].ports[0].getDefaultGateway(route), 0);
  EXPECT_EQ(route.gateway, "192.168.1.254") << "the lower metric, though in another table";
  EXPECT_NE(adapters[0].ports[1].getDefaultGateway(route), 0);
  EXPECT_EQ(adapters[1].ports[0].getDefaultGateway(route), 0);
  EXPECT_EQ(route, (route_t{"ipv4", "10.0.0.1", "255.255.0.0", 16}));
  EXPECT_EQ(adapters[1].ports[2].getDefaultGateway(route), 0);
  EXPECT_EQ(route, (route_t{"ipv6", "fe80::1", "", 64}));
}

TEST(Records, AreCheapToHold) {
  EXPECT_LE(sizeof(EthernetPort), 64u);
  EXPECT_LE(sizeof(EthernetTeamDataObject), 64u);
  EXPECT_LE(sizeof(EthernetVLanDataObject), 32u);
}

}  // namespace
}  // namespace ZEB::test
