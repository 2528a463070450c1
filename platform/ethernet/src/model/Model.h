#pragma once

#include <cstdint>
#include <memory>
#include <set>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include "model/Facts.h"

namespace ZEB::ethernet {

struct PortEntry {
  std::shared_ptr<const PortFacts> facts;
  std::vector<std::shared_ptr<const VlanFacts>> vlans;  ///< by interface number
};

struct AdapterEntry {
  std::string key;  ///< names the card for as long as it is in its place
  std::shared_ptr<const AdapterFacts> facts;
  std::vector<PortEntry> ports;  ///< in bus and port order
};

struct TeamEntry {
  std::shared_ptr<const TeamFacts> facts;
  std::vector<std::shared_ptr<const VlanFacts>> vlans;  ///< by interface number
};

/// What a snapshot means: adapters in bus order, virtual ones last; teams by interface number. Immutable.
struct Model {
  std::vector<AdapterEntry> adapters;
  std::vector<TeamEntry> teams;
  std::unordered_map<std::uint32_t, std::shared_ptr<const PortFacts>> ports;  ///< by interface number
  std::unordered_map<std::uint32_t, std::shared_ptr<const VlanFacts>> vlans;
  std::unordered_map<std::uint32_t, std::shared_ptr<const TeamFacts>> teamsByIndex;
};

std::shared_ptr<const Model> buildModel(HostSnapshot snapshot, bool includeVirtual);

/// Whether addresses or routes of any of those interfaces are a part of the model: of those in it, or of a
/// bridge that one of them is in.
bool isMadeOfAny(const Model& model, const std::set<std::uint32_t>& interfaces);

/// What some ports, at least one, say of the adapter that they are on.
AdapterFacts adapterOf(std::span<const std::shared_ptr<const PortFacts>> ports);

/// Newer facts of one interface out of a snapshot that need not hold more than it, its members and its
/// bridge; null when it is not there. A port keeps the number that it has on its card.
std::shared_ptr<const PortFacts> onePort(HostSnapshot snapshot, const PortFacts& before);
std::shared_ptr<const VlanFacts> oneVlan(HostSnapshot snapshot, const VlanFacts& before);
std::shared_ptr<const TeamFacts> oneTeam(HostSnapshot snapshot, const TeamFacts& before);

}  // namespace ZEB::ethernet
