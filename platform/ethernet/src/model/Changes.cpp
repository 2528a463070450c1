#include "model/Changes.h"

#include <algorithm>

#include "model/LinkStatus.h"
#include "model/Team.h"

namespace ZEB::ethernet {
namespace {

/// Addresses differ for a build when their number or values do, and when those of IPv4 come into use or out
/// of it: a build gives IPv4 endpoints to none but interfaces that are up.
bool addressesDiffer(const InterfaceFacts& before, const InterfaceFacts& after) {
  const auto same = [](const AddressFacts& a, const AddressFacts& b) {
    return a.address == b.address && a.prefixLength == b.prefixLength;
  };
  return !std::ranges::equal(before.addresses, after.addresses, same) || before.gateway != after.gateway;
}

bool hasIpv4(const InterfaceFacts& facts) {
  return std::ranges::any_of(facts.addresses,
                             [](const AddressFacts& own) { return own.address.family == IpFamily::V4; });
}

bool vlanDiffers(const std::shared_ptr<const VlanFacts>& before,
                 const std::shared_ptr<const VlanFacts>& after) {
  const auto inUse = [](const VlanFacts& vlan) { return vlanStatus(vlan.link) == operationalStatus::OK; };
  return before->link.index != after->link.index || before->link.name != after->link.name ||
         before->link.vlanId != after->link.vlanId || addressesDiffer(*before, *after) ||
         (hasIpv4(*after) && inUse(*before) != inUse(*after));
}

bool vlansDiffer(const std::vector<std::shared_ptr<const VlanFacts>>& before,
                 const std::vector<std::shared_ptr<const VlanFacts>>& after) {
  return !std::ranges::equal(before, after, [](const auto& a, const auto& b) { return !vlanDiffers(a, b); });
}

bool portLayerDiffers(const PortEntry& before, const PortEntry& after) {
  const bool useDiffers = isAdministrativelyUp(before.facts->link) != isAdministrativelyUp(after.facts->link);
  return addressesDiffer(*before.facts, *after.facts) || (useDiffers && hasIpv4(*after.facts)) ||
         vlansDiffer(before.vlans, after.vlans);
}

bool samePort(const PortEntry& before, const PortEntry& after) {
  return before.facts->link.index == after.facts->link.index &&
         before.facts->link.name == after.facts->link.name;
}

bool sameAdapter(const AdapterEntry& before, const AdapterEntry& after) {
  return before.key == after.key && std::ranges::equal(before.ports, after.ports, samePort);
}

bool membersDiffer(const TeamFacts& before, const TeamFacts& after) {
  return !std::ranges::equal(
      before.members, after.members, {}, [](const auto& m) { return m.slave.name; },
      [](const auto& m) { return m.slave.name; });
}

bool teamLayerDiffers(const TeamEntry& before, const TeamEntry& after) {
  const auto inUse = [](const TeamFacts& team) { return teamStatus(team) == operationalStatus::OK; };
  return membersDiffer(*before.facts, *after.facts) || addressesDiffer(*before.facts, *after.facts) ||
         (hasIpv4(*after.facts) && inUse(*before.facts) != inUse(*after.facts)) ||
         vlansDiffer(before.vlans, after.vlans);
}

const TeamEntry* teamNamed(const Model& model, const std::string& name) {
  const auto found =
      std::ranges::find(model.teams, name, [](const TeamEntry& team) { return team.facts->link.name; });
  return found == model.teams.end() ? nullptr : &*found;
}

}  // namespace

bool adaptersDiffer(const Model* before, const Model& after) {
  if (!before) return !after.adapters.empty();
  return !std::ranges::equal(before->adapters, after.adapters, sameAdapter);
}

bool portLayersDiffer(const Model* before, const Model& after) {
  if (!before) return false;
  const std::size_t adapters = std::min(before->adapters.size(), after.adapters.size());
  for (std::size_t i = 0; i < adapters; ++i) {
    const auto& old = before->adapters[i].ports;
    const auto& now = after.adapters[i].ports;
    for (std::size_t j = 0; j < std::min(old.size(), now.size()); ++j) {
      if (portLayerDiffers(old[j], now[j])) return true;
    }
  }
  return false;
}

std::vector<std::string> teamNamesAdded(const Model* before, const Model* after) {
  std::vector<std::string> names;
  if (!after) return names;
  for (const TeamEntry& team : after->teams) {
    if (!before || !teamNamed(*before, team.facts->link.name)) names.push_back(team.facts->link.name);
  }
  return names;
}

bool teamLayersDiffer(const Model* before, const Model& after) {
  if (!before) return false;
  return std::ranges::any_of(after.teams, [&](const TeamEntry& team) {
    const TeamEntry* old = teamNamed(*before, team.facts->link.name);
    return old && teamLayerDiffers(*old, team);
  });
}

bool portTransition(const Model& before, const Model& after) {
  return std::ranges::any_of(after.ports, [&](const auto& entry) {
    const auto old = before.ports.find(entry.first);
    if (old == before.ports.end()) return false;
    const LinkFacts& a = old->second->link;
    const LinkFacts& b = entry.second->link;
    return portStatus(a) != portStatus(b) || hasCarrier(a) != hasCarrier(b);
  });
}

bool teamTransition(const Model& before, const Model& after) {
  return std::ranges::any_of(after.teams, [&](const TeamEntry& team) {
    const TeamEntry* old = teamNamed(before, team.facts->link.name);
    if (!old) return false;
    const auto slave = [](const TeamMember& member) { return member.slave; };
    return teamStatus(*old->facts) != teamStatus(*team.facts) ||
           !std::ranges::equal(old->facts->members, team.facts->members, {}, slave, slave);
  });
}

}  // namespace ZEB::ethernet
