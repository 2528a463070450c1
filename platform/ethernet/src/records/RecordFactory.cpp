#include "records/RecordFactory.h"

namespace ZEB::ethernet {
namespace {

std::vector<EthernetVLanDataObject> vlanRecords(const std::vector<std::shared_ptr<const VlanFacts>>& vlans,
                                                const std::shared_ptr<Inventory>& inventory) {
  std::vector<EthernetVLanDataObject> records;
  records.reserve(vlans.size());
  for (const auto& facts : vlans) records.emplace_back(FactsHandle<VlanFacts>(facts, inventory));
  return records;
}

}  // namespace

EthernetAdapterDataObject makeRecord(const AdapterEntry& entry, const std::shared_ptr<Inventory>& inventory) {
  std::vector<EthernetPort> ports;
  ports.reserve(entry.ports.size());
  for (const PortEntry& port : entry.ports) {
    ports.emplace_back(FactsHandle<PortFacts>(port.facts, inventory)).vlans =
        vlanRecords(port.vlans, inventory);
  }
  return {FactsHandle<AdapterFacts>(entry.facts, inventory), std::move(ports)};
}

EthernetTeamDataObject makeRecord(const TeamEntry& entry, const std::shared_ptr<Inventory>& inventory) {
  return {FactsHandle<TeamFacts>(entry.facts, inventory), vlanRecords(entry.vlans, inventory)};
}

}  // namespace ZEB::ethernet
