// What an inventory knows anew of one interface, by itself or with what a request has asked for many.
#include <algorithm>

#include "records/Inventory.h"
#include "records/ScopeState.h"

namespace ZEB::ethernet {
namespace {

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

}  // namespace

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

}  // namespace ZEB::ethernet
