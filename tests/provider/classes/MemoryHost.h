#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "Records.h"
#include "ethernet/EthernetMRA.h"
#include "ethernet/EthernetTeamMRA.h"
#include "records/Inventory.h"
#include "snapshot/HostSource.h"

namespace ZEB::test {

/// A host in memory, whose records follow what the test changes. Interfaces are up with carrier and know
/// little else. While other threads read the records, `change` is the only way to change it.
class MemoryHost {
 public:
  MemoryHost()
      : _inventory(std::make_shared<ethernet::Inventory>(std::make_unique<Source>(_machine), false)) {}

  /// Makes `changes` at once for whoever reads meanwhile.
  template <typename Changes>
  void change(Changes changes) {
    const std::lock_guard lock(_machine->mutex);
    changes();
  }

  ethernet::LinkFacts& addPort(const std::string& name) {
    auto& link = add(name);
    link.parentBus = "pci";
    link.parentDevice = "device of " + name;
    return link;
  }
  /// A port of a PCI card: one function of the device on that bus.
  ethernet::LinkFacts& addCardPort(const std::string& name, std::uint8_t bus, std::uint8_t function) {
    auto& link = addPort(name);
    ethernet::HardwareFacts hardware;
    hardware.bus = "pci";
    hardware.device = *link.parentDevice;
    hardware.pci = ethernet::PciAddress{0, bus, 0, function};
    link.hardware = std::make_shared<const ethernet::HardwareFacts>(std::move(hardware));
    return link;
  }
  ethernet::LinkFacts& addTeam(const std::string& name) {
    auto& link = add(name);
    link.kind = "bond";
    link.bond.emplace();
    return link;
  }
  ethernet::LinkFacts& addVlan(const std::string& name, const std::string& lower) {
    const auto lowerIndex = this->link(lower).index;
    auto& link = add(name);
    link.kind = "vlan";
    link.lowerIndex = lowerIndex;
    return link;
  }
  void join(const std::string& port, const std::string& team) {
    link(port).masterIndex = link(team).index;
    link(port).bondMember = ethernet::BondMemberFacts{0, 0, {}};
  }

  void addAddress(const std::string& name, const std::string& text, std::uint8_t prefixLength) {
    auto& facts = _machine->snapshot.addresses.emplace_back(address(text, prefixLength));
    facts.index = link(name).index;
  }
  void addGateway(const std::string& name, const std::string& gateway) {
    auto& route = _machine->snapshot.routes.emplace_back();
    route.index = link(name).index;
    route.gateway = ethernet::parseIpAddress(gateway).value();
    route.table = 254;
  }

  ethernet::LinkFacts& link(const std::string& name) {
    for (auto& link : _machine->snapshot.links) {
      if (link.name == name) return link;
    }
    throw std::out_of_range(name);
  }
  ethernet::HostSnapshot& snapshot() { return _machine->snapshot; }
  const ethernet::HostSnapshot& snapshot() const { return _machine->snapshot; }

  /// The port or the team of that position.
  EthernetPort port(std::size_t position) {
    EthernetMRA source(_inventory);
    EthernetAdapterDataObject adapter;
    source.getFirstData(true, adapter);
    for (; position > 0; --position) source.getNextData(false, adapter);
    return adapter.ports.at(0);
  }
  EthernetTeamDataObject team(std::size_t position) {
    EthernetTeamMRA source(_inventory);
    EthernetTeamDataObject team;
    source.getFirstData(true, team);
    for (; position > 0; --position) source.getNextData(false, team);
    return team;
  }

 private:
  struct Machine {
    std::mutex mutex;
    ethernet::HostSnapshot snapshot;
  };

  class Source : public ethernet::HostSource {
   public:
    explicit Source(std::shared_ptr<Machine> machine) : _machine(std::move(machine)) {}
    ethernet::Outcome<ethernet::HostSnapshot> readAll() override { return copy(); }
    ethernet::Outcome<ethernet::HostSnapshot> readOne(std::uint32_t) override { return copy(); }
    bool announced() override { return true; }

   private:
    ethernet::HostSnapshot copy() {
      const std::lock_guard lock(_machine->mutex);
      return _machine->snapshot;
    }

    std::shared_ptr<Machine> _machine;
  };

  ethernet::LinkFacts& add(const std::string& name) {
    auto& link = _machine->snapshot.links.emplace_back();
    link.index = static_cast<std::uint32_t>(_machine->snapshot.links.size());
    link.name = name;
    setStatus(link, operationalStatus::OK);
    return link;
  }

  std::shared_ptr<Machine> _machine = std::make_shared<Machine>();
  std::shared_ptr<ethernet::Inventory> _inventory;
};

}  // namespace ZEB::test
