#include "Records.h"

#include <stdexcept>

namespace ZEB::test {

using namespace ethernet;

namespace {

constexpr std::uint8_t kOperUp = 6;        // IF_OPER_UP
constexpr std::uint8_t kOperTesting = 4;   // IF_OPER_TESTING
constexpr std::uint16_t kEthernet = 1;     // ARPHRD_ETHER
constexpr std::uint32_t kPermanent = 128;  // IFA_F_PERMANENT
constexpr std::uint8_t kTwistedPair = 0;   // PORT_TP

LinkModes modes(std::initializer_list<const char*> names) {
  LinkModes set;
  for (const char* name : names) set.set(linkModeBit(name).value());
  return set;
}

EthtoolFacts everyEthtoolFact() {
  EthtoolFacts facts;
  facts.supported = modes({"10baseT/Full", "100baseT/Full", "1000baseT/Full", "Autoneg", "TP"});
  facts.advertised = facts.supported;
  facts.autonegotiation = true;
  facts.speed = 100;
  facts.fullDuplex = true;
  facts.media = kTwistedPair;
  facts.linkDetected = true;
  facts.wakeOnLanSupported = 32;
  facts.wakeOnLanEnabled = 32;
  facts.eeeSupported = true;
  facts.eeeEnabled = false;
  facts.mac = {1, 2, 3, 4, 5, 6, 7, 8, 9};
  return facts;
}

LinkFacts link(std::uint32_t index, const char* name) {
  LinkFacts facts;
  facts.index = index;
  facts.name = name;
  facts.type = kEthernet;
  facts.mtu = 9000;
  facts.address = parseHardwareAddress("00:1A:2B:3C:4D:5E");
  setStatus(facts, operationalStatus::OK);
  return facts;
}

template <class Facts>
Facts interface(LinkFacts link) {
  Facts facts;
  facts.link = std::move(link);
  facts.addresses = {address("192.168.1.10", 24), address("192.168.1.11", 25), address("2001:db8::10", 64)};
  facts.gateway = route_t{"ipv4", "192.168.1.1", "255.255.255.0", 24};
  facts.sampleTime = 1700000000;
  return facts;
}

}  // namespace

void setStatus(LinkFacts& link, operationalStatus status) {
  const bool up = status != operationalStatus::Dormant;
  const bool carrier = status == operationalStatus::OK || status == operationalStatus::Degraded;
  link.flags = (up ? kUp : 0) | (carrier ? kLowerUp : 0);
  link.carrier = carrier;
  link.operState = status == operationalStatus::Degraded ? kOperTesting : kOperUp;
}

AddressFacts address(const std::string& text, std::uint8_t prefixLength) {
  AddressFacts facts;
  facts.address = parseIpAddress(text).value();
  facts.prefixLength = prefixLength;
  facts.flags = kPermanent;
  return facts;
}

TeamMember member(const std::string& name, EthTeamMemberRoleEnum role, operationalStatus status) {
  return {{name, role == EthTeamMemberRoleEnum::Active, role, status}, 1000};
}

HardwareFacts everyHardwareFact() {
  HardwareFacts facts;
  facts.bus = "pci";
  facts.device = "0000:03:00.0";
  facts.pci = PciAddress{0, 3, 0, 0};
  facts.virtualFunction = 4;
  facts.vendorId = 0x14e4;
  facts.deviceId = 0x1657;
  facts.vendorName = "Maker";
  facts.deviceName = "Gigabit Adapter";
  facts.revision = 3;
  facts.slot = 7;
  facts.slotKind = SlotKind::PciExpress;
  facts.productName = "Model M";
  facts.partNumber = "PN-1";
  return facts;
}

DriverFacts everyDriverFact() {
  return {"tg3", "3.137", "5719-v1.46"};
}

PortFacts everyPortFacts() {
  auto facts = interface<PortFacts>(link(2, "eth0"));
  facts.number = 2;
  facts.link.permanentAddress = facts.link.address;
  facts.link.statistics = LinkStatistics{11, 12, 13, 14};
  facts.link.ethtool = everyEthtoolFact();
  facts.link.hardware = std::make_shared<const HardwareFacts>(everyHardwareFact());
  facts.link.driver = std::make_shared<const DriverFacts>(everyDriverFact());
  return facts;
}

VlanFacts everyVlanFacts() {
  auto facts = interface<VlanFacts>(link(20, "eth0.100"));
  facts.link.kind = "vlan";
  facts.link.vlanId = 100;
  return facts;
}

TeamFacts everyTeamFacts() {
  auto facts = interface<TeamFacts>(link(10, "bond0"));
  facts.link.kind = "bond";
  facts.link.bond = BondFacts{0, 2};
  facts.members = {member("eth0", EthTeamMemberRoleEnum::Active, operationalStatus::OK),
                   member("eth1", EthTeamMemberRoleEnum::Active, operationalStatus::OK)};
  return facts;
}

AdapterFacts everyAdapterFacts() {
  AdapterFacts facts;
  facts.hardware = std::make_shared<const HardwareFacts>(everyHardwareFact());
  facts.driver = std::make_shared<const DriverFacts>(everyDriverFact());
  facts.portCount = 2;
  facts.status = operationalStatus::OK;
  return facts;
}

}  // namespace ZEB::test
