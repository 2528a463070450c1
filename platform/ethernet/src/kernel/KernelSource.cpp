#include "kernel/KernelSource.h"

#include <algorithm>
#include <ctime>

namespace ZEB::ethernet {
namespace {

// Repairing more interfaces than this one by one is no cheaper than asking for all of them again.
constexpr std::size_t kMostRepairs = 64;
constexpr int kRounds = 6;

template <class T>
void replaceOf(std::vector<T>& all, std::uint32_t index, const std::vector<T>& newer) {
  std::erase_if(all, [&](const T& one) { return one.index == index; });
  for (const T& one : newer) {
    if (one.index == index) all.push_back(one);
  }
}

void replaceInterface(HostSnapshot& snapshot, std::uint32_t index, const HostSnapshot& newer) {
  replaceOf(snapshot.links, index, newer.links);
  replaceOf(snapshot.addresses, index, newer.addresses);
  replaceOf(snapshot.routes, index, newer.routes);
}

bool concerns(const Announcements& announced, const HostSnapshot& snapshot) {
  return announced.everything || std::ranges::any_of(snapshot.links, [&](const LinkFacts& link) {
           return announced.interfaces.contains(link.index);
         });
}

template <class T>
void append(std::vector<T>& all, std::vector<T>&& more) {
  std::ranges::move(more, std::back_inserter(all));
}

}  // namespace

std::optional<Failure> KernelSource::open() {
  if (_queries) return std::nullopt;
  auto queries = KernelQueries::open();
  if (!queries) return queries.failure();
  _queries = std::move(*queries);
  _listener = std::make_unique<Listener>(_queries->ethtoolGroup());
  return std::nullopt;
}

bool KernelSource::announced() {
  if (_listener && hear().any()) _announced = true;
  return _announced;
}

/// An interface that goes down or loses an address takes its routes with it, and not all of that is
/// announced.
Announcements KernelSource::hear() {
  Announcements heard = _listener->drain();
  const auto concerned = [&](const RouteFacts& route) { return heard.interfaces.contains(route.index); };
  if (heard.everything || heard.routes || (_routes && std::ranges::any_of(*_routes, concerned)))
    _routes.reset();
  return heard;
}

Outcome<std::vector<RouteFacts>> KernelSource::routes() {
  if (!_routes) {
    auto routes = _queries->routes();
    if (!routes) return routes;
    _routes = std::move(*routes);
  }
  return *_routes;
}

Outcome<HostSnapshot> KernelSource::readAll() {
  if (auto failure = open()) return std::move(*failure);
  (void)hear();
  _announced = true;  // until an answer is whole
  Outcome<HostSnapshot> snapshot = dump();
  if (!snapshot) return snapshot;
  Announcements changed;
  for (int round = 0; round < kRounds && (changed = hear()).any(); ++round) {
    if (changed.everything || changed.interfaces.size() > kMostRepairs) {
      snapshot = dump();
      if (!snapshot) return snapshot;
    } else if (auto failure = repair(*snapshot, changed)) {
      return std::move(*failure);
    }
  }
  // What never came to rest is asked for again by whoever looks next.
  _announced = changed.any();
  return snapshot;
}

Outcome<HostSnapshot> KernelSource::dump() {
  HostSnapshot snapshot;
  snapshot.sampleTime = std::time(nullptr);
  auto links = _queries->links();
  if (!links) return links.failure();
  auto addresses = _queries->addresses(std::nullopt);
  if (!addresses) return addresses.failure();
  _routes.reset();
  auto defaults = routes();
  if (!defaults) return defaults.failure();
  snapshot.links = std::move(*links);
  snapshot.addresses = std::move(*addresses);
  snapshot.routes = std::move(*defaults);
  std::ranges::sort(snapshot.links, {}, &LinkFacts::index);
  _queries->addEthtool(snapshot.links);
  _devices.completeAll(snapshot.links);
  return snapshot;
}

std::optional<Failure> KernelSource::repair(HostSnapshot& snapshot, Announcements changed) {
  for (const std::uint32_t index : changed.interfaces) {
    const Outcome<HostSnapshot> newer = askOne(index);
    if (!newer) return newer.failure();
    replaceInterface(snapshot, index, *newer);
  }
  return std::nullopt;
}

Outcome<HostSnapshot> KernelSource::readOne(std::uint32_t index) {
  if (auto failure = open()) return std::move(*failure);
  Announcements before = hear();
  Outcome<HostSnapshot> snapshot = askOne(index);
  for (int round = 0; round < kRounds; ++round) {
    const Announcements during = hear();
    before.add(during);
    if (!snapshot || !concerns(during, *snapshot)) break;
    snapshot = askOne(index);
  }
  if (before.any()) _announced = true;
  return snapshot;
}

/// The interface first, then what else its facts are made from: a team's members, or the bridge that it is
/// in.
Outcome<HostSnapshot> KernelSource::askOne(std::uint32_t index) {
  HostSnapshot snapshot;
  snapshot.sampleTime = std::time(nullptr);
  auto links = _queries->link(index);
  if (!links) return links.failure();
  if (links->empty()) return snapshot;
  LinkFacts own = std::move(links->front());
  std::vector<std::uint32_t> withLayers = {index};
  if (own.bond) {
    auto members = _queries->members(index);
    if (!members) return members.failure();
    for (LinkFacts& member : *members) _queries->addEthtool(member);
    snapshot.links = std::move(*members);
  } else if (own.masterIndex && !own.bondMember) {
    auto master = _queries->link(*own.masterIndex);
    if (!master) return master.failure();
    withLayers.push_back(*own.masterIndex);
    append(snapshot.links, std::move(*master));
  }
  auto defaults = routes();
  if (!defaults) return defaults.failure();
  snapshot.routes = std::move(*defaults);
  for (const std::uint32_t each : withLayers) {
    auto addresses = _queries->addresses(each);
    if (!addresses) return addresses.failure();
    append(snapshot.addresses, std::move(*addresses));
  }
  _queries->addEthtool(own);
  _devices.complete(own);
  snapshot.links.push_back(std::move(own));
  return snapshot;
}

}  // namespace ZEB::ethernet
