#include "model/Assembler.h"

#include <algorithm>

#include "model/Addressing.h"
#include "model/Kinds.h"
#include "model/Team.h"

namespace ZEB::ethernet {
namespace {

/// Most sources deliver in order, and links are heavy to move.
template <class T>
void sortByIndex(std::vector<T>& all) {
  if (!std::ranges::is_sorted(all, {}, &T::index)) std::ranges::stable_sort(all, {}, &T::index);
}

template <class T>
std::span<const T> withIndex(const std::vector<T>& all, std::uint32_t index) {
  const auto begin = std::ranges::lower_bound(all, index, {}, &T::index);
  return {begin, std::ranges::upper_bound(begin, all.end(), index, {}, &T::index)};
}

}  // namespace

Assembler::Assembler(HostSnapshot snapshot) : _snapshot(std::move(snapshot)), _tables(_snapshot.rules) {
  auto& links = _snapshot.links;
  sortByIndex(links);
  const auto sameIndex = [](const LinkFacts& a, const LinkFacts& b) { return a.index == b.index; };
  links.erase(std::unique(links.begin(), links.end(), sameIndex), links.end());
  sortByIndex(_snapshot.addresses);
  sortByIndex(_snapshot.routes);
  for (const LinkFacts& link : links) {
    if (link.masterIndex && link.bondMember) _memberships.push_back({*link.masterIndex, teamMember(link)});
  }
  sortByIndex(_memberships);
}

const LinkFacts* Assembler::find(std::uint32_t index) const {
  const auto found = withIndex(links(), index);
  return found.empty() ? nullptr : &found.front();
}

const LinkFacts* Assembler::carrierOf(const LinkFacts& vlan) {
  std::vector<std::uint32_t> passed;
  const LinkFacts* lower = &vlan;
  while (lower && isVlan(*lower)) {
    // None until it is found: a stack that bites its tail comes back to one that has none.
    const auto [known, first] = _carriers.try_emplace(lower->index, nullptr);
    if (!first) {
      lower = known->second;
      break;
    }
    passed.push_back(lower->index);
    lower = lower->lowerIndex ? find(*lower->lowerIndex) : nullptr;
  }
  for (const std::uint32_t index : passed) _carriers[index] = lower;
  return lower;
}

std::shared_ptr<TeamFacts> Assembler::team(const LinkFacts& link) const {
  auto facts = interface<TeamFacts>(link);
  for (const Membership& membership : withIndex(_memberships, link.index)) {
    facts->members.push_back(membership.member);
  }
  return facts;
}

template <class Facts>
std::shared_ptr<Facts> Assembler::interface(const LinkFacts& link) const {
  auto facts = std::make_shared<Facts>();
  const auto addresses = addressesOf(link.index);
  facts->link = link;
  facts->addresses.assign(addresses.begin(), addresses.end());
  facts->gateway = gatewayOf(link);
  facts->sampleTime = _snapshot.sampleTime;
  return facts;
}

template std::shared_ptr<PortFacts> Assembler::interface<PortFacts>(const LinkFacts&) const;
template std::shared_ptr<VlanFacts> Assembler::interface<VlanFacts>(const LinkFacts&) const;

/// A bridge's port without a route of its own reaches the world by the bridge's.
std::optional<route_t> Assembler::gatewayOf(const LinkFacts& link) const {
  std::uint32_t index = link.index;
  const RouteFacts* route = routeOf(index);
  const LinkFacts* master = !route && link.masterIndex ? find(*link.masterIndex) : nullptr;
  if (master && master->kind == "bridge") {
    index = master->index;
    route = routeOf(index);
  }
  return route ? std::optional(describeRoute(*route, addressesOf(index))) : std::nullopt;
}

const RouteFacts* Assembler::routeOf(std::uint32_t index) const {
  return preferredRoute(withIndex(_snapshot.routes, index), _tables);
}

std::span<const AddressFacts> Assembler::addressesOf(std::uint32_t index) const {
  return withIndex(_snapshot.addresses, index);
}

}  // namespace ZEB::ethernet
