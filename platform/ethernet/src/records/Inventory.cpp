#include "records/Inventory.h"

#include <algorithm>
#include <atomic>

#include "model/Changes.h"
#include "records/ScopeState.h"

namespace ZEB::ethernet {
namespace {

constexpr std::chrono::seconds kUnannouncedAge{60};

/// Of all inventories that there were, so that none has a number again.
std::atomic<std::uint64_t> states{0};

std::size_t slot(Inventory::Kind kind) {
  return static_cast<std::size_t>(kind);
}
std::size_t otherSlot(Inventory::Kind kind) {
  return 1 - slot(kind);
}

template <class Facts>
const std::unordered_map<std::uint32_t, std::shared_ptr<const Facts>>& indexOf(const Model& model) {
  if constexpr (std::is_same_v<Facts, PortFacts>)
    return model.ports;
  else if constexpr (std::is_same_v<Facts, VlanFacts>)
    return model.vlans;
  else
    return model.teamsByIndex;
}

template <class Facts>
std::shared_ptr<const Facts> find(const Model& model, std::uint32_t index) {
  const auto& all = indexOf<Facts>(model);
  const auto found = all.find(index);
  return found == all.end() ? nullptr : found->second;
}

std::shared_ptr<const PortFacts> one(HostSnapshot snapshot, const PortFacts& before) {
  return onePort(std::move(snapshot), before);
}
std::shared_ptr<const VlanFacts> one(HostSnapshot snapshot, const VlanFacts& before) {
  return oneVlan(std::move(snapshot), before);
}
std::shared_ptr<const TeamFacts> one(HostSnapshot snapshot, const TeamFacts& before) {
  return oneTeam(std::move(snapshot), before);
}

/// The port as the model has it, with newer counters; null when it is not there.
std::shared_ptr<const PortFacts> withCounters(const CounterAnswer& answer, std::uint32_t index) {
  const auto facts = find<PortFacts>(*answer.model, index);
  const auto& all = answer.counters.interfaces;
  const auto counters = std::ranges::lower_bound(all, index, {}, &InterfaceCounters::index);
  if (!facts || counters == all.end() || counters->index != index) return nullptr;
  auto newer = std::make_shared<PortFacts>(*facts);
  newer->link.statistics = counters->statistics;
  newer->link.ethtool.mac = counters->mac;
  newer->sampleTime = answer.counters.sampleTime;
  return newer;
}

/// What the open scope, if any, serves from now on.
void shareWithScope(const Inventory& inventory, const std::shared_ptr<const Model>& model) {
  if (ScopeState* scope = openScope(); scope && model) scope->answersOf(inventory).model = model;
}

}  // namespace

Inventory::Inventory(std::unique_ptr<HostSource> source, bool includeVirtual,
                     std::chrono::milliseconds settleTime, std::function<Clock::time_point()> now)
    : _includeVirtual(includeVirtual), _source(std::move(source)), _settling(settleTime, std::move(now)) {}

std::shared_ptr<const Model> Inventory::current() {
  if (ScopeState* scope = openScope()) {
    auto& answers = scope->answersOf(*this);
    if (!answers.model && scope->sharedSince) takeShared(answers, *scope->sharedSince);
    return answers.model ? answers.model : fresh();
  }
  const std::scoped_lock asking(_asking);
  const bool stale = _source->announced();
  {
    const std::scoped_lock lock(_mutex);
    if (_newest && !stale) return _newest;
  }
  return askLocked();
}

std::shared_ptr<const Model> Inventory::fresh() {
  const auto wanted = Clock::now();
  std::shared_ptr<const Model> model;
  {
    const std::scoped_lock asking(_asking);
    // Who waited here while another asked may take that answer if it was begun after the wish.
    if (_begun >= wanted) {
      const std::scoped_lock lock(_mutex);
      model = _newest;
    }
    if (!model) model = askLocked();
  }
  shareWithScope(*this, model);
  return model;
}

std::shared_ptr<const Model> Inventory::newestOfOneQuestion() {
  const std::scoped_lock asking(_asking);
  if (_source->announced()) return nullptr;
  const std::scoped_lock lock(_mutex);
  return _newest;
}

void Inventory::takeShared(ScopeAnswers& answers, Clock::time_point since) {
  const std::scoped_lock asking(_asking);
  // Not everything that changes is announced.
  const bool mayDiffer = _source->announced() || _settling.next() || Clock::now() - _begun > kUnannouncedAge;
  {
    const std::scoped_lock lock(_mutex);
    if (!mayDiffer || _begun >= since) answers.model = _newest;
  }
  if (!answers.model) answers.model = askLocked();
  answers.olderCounters = _begun < since;
}

std::optional<std::uint64_t> Inventory::sharedState() {
  const ScopeState* const scope = openScope();
  const auto model = scope && scope->sharedSince ? current() : nullptr;
  return model ? std::optional(stateOf(model)) : std::nullopt;
}

std::uint64_t Inventory::stateOf(const std::shared_ptr<const Model>& model) {
  const std::scoped_lock lock(_comparing);
  if (model != _stated && !(_stated && sameButCounters(*_stated, *model))) _state = ++states;
  _stated = model;
  return _state;
}

std::shared_ptr<const Model> Inventory::reload(Kind kind) {
  std::shared_ptr<const Model> model;
  {
    const std::scoped_lock asking(_asking);
    Offer offer = std::exchange(_offers[slot(kind)], {});
    if (mayTake(offer)) {
      model = std::move(offer.model);
    } else {
      model = askLocked();
      _unfollowed = false;
      _offers[otherSlot(kind)] = {model, _begun};
    }
  }
  shareWithScope(*this, model);
  return model;
}

bool Inventory::mayTake(const Offer& offer) {
  if (!offer.model) return false;
  if (const ScopeState* scope = openScope()) return offer.begun >= scope->begun;
  return !_source->announced();
}

bool Inventory::update() {
  if (ScopeState* scope = openScope(); scope && scope->answersOf(*this).model) return true;
  std::shared_ptr<const Model> model;
  {
    const std::scoped_lock asking(_asking);
    const bool stale = _source->announced();
    _unfollowed = false;
    {
      const std::scoped_lock lock(_mutex);
      if (_newest && !stale) return true;
    }
    model = askLocked();
    _unfollowed = false;
  }
  shareWithScope(*this, model);
  return model != nullptr;
}

bool Inventory::announced() {
  const std::scoped_lock asking(_asking);
  return _unfollowed || _source->announced();
}

bool Inventory::concernedBy(const LayerChange& change) const {
  if (change.anywhere) return true;
  std::shared_ptr<const Model> newest;
  {
    const std::scoped_lock lock(_mutex);
    newest = _newest;
  }
  return !newest || isMadeOfAny(*newest, change.interfaces);
}

std::shared_ptr<const Model> Inventory::askLocked() {
  _begun = Clock::now();
  const bool news = _source->announced();
  Outcome<HostSnapshot> snapshot = _source->readAll();
  if (!snapshot) {
    noteFailure(snapshot.failure().what);
    return nullptr;
  }
  _settling.watchAll(*snapshot);
  auto model = buildModel(std::move(*snapshot), _includeVirtual);
  const std::scoped_lock lock(_mutex);
  _unfollowed |= news && _newest;
  _newest = model;
  _failure.clear();
  return model;
}

Outcome<HostSnapshot> Inventory::askOne(std::uint32_t index) {
  const std::scoped_lock asking(_asking);
  Outcome<HostSnapshot> snapshot = _source->readOne(index);
  if (snapshot) {
    _settling.watchSome(*snapshot);
  } else {
    noteFailure(snapshot.failure().what);
  }
  return snapshot;
}

template <class Facts>
std::optional<std::shared_ptr<const Facts>> Inventory::newerFacts(const Facts& before, RefreshPart part) {
  const std::uint32_t index = before.link.index;
  ScopeState* scope = openScope();
  ScopeAnswers* answers = scope ? &scope->answersOf(*this) : nullptr;
  if (answers && !answers->model && _oneQuestion) answers->model = newestOfOneQuestion();
  if (answers && scope->sharedSince) return sharedFacts<Facts>(*answers, *scope->sharedSince, index, part);
  if (answers && part != RefreshPart::Everything) {
    if (auto newer = partOfMany<Facts>(*answers, index, part)) return newer;
  }
  if (answers && !answers->model) {
    const auto& singles = answers->singles<Facts>();
    if (const auto known = singles.find(index); known != singles.end()) return known->second;
    if (answers->singleCount() >= ScopeAnswers::kSingles && !fresh()) return std::nullopt;
  }
  if (answers && answers->model) return find<Facts>(*answers->model, index);
  Outcome<HostSnapshot> snapshot = askOne(index);
  if (!snapshot) return std::nullopt;
  auto newer = one(std::move(*snapshot), before);
  if (answers) answers->singles<Facts>().emplace(index, newer);
  return newer;
}

template std::optional<std::shared_ptr<const PortFacts>> Inventory::newerFacts(const PortFacts&, RefreshPart);
template std::optional<std::shared_ptr<const VlanFacts>> Inventory::newerFacts(const VlanFacts&, RefreshPart);
template std::optional<std::shared_ptr<const TeamFacts>> Inventory::newerFacts(const TeamFacts&, RefreshPart);

template <class Facts>
std::optional<std::shared_ptr<const Facts>> Inventory::sharedFacts(ScopeAnswers& answers,
                                                                   Clock::time_point since,
                                                                   std::uint32_t index, RefreshPart part) {
  if (!answers.model) takeShared(answers, since);
  if (!answers.model) return std::nullopt;
  if constexpr (std::is_same_v<Facts, PortFacts>) {
    if (part == RefreshPart::Counters && answers.olderCounters) {
      if (!answers.counters) answers.counters = askCounters();
      if (answers.counters) return withCounters(*answers.counters, index);
      if (!fresh()) return std::nullopt;
      answers.olderCounters = false;
    }
  }
  return find<Facts>(*answers.model, index);
}

/// Nothing where the part is not to be had by itself, or where whole answers are the cheaper way.
template <class Facts>
std::optional<std::shared_ptr<const Facts>> Inventory::partOfMany(ScopeAnswers& answers, std::uint32_t index,
                                                                  RefreshPart part) {
  if (answers.model || answers.singleCount() < ScopeAnswers::kSingles) return std::nullopt;
  if (part == RefreshPart::Link) {
    if (!answers.links) answers.links = askLinks();
    if (answers.links) return find<Facts>(*answers.links, index);
  } else if constexpr (std::is_same_v<Facts, PortFacts>) {
    if (!answers.counters) answers.counters = askCounters();
    if (answers.counters) return withCounters(*answers.counters, index);
  }
  return std::nullopt;
}

std::shared_ptr<const Model> Inventory::askLinks() {
  const std::scoped_lock asking(_asking);
  auto snapshot = _source->readLinks();
  if (!snapshot) noteFailure(snapshot.failure().what);
  if (!snapshot || !*snapshot) return nullptr;
  _settling.watchAll(**snapshot);
  return buildModel(std::move(**snapshot), _includeVirtual);
}

std::shared_ptr<const CounterAnswer> Inventory::askCounters() {
  const std::scoped_lock asking(_asking);
  auto counters = _source->readCounters();
  if (!counters) noteFailure(counters.failure().what);
  if (!counters || !*counters) return nullptr;
  const std::scoped_lock lock(_mutex);
  if (!_newest) return nullptr;
  return std::make_shared<CounterAnswer>(CounterAnswer{std::move(**counters), _newest});
}

std::shared_ptr<const Model> Inventory::workedWith() const {
  if (ScopeState* scope = openScope()) return scope->answersOf(*this).model;
  const std::scoped_lock lock(_mutex);
  return _newest;
}

bool Inventory::eventDetected(Kind kind) const {
  const auto now = workedWith();
  std::shared_ptr<const Model> before;
  {
    const std::scoped_lock lock(_mutex);
    before = _lookedThrough[slot(kind)];
  }
  if (!before || !now || before == now) return false;
  return kind == Kind::Ports ? portTransition(*before, *now) : teamTransition(*before, *now);
}

void Inventory::lookedThrough(Kind kind) {
  auto now = workedWith();
  const std::scoped_lock lock(_mutex);
  if (now) _lookedThrough[slot(kind)] = std::move(now);
}

std::optional<Inventory::Clock::time_point> Inventory::nextSettled() {
  const std::scoped_lock asking(_asking);
  return _settling.next();
}

std::shared_ptr<const Model> Inventory::delivered(Kind kind) const {
  const std::scoped_lock lock(_mutex);
  return _deliveries[slot(kind)].model;
}

bool Inventory::deliveryPending(Kind kind) const {
  const std::scoped_lock lock(_mutex);
  return _deliveries[slot(kind)].pending;
}

void Inventory::beginDelivery(Kind kind) {
  const std::scoped_lock lock(_mutex);
  _deliveries[slot(kind)].pending = true;
}

void Inventory::endDelivery(Kind kind, std::shared_ptr<const Model> model) {
  const std::scoped_lock lock(_mutex);
  if (!_lookedThrough[slot(kind)]) _lookedThrough[slot(kind)] = model;
  _deliveries[slot(kind)] = {std::move(model), false};
}

std::string Inventory::failureText() const {
  const std::scoped_lock lock(_mutex);
  return _failure;
}

void Inventory::noteFailure(const std::string& text) {
  const std::scoped_lock lock(_mutex);
  _failure = text;
}

}  // namespace ZEB::ethernet
