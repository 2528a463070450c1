#include "metrics/MachineReading.h"

#include <set>

#include "tree/Links.h"

namespace ZebManager {
namespace {

void readCounters(Namespace& model, MachineReading& reading) {
  std::unordered_map<std::string, std::string> ports;
  forEachInstance(model, "ZEB_EthernetPortStatisticalData", [&](const PropertyView& view) {
    ports[view.reference("Stats")] = view.reference("ManagedElement");
  });
  forEachInstance(model, "ZEB_EthernetStatistics", [&](const PropertyView& view) {
    const auto port = ports.find(view.path());
    if (port == ports.end()) return;
    PortCounters& counters = reading.counters[port->second];
    for (std::size_t i = 0; i < counters.size(); ++i) counters[i] = view.number(kCounterProperties[i]);
  });
}

/// What a port or team carries.
template <class Carrier>
void takeCarried(MachineReading& reading, const Carrier& carrier, std::set<std::string>& seen) {
  const auto takeGateways = [&](const TreeInterface& interface) {
    for (const TreeAddress& address : interface.addresses) {
      const bool fresh = seen.insert(interface.name + " " + address.gateway).second;
      if (!address.gateway.empty() && fresh) reading.gateways.push_back({interface.name, address.gateway});
    }
  };
  takeGateways(carrier);
  for (const TreeVlan& vlan : carrier.vlans) {
    reading.vlans.push_back({&vlan, carrier.name});
    takeGateways(vlan);
  }
}

}  // namespace

void readMachine(Namespace& model, MachineReading& reading) {
  reading.tree = readTree(model);
  readCounters(model, reading);
  forEachInstance(model, "ZEB_EthernetCollection",
                  [&](const PropertyView& view) { reading.status = view.number("GroupOperationalStatus"); });
  std::set<std::string> gateways;
  for (const TreeCard& card : reading.tree.cards) {
    for (const TreePort& port : card.ports) {
      reading.ports.push_back({&card, &port, findByPath(reading.counters, port.path)});
      takeCarried(reading, port, gateways);
    }
  }
  for (const TreeTeam& team : reading.tree.teams) {
    for (const TreeMember& member : team.members) reading.members.push_back({&team, &member});
    takeCarried(reading, team, gateways);
  }
}

}  // namespace ZebManager
