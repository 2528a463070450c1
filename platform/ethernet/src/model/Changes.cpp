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

/// What a device says of itself is the same when it is read again.
template <class Facts>
bool sameOfDevice(const std::shared_ptr<const Facts>& before, const std::shared_ptr<const Facts>& after) {
  return before == after || (before && after && *before == *after);
}

bool hasStatistics(const LinkFacts& link) {
  return link.statistics || link.ethtool.mac != MacStatistics{};
}

bool samePort(const PortEntry& before, const PortEntry& after) {
  const PortFacts& a = *before.facts;
  const PortFacts& b = *after.facts;
  const bool useDiffers = isAdministrativelyUp(a.link) != isAdministrativelyUp(b.link);
  return a.link.index == b.link.index && a.link.name == b.link.name && a.number == b.number &&
         sameOfDevice(a.link.hardware, b.link.hardware) &&
         a.link.address.has_value() == b.link.address.has_value() &&
         hasStatistics(a.link) == hasStatistics(b.link) && !addressesDiffer(a, b) &&
         !(useDiffers && hasIpv4(b)) && !vlansDiffer(before.vlans, after.vlans);
}

bool sameAdapter(const AdapterEntry& before, const AdapterEntry& after) {
  return before.key == after.key && std::ranges::equal(before.ports, after.ports, samePort);
}

bool sameMember(const TeamMember& before, const TeamMember& after) {
  return before.slave == after.slave && before.portStatus == after.portStatus;
}

bool sameMembers(const TeamFacts& before, const TeamFacts& after) {
  return std::ranges::equal(before.members, after.members, sameMember);
}

/// The status is a part of what is shown of every member.
bool teamDiffers(const TeamEntry& before, const TeamEntry& after) {
  return teamStatus(*before.facts) != teamStatus(*after.facts) || !sameMembers(*before.facts, *after.facts) ||
         addressesDiffer(*before.facts, *after.facts) || vlansDiffer(before.vlans, after.vlans);
}

/// Null when the model has not that very team.
const TeamEntry* sameTeam(const Model& model, const TeamEntry& team) {
  const auto index = [](const TeamEntry& entry) { return entry.facts->link.index; };
  const auto found = std::ranges::lower_bound(model.teams, index(team), {}, index);
  const bool same = found != model.teams.end() && index(*found) == index(team) &&
                    found->facts->link.name == team.facts->link.name;
  return same ? &*found : nullptr;
}

LinkFacts withoutCounters(LinkFacts link) {
  link.statistics.reset();
  link.ethtool.mac = {};
  return link;
}

/// Compares what `==` takes for another when it was read again.
template <class Facts>
bool sameWithDevice(Facts before, const Facts& after) {
  if (sameOfDevice(before.hardware, after.hardware)) before.hardware = after.hardware;
  if (sameOfDevice(before.driver, after.driver)) before.driver = after.driver;
  return before == after;
}

bool sameButCounters(const InterfaceFacts& before, const InterfaceFacts& after) {
  return sameWithDevice(withoutCounters(before.link), withoutCounters(after.link)) &&
         hasStatistics(before.link) == hasStatistics(after.link) && before.addresses == after.addresses &&
         before.gateway == after.gateway;
}

bool sameVlans(const std::vector<std::shared_ptr<const VlanFacts>>& before,
               const std::vector<std::shared_ptr<const VlanFacts>>& after) {
  return std::ranges::equal(before, after,
                            [](const auto& a, const auto& b) { return sameButCounters(*a, *b); });
}

bool sameInAll(const PortEntry& before, const PortEntry& after) {
  return before.facts->number == after.facts->number && sameButCounters(*before.facts, *after.facts) &&
         sameVlans(before.vlans, after.vlans);
}

bool sameInAll(const AdapterEntry& before, const AdapterEntry& after) {
  return before.key == after.key && sameWithDevice(*before.facts, *after.facts) &&
         std::ranges::equal(before.ports, after.ports,
                            [](const PortEntry& a, const PortEntry& b) { return sameInAll(a, b); });
}

bool sameInAll(const TeamEntry& before, const TeamEntry& after) {
  return before.facts->members == after.facts->members && sameButCounters(*before.facts, *after.facts) &&
         sameVlans(before.vlans, after.vlans);
}

}  // namespace

bool sameButCounters(const Model& before, const Model& after) {
  const auto same = [](const auto& a, const auto& b) { return sameInAll(a, b); };
  return std::ranges::equal(before.adapters, after.adapters, same) &&
         std::ranges::equal(before.teams, after.teams, same);
}

bool adaptersDiffer(const Model* before, const Model& after) {
  if (!before) return !after.adapters.empty();
  return before != &after && !std::ranges::equal(before->adapters, after.adapters, sameAdapter);
}

std::vector<std::string> teamsAdded(const Model* before, const Model* after) {
  std::vector<std::string> names;
  if (!after || before == after) return names;
  for (const TeamEntry& team : after->teams) {
    if (!before || !sameTeam(*before, team)) names.push_back(team.facts->link.name);
  }
  return names;
}

bool teamsDiffer(const Model* before, const Model& after) {
  if (!before) return false;
  return std::ranges::any_of(after.teams, [&](const TeamEntry& team) {
    const TeamEntry* old = sameTeam(*before, team);
    return old && teamDiffers(*old, team);
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
    const TeamEntry* old = sameTeam(before, team);
    return old && (teamStatus(*old->facts) != teamStatus(*team.facts) ||
                   !std::ranges::equal(old->facts->members, team.facts->members, {}, &TeamMember::slave,
                                       &TeamMember::slave));
  });
}

}  // namespace ZEB::ethernet
