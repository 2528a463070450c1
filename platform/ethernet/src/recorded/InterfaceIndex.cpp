#include "recorded/InterfaceIndex.h"

#include <algorithm>
#include <vector>

namespace ZEB::ethernet {
namespace {

/// Places of one number in the order of the snapshot.
std::vector<std::size_t> inOrder(const std::unordered_multimap<std::uint32_t, std::size_t>& places,
                                 std::uint32_t index) {
  std::vector<std::size_t> found;
  const auto [begin, end] = places.equal_range(index);
  for (auto place = begin; place != end; ++place) found.push_back(place->second);
  std::ranges::sort(found);
  return found;
}

}  // namespace

InterfaceIndex::InterfaceIndex(const HostSnapshot& snapshot) : _snapshot(&snapshot) {
  for (std::size_t i = 0; i < snapshot.links.size(); ++i) {
    const LinkFacts& link = snapshot.links[i];
    _links.emplace(link.index, i);
    if (link.masterIndex) _members.emplace(*link.masterIndex, i);
  }
  for (std::size_t i = 0; i < snapshot.addresses.size(); ++i) {
    _addresses.emplace(snapshot.addresses[i].index, i);
  }
  for (std::size_t i = 0; i < snapshot.routes.size(); ++i) _routes.emplace(snapshot.routes[i].index, i);
}

HostSnapshot InterfaceIndex::only(std::uint32_t index) const {
  HostSnapshot part;
  part.sampleTime = _snapshot->sampleTime;
  part.rules = _snapshot->rules;
  addLinks(_links, index, part);
  std::optional<std::uint32_t> master;
  if (!part.links.empty()) master = part.links.front().masterIndex;
  addNetwork(index, part);
  addLinks(_members, index, part);
  if (master) {
    addLinks(_links, *master, part);
    addNetwork(*master, part);
  }
  return part;
}

void InterfaceIndex::addLinks(const Places& places, std::uint32_t index, HostSnapshot& part) const {
  for (const std::size_t place : inOrder(places, index)) part.links.push_back(_snapshot->links[place]);
}

void InterfaceIndex::addNetwork(std::uint32_t index, HostSnapshot& part) const {
  for (const std::size_t place : inOrder(_addresses, index)) {
    part.addresses.push_back(_snapshot->addresses[place]);
  }
  for (const std::size_t place : inOrder(_routes, index)) part.routes.push_back(_snapshot->routes[place]);
}

}  // namespace ZEB::ethernet
