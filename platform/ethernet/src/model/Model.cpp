#include "model/Model.h"

#include <algorithm>
#include <map>

#include "model/Assembler.h"
#include "model/Cards.h"
#include "model/Kinds.h"
#include "model/LinkStatus.h"
#include "model/Location.h"

namespace ZEB::ethernet {
namespace {

using Vlans = std::unordered_map<std::uint32_t, std::vector<std::shared_ptr<const VlanFacts>>>;

/// How many adapters are in a place so far.
using Places = std::map<decltype(physloc_t::bytes), std::uint32_t>;

struct PlacedPort {
  PortPlace place;
  const LinkFacts* link;
};

Vlans vlansByCarrier(Assembler& assembler, Model& model) {
  Vlans vlans;
  for (const LinkFacts& link : assembler.links()) {
    const LinkFacts* carrier = isVlan(link) ? assembler.carrierOf(link) : nullptr;
    if (!carrier) continue;
    std::shared_ptr<const VlanFacts> facts = assembler.vlan(link);
    vlans[carrier->index].push_back(facts);
    model.vlans.emplace(link.index, std::move(facts));
  }
  return vlans;
}

std::vector<PlacedPort> portsInOrder(const Assembler& assembler, bool includeVirtual) {
  std::vector<PlacedPort> ports;
  for (const LinkFacts& link : assembler.links()) {
    if (isPort(link, includeVirtual)) ports.push_back({placeOf(link), &link});
  }
  if (!std::ranges::is_sorted(ports, {}, &PlacedPort::place))
    std::ranges::sort(ports, {}, &PlacedPort::place);
  return ports;
}

AdapterEntry makeAdapter(const Assembler& assembler, std::span<const PlacedPort> placed, const Vlans& vlans,
                         Places& taken) {
  AdapterEntry adapter;
  for (std::size_t i = 0; i < placed.size(); ++i) {
    const auto facts = assembler.port(*placed[i].link);
    if (facts->link.hardware) facts->number = static_cast<std::uint16_t>(i + 1);
    const auto own = vlans.find(facts->link.index);
    adapter.ports.push_back({facts, own == vlans.end() ? decltype(own->second){} : own->second});
  }
  adapter.key = placed.front().place.cardName();
  std::vector<std::shared_ptr<const PortFacts>> ports;
  std::ranges::transform(adapter.ports, std::back_inserter(ports), &PortEntry::facts);
  AdapterFacts facts = adapterOf(ports);
  if (const auto location = locationOf(facts)) facts.locationPart = taken[location->bytes]++;
  adapter.facts = std::make_shared<AdapterFacts>(std::move(facts));
  return adapter;
}

void addAdapters(const Assembler& assembler, bool includeVirtual, const Vlans& vlans, Model& model) {
  const std::vector<PlacedPort> ports = portsInOrder(assembler, includeVirtual);
  Places taken;
  for (std::size_t begin = 0, end = 0; begin < ports.size(); begin = end) {
    while (end < ports.size() && ports[end].place.sameCard(ports[begin].place)) ++end;
    model.adapters.push_back(
        makeAdapter(assembler, std::span(ports).subspan(begin, end - begin), vlans, taken));
    for (const PortEntry& port : model.adapters.back().ports)
      model.ports.emplace(port.facts->link.index, port.facts);
  }
}

void addTeams(const Assembler& assembler, const Vlans& vlans, Model& model) {
  for (const LinkFacts& link : assembler.links()) {
    if (!isTeam(link)) continue;
    const auto own = vlans.find(link.index);
    model.teams.push_back({assembler.team(link), own == vlans.end() ? decltype(own->second){} : own->second});
    model.teamsByIndex.emplace(link.index, model.teams.back().facts);
  }
}

}  // namespace

std::shared_ptr<const Model> buildModel(HostSnapshot snapshot, bool includeVirtual) {
  Assembler assembler(std::move(snapshot));
  auto model = std::make_shared<Model>();
  const Vlans vlans = vlansByCarrier(assembler, *model);
  addAdapters(assembler, includeVirtual, vlans, *model);
  addTeams(assembler, vlans, *model);
  return model;
}

bool isMadeOfAny(const Model& model, const std::set<std::uint32_t>& interfaces) {
  const auto anyOf = [&](const auto& served) {
    return std::ranges::any_of(served, [&](const auto& entry) {
      const auto& master = entry.second->link.masterIndex;
      return interfaces.contains(entry.first) || (master && interfaces.contains(*master));
    });
  };
  return !interfaces.empty() && (anyOf(model.ports) || anyOf(model.vlans) || anyOf(model.teamsByIndex));
}

/// Dormant when every port is; else by how many of the others are OK.
AdapterFacts adapterOf(std::span<const std::shared_ptr<const PortFacts>> ports) {
  AdapterFacts adapter;
  std::size_t known = 0, active = 0, ok = 0;
  for (const auto& port : ports) {
    const auto status = portStatus(port->link);
    known += status.has_value();
    active += status && *status != operationalStatus::Dormant;
    ok += status == operationalStatus::OK;
  }
  adapter.portCount = static_cast<std::uint32_t>(ports.size());
  adapter.hardware = ports.front()->link.hardware;
  adapter.driver = ports.front()->link.driver;
  if (known == 0) return adapter;
  if (active == 0) {
    adapter.status = operationalStatus::Dormant;
  } else if (ok == 0) {
    adapter.status = operationalStatus::Error;
  } else {
    adapter.status = ok == active ? operationalStatus::OK : operationalStatus::Degraded;
  }
  return adapter;
}

std::shared_ptr<const PortFacts> onePort(HostSnapshot snapshot, const PortFacts& before) {
  const Assembler assembler(std::move(snapshot));
  const LinkFacts* link = assembler.find(before.link.index);
  if (!link) return nullptr;
  const auto facts = assembler.port(*link);
  facts->number = before.number;
  return facts;
}

std::shared_ptr<const VlanFacts> oneVlan(HostSnapshot snapshot, const VlanFacts& before) {
  const Assembler assembler(std::move(snapshot));
  const LinkFacts* link = assembler.find(before.link.index);
  return link && isVlan(*link) ? assembler.vlan(*link) : nullptr;
}

std::shared_ptr<const TeamFacts> oneTeam(HostSnapshot snapshot, const TeamFacts& before) {
  const Assembler assembler(std::move(snapshot));
  const LinkFacts* link = assembler.find(before.link.index);
  return link && isTeam(*link) ? assembler.team(*link) : nullptr;
}

}  // namespace ZEB::ethernet
