// zeb_bench_server PORTS FILE: writes a recorded server of that many ports.
// zeb_bench_server --teams TEAMS FILE: one of that many teams of two.
//
// Ports are on cards of four, each with an IPv4 and an IPv6 address, counters and a driver, every fourth with
// a gateway. Of every hundred ports, eight are two teams of four, and one carries four VLANs.

#include <algorithm>
#include <fstream>
#include <iostream>
#include <string>

#include "recorded/SnapshotWriter.h"

namespace {

using namespace ZEB::ethernet;

constexpr std::uint32_t kUpWithCarrier = 0x1 | 0x40 | 0x10000;  // IFF_UP, IFF_RUNNING, IFF_LOWER_UP
constexpr std::uint8_t kOperUp = 6;
constexpr std::uint32_t kPermanent = 128;  // IFA_F_PERMANENT
constexpr std::size_t kPortsOfCard = 4, kHundred = 100, kTeamPorts = 8, kTeamSize = 4, kPair = 2, kVlans = 4;

class Server {
 public:
  explicit Server(std::size_t ports) {
    for (std::size_t i = 0; i < ports; ++i) addPort(i);
    for (std::size_t i = 0; i + kHundred <= ports; i += kHundred) {
      for (std::size_t team = 0; team < kTeamPorts; team += kTeamSize) addTeam(i + team, kTeamSize);
      for (std::size_t vlan = 1; vlan <= kVlans; ++vlan) addVlan(i + kTeamPorts, vlan);
    }
  }

  static Server ofTeams(std::size_t teams) {
    Server server;
    for (std::size_t i = 0; i < kPair * teams; ++i) server.addPort(i);
    for (std::size_t i = 0; i < teams; ++i) server.addTeam(kPair * i, kPair);
    return server;
  }

  std::string text() && { return writeSnapshot(std::move(_snapshot)); }

 private:
  Server() = default;

  LinkFacts& add(std::string name) {
    LinkFacts& link = _snapshot.links.emplace_back();
    link.index = static_cast<std::uint32_t>(_snapshot.links.size());
    link.name = std::move(name);
    link.type = 1;
    link.flags = kUpWithCarrier;
    link.operState = kOperUp;
    link.carrier = true;
    link.mtu = 1500;
    link.address = HardwareAddress{2,
                                   0,
                                   0,
                                   static_cast<std::uint8_t>(link.index >> 16),
                                   static_cast<std::uint8_t>(link.index >> 8),
                                   static_cast<std::uint8_t>(link.index)};
    link.statistics = LinkStatistics{link.index, 2, 3, 4};
    return link;
  }

  void addPort(std::size_t i) {
    LinkFacts& link = add("eth" + std::to_string(i));
    link.parentBus = "pci";
    link.parentDevice = "device " + std::to_string(i);
    HardwareFacts hardware;
    hardware.bus = "pci";
    hardware.device = *link.parentDevice;
    const std::size_t card = i / kPortsOfCard;
    hardware.pci = PciAddress{static_cast<std::uint32_t>(card / 256), static_cast<std::uint8_t>(card % 256),
                              0, static_cast<std::uint8_t>(i % kPortsOfCard)};
    hardware.deviceName = "Gigabit Adapter";
    hardware.partNumber = "PN-1";
    link.hardware = std::make_shared<const HardwareFacts>(std::move(hardware));
    link.driver = std::make_shared<const DriverFacts>(DriverFacts{"driver", "1.0", "2.0"});
    link.ethtool.speed = 1000;
    link.ethtool.fullDuplex = true;
    const std::uint32_t index = link.index;
    addAddress(index, "10.1." + std::to_string(i / 250) + "." + std::to_string(1 + i % 250), 16);
    addAddress(index, "2001:db8::" + std::to_string(i % 10000), 64);
    if (i % kPortsOfCard == 0) {
      _snapshot.routes.push_back({index, parseIpAddress("10.1.255.254").value(), 0, 254});
    }
  }

  void addAddress(std::uint32_t index, const std::string& text, std::uint8_t prefixLength) {
    _snapshot.addresses.push_back({index, parseIpAddress(text).value(), prefixLength, kPermanent, {}});
  }

  /// Of the ports from that position on.
  void addTeam(std::size_t first, std::size_t members) {
    LinkFacts& team = add("bond" + std::to_string(first));
    team.kind = "bond";
    team.bond = BondFacts{0, {}};
    const std::uint32_t index = team.index;
    for (std::size_t i = first; i < first + members; ++i) {
      _snapshot.links[i].masterIndex = index;
      _snapshot.links[i].bondMember = BondMemberFacts{0, 0, {}};
    }
    addAddress(index, "10.2.0.1", 16);
  }

  void addVlan(std::size_t port, std::size_t id) {
    const std::string carrier = _snapshot.links[port].name;
    LinkFacts& vlan = add(carrier + "." + std::to_string(id));
    vlan.kind = "vlan";
    vlan.vlanId = static_cast<std::uint16_t>(id);
    vlan.lowerIndex = static_cast<std::uint32_t>(port + 1);
    addAddress(vlan.index, "10.3.0.1", 16);
  }

  HostSnapshot _snapshot;
};

}  // namespace

int main(int argc, char** argv) {
  const bool teams = argc == 4 && std::string(argv[1]) == "--teams";
  if (argc != 3 && !teams) {
    std::cerr << "usage: zeb_bench_server PORTS FILE | --teams TEAMS FILE\n";
    return 2;
  }
  std::ofstream file(argv[argc - 1]);
  const std::size_t count = std::stoul(argv[argc - 2]);
  file << (teams ? Server::ofTeams(count) : Server(count)).text() << std::flush;
  return file ? 0 : 1;
}
