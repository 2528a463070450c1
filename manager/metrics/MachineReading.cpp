#include "metrics/MachineReading.h"

#include <set>

#include "tree/Links.h"

namespace ZebManager {
namespace {

void readCounters(Namespace& model, MachineReading& reading) {
  const Links toPort = readLinks(model, "ZEB_EthernetPortStatisticalData", "Stats", "ManagedElement");
  const auto take = [&](const PropertyView& view) {
    const std::string statistics = view.path();
    for (const std::string& port : follow(toPort, statistics)) {
      PortCounters& counters = reading.counters[port];
      for (std::size_t i = 0; i < counters.size(); ++i) counters[i] = view.number(kCounterProperties[i]);
    }
  };
  forEachInstance(model, "ZEB_EthernetStatistics", kCounterProperties, take);
}

/// What a port or team carries.
template <class Carrier>
void takeCarried(MachineReading& reading, const Carrier& carrier, std::set<std::string>& seen) {
  const auto takeGateways = [&](const TreeInterface& interface) {
    if (interface.addresses.empty()) return;
    const std::string device = deviceLabel(interface.name, interface.path);
    for (const TreeAddress& address : interface.addresses) {
      const bool fresh = seen.insert(device + " " + address.gateway).second;
      if (!address.gateway.empty() && fresh) reading.gateways.push_back({device, address.gateway});
    }
  };
  takeGateways(carrier);
  for (const TreeVlan& vlan : carrier.vlans) {
    reading.vlans.push_back({&vlan, deviceLabel(carrier.name, carrier.path)});
    takeGateways(vlan);
  }
}

}  // namespace

std::string deviceLabel(const std::string& name, const std::string& path) {
  constexpr std::string_view kBeforeKey = "=\"";
  if (!name.empty()) return name;
  const std::size_t key = path.rfind(kBeforeKey);
  if (key == std::string::npos) return path;
  const std::size_t begin = key + kBeforeKey.size();
  return path.substr(begin, path.size() - begin - 1);
}

void readMachine(Namespace& model, MachineReading& reading) {
  reading.tree = readTree(model, TreeAddresses::WithGateways);
  readCounters(model, reading);
  forEachInstance(model, "ZEB_EthernetCollection", {"GroupOperationalStatus"},
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
