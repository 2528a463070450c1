#include "metrics/MachineReading.h"

#include <set>

#include "tree/Links.h"
#include "values/Values.h"

namespace ZebManager {
namespace {

constexpr char kKey[] = "InstanceID";

std::string keyOf(const PathBody& path) {
  const NamedValue* const key = path.keys.find(kKey);
  return key && key->data.type == CMPI_string ? std::string(textOf(key->data.value.string)) : std::string();
}

/// Where the counters of each port are, by its path.
std::unordered_map<std::string, std::size_t> countersOfPorts(Namespace& model,
                                                             const std::vector<std::string>& keys) {
  std::unordered_map<std::string, std::size_t> places;
  for (const std::string& key : keys) places.emplace(key, places.size());
  std::unordered_map<std::string, std::size_t> ofPorts;
  forEachName(model, "ZEB_EthernetPortStatisticalData", [&](const PathBody& link) {
    const PathBody* const statistics = endOf(link, "Stats");
    const auto place = statistics ? places.find(keyOf(*statistics)) : places.end();
    if (place != places.end()) ofPorts.emplace(pathInKey(link, "ManagedElement"), place->second);
  });
  return ofPorts;
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

CounterReadings readCounters(Namespace& model) {
  CounterReadings read;
  PropertyPlaces places(kCounterProperties);
  forEachInstance(model, "ZEB_EthernetStatistics", kCounterProperties, [&](const Instance& instance) {
    read.keys.push_back(keyOf(*instance.body().path));
    PortCounters& counters = read.counters.emplace_back();
    places.forEachNumber(instance, [&](std::size_t i, auto number) { counters[i] = number; });
  });
  return read;
}

void readMachine(Namespace& model, const std::vector<std::string>& keys, MachineReading& reading) {
  reading.tree = readTree(model, TreeAddresses::WithGateways);
  const auto counters = countersOfPorts(model, keys);
  forEachInstance(model, "ZEB_EthernetCollection", {"GroupOperationalStatus"},
                  [&](const PropertyView& view) { reading.status = view.number("GroupOperationalStatus"); });
  std::set<std::string> gateways;
  for (const TreeCard& card : reading.tree.cards) {
    for (const TreePort& port : card.ports) {
      reading.ports.push_back({&card, &port});
      if (const std::size_t* const place = findByPath(counters, port.path))
        reading.counters.emplace_back(deviceLabel(port.name, port.path), *place);
      takeCarried(reading, port, gateways);
    }
  }
  for (const TreeTeam& team : reading.tree.teams) {
    for (const TreeMember& member : team.members) reading.members.push_back({&team, &member});
    takeCarried(reading, team, gateways);
  }
}

}  // namespace ZebManager
