#include "kernel/KernelSource.h"

#include <algorithm>
#include <cerrno>
#include <ctime>

namespace ZEB::ethernet {
namespace {

// Whole answers that are thrown away because announcements were lost meanwhile.
constexpr int kDumps = 4;
// An interface takes less than a tenth of a millisecond to ask for: only what changes faster than that needs
// many.
constexpr int kTries = 32;

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

/// As the kernel lists them; those of one interface keep their order.
void sortByInterface(HostSnapshot& snapshot) {
  std::ranges::stable_sort(snapshot.links, {}, &LinkFacts::index);
  std::ranges::stable_sort(snapshot.addresses, {}, &AddressFacts::index);
  std::ranges::stable_sort(snapshot.routes, {}, &RouteFacts::index);
}

bool concerns(const Announcements& announced, std::uint32_t index, const HostSnapshot& snapshot) {
  return announced.everything || announced.interfaces.contains(index) ||
         std::ranges::any_of(snapshot.links, [&](const LinkFacts& link) {
           return announced.interfaces.contains(link.index);
         });
}

template <class T>
void append(std::vector<T>& all, std::vector<T>&& more) {
  std::ranges::move(more, std::back_inserter(all));
}

}  // namespace

Outcome<KernelAccess> KernelAccess::open() {
  auto queries = KernelQueries::open();
  if (!queries) return queries.failure();
  const auto group = (*queries)->ethtoolGroup();
  return KernelAccess{std::move(*queries), Listener::open(group), kernelEthtool()};
}

KernelSource::Kernel::Kernel(KernelAccess access)
    : queries(std::move(access.queries)),
      listener(std::move(access.listener)),
      ioctl(std::move(access.ethtool)),
      devices(ioctl, access.root),
      parents(access.root) {}

std::optional<Failure> KernelSource::open() {
  if (_kernel) return std::nullopt;
  auto access = _open();
  if (!access) return access.failure();
  _kernel = std::make_unique<Kernel>(std::move(*access));
  return std::nullopt;
}

bool KernelSource::announced() {
  if (_kernel) (void)hear();
  return _announced;
}

/// An interface that goes down or loses an address takes its routes with it, and not all of that is
/// announced.
Announcements KernelSource::hear() {
  Announcements heard = _kernel->listener.drain();
  _kernel->parents.forget(heard);
  const auto concerned = [&](const RouteFacts& route) { return heard.interfaces.contains(route.index); };
  if (heard.everything || heard.routes || heard.nextHops ||
      (_routes && std::ranges::any_of(*_routes, concerned)))
    _routes.reset();
  if (heard.everything || heard.rules) _rules.reset();
  _announced |= heard.any();
  return heard;
}

Outcome<std::vector<RouteFacts>> KernelSource::routes() {
  if (!_routes) {
    auto routes = _kernel->queries->routes();
    if (!routes) return routes;
    _routes = std::move(*routes);
  }
  return *_routes;
}

Outcome<std::vector<RuleFacts>> KernelSource::rules() {
  if (!_rules) {
    auto rules = _kernel->queries->rules();
    if (!rules) return rules;
    _rules = std::move(*rules);
  }
  return *_rules;
}

std::optional<Failure> KernelSource::addRoutes(HostSnapshot& snapshot) {
  auto defaults = routes();
  if (!defaults) return defaults.failure();
  auto selecting = rules();
  if (!selecting) return selecting.failure();
  snapshot.routes = std::move(*defaults);
  snapshot.rules = std::move(*selecting);
  return std::nullopt;
}

Outcome<HostSnapshot> KernelSource::readAll() {
  if (auto failure = open()) return std::move(*failure);
  (void)hear();
  _announced = false;
  Outcome<HostSnapshot> snapshot = settled(&KernelSource::dumpAll);
  if (!snapshot) _announced = true;
  return snapshot;
}

Outcome<std::optional<HostSnapshot>> KernelSource::readLinks() {
  if (auto failure = open()) return std::move(*failure);
  (void)hear();
  Outcome<HostSnapshot> snapshot = settled(&KernelSource::dumpLinks);
  if (!snapshot) return snapshot.failure();
  return std::optional(std::move(*snapshot));
}

/// As long as nothing is announced the interfaces are those of the last whole answer, and have the names that
/// their drivers are asked by.
Outcome<std::optional<CounterSnapshot>> KernelSource::readCounters() {
  if (announced()) return std::optional<CounterSnapshot>();
  CounterSnapshot snapshot;
  snapshot.sampleTime = std::time(nullptr);
  auto counters = _kernel->queries->counters();
  // Kernels before 4.7 do not know the question.
  if (!counters) return std::optional<CounterSnapshot>();
  snapshot.interfaces = std::move(*counters);
  std::ranges::sort(snapshot.interfaces, {}, &InterfaceCounters::index);
  if (!_kernel->devices.empty()) {
    _kernel->queries->addMacCounters(snapshot.interfaces);
    _kernel->devices.addCounters(snapshot.interfaces);
  }
  if (announced()) return std::optional<CounterSnapshot>();
  return std::optional(std::move(snapshot));
}

Outcome<HostSnapshot> KernelSource::settled(Outcome<HostSnapshot> (KernelSource::*dump)()) {
  Outcome<HostSnapshot> snapshot = Failure{ENOBUFS, "everything changes while it is read"};
  for (int i = 0; i < kDumps; ++i) {
    snapshot = (this->*dump)();
    if (!snapshot) break;
    const Announcements during = hear();
    if (during.everything) {
      snapshot = Failure{ENOBUFS, "everything changes while it is read"};
      continue;
    }
    if (auto failure = repair(*snapshot, during.interfaces)) snapshot = std::move(*failure);
    break;
  }
  return snapshot;
}

Outcome<HostSnapshot> KernelSource::dumpAll() {
  auto snapshot = dumpLinks();
  if (!snapshot) return snapshot;
  auto addresses = _kernel->queries->addresses(std::nullopt);
  if (!addresses) return addresses.failure();
  _routes.reset();
  if (auto failure = addRoutes(*snapshot)) return std::move(*failure);
  snapshot->addresses = std::move(*addresses);
  return snapshot;
}

Outcome<HostSnapshot> KernelSource::dumpLinks() {
  HostSnapshot snapshot;
  snapshot.sampleTime = std::time(nullptr);
  auto links = _kernel->queries->links();
  if (!links) return links.failure();
  snapshot.links = std::move(*links);
  // Most kernels list them in order, and links are heavy to move.
  if (!std::ranges::is_sorted(snapshot.links, {}, &LinkFacts::index))
    std::ranges::sort(snapshot.links, {}, &LinkFacts::index);
  addSettings(snapshot.links);
  _kernel->devices.completeAll(snapshot.links);
  return snapshot;
}

/// A dump has its parts of different moments. An interface about which nothing was announced is the same in
/// all of them; every other is replaced by an answer of one moment.
std::optional<Failure> KernelSource::repair(HostSnapshot& snapshot, const std::set<std::uint32_t>& changed) {
  for (const std::uint32_t index : changed) {
    const Outcome<HostSnapshot> newer = askWhole(index);
    if (!newer) return newer.failure();
    replaceInterface(snapshot, index, *newer);
  }
  if (!changed.empty()) sortByInterface(snapshot);
  return std::nullopt;
}

Outcome<HostSnapshot> KernelSource::readOne(std::uint32_t index) {
  if (auto failure = open()) return std::move(*failure);
  return askWhole(index);
}

Outcome<HostSnapshot> KernelSource::askWhole(std::uint32_t index) {
  (void)hear();
  Outcome<HostSnapshot> snapshot = askOne(index);
  for (int i = 0; i < kTries && snapshot && concerns(hear(), index, *snapshot); ++i) snapshot = askOne(index);
  return snapshot;
}

/// The interface first, then what else its facts are made from: a team's members, or the bridge that it is
/// in.
Outcome<HostSnapshot> KernelSource::askOne(std::uint32_t index) {
  HostSnapshot snapshot;
  snapshot.sampleTime = std::time(nullptr);
  auto links = _kernel->queries->link(index);
  if (!links) return links.failure();
  if (links->empty()) return snapshot;
  LinkFacts own = std::move(links->front());
  std::vector<std::uint32_t> withLayers = {index};
  if (own.bond) {
    auto members = _kernel->queries->members(index);
    if (!members) return members.failure();
    for (LinkFacts& member : *members) addSettings(member);
    snapshot.links = std::move(*members);
  }
  if (own.masterIndex && !own.bondMember) {
    auto master = _kernel->queries->link(*own.masterIndex);
    if (!master) return master.failure();
    withLayers.push_back(*own.masterIndex);
    append(snapshot.links, std::move(*master));
  }
  if (auto failure = addRoutes(snapshot)) return std::move(*failure);
  for (const std::uint32_t each : withLayers) {
    auto addresses = _kernel->queries->addresses(each);
    if (!addresses) return addresses.failure();
    append(snapshot.addresses, std::move(*addresses));
  }
  addSettings(own);
  _kernel->devices.complete(own);
  snapshot.links.push_back(std::move(own));
  return snapshot;
}

void KernelSource::addSettings(std::vector<LinkFacts>& links) {
  for (LinkFacts& link : links) _kernel->parents.complete(link);
  if (_kernel->queries->hasEthtool()) return _kernel->queries->addEthtool(links);
  for (LinkFacts& link : links) _kernel->ioctl.addSettings(link);
}

void KernelSource::addSettings(LinkFacts& link) {
  _kernel->parents.complete(link);
  if (_kernel->queries->hasEthtool()) return _kernel->queries->addEthtool(link);
  _kernel->ioctl.addSettings(link);
}

}  // namespace ZEB::ethernet
