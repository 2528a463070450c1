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
