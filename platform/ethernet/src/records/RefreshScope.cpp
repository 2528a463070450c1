#include "ethernet/RefreshScope.h"

#include <algorithm>

#include "records/ScopeState.h"

namespace ZEB {
namespace ethernet {
namespace {

// A bare pointer: a thread-local object with a destructor would keep the plug-in in the process.
thread_local ScopeState* currentScope = nullptr;

}  // namespace

ScopeState* openScope() {
  return currentScope;
}

std::size_t ScopeAnswers::singleCount() const {
  return std::apply([](const auto&... maps) { return (maps.size() + ...); }, _singles);
}

ScopeAnswers& ScopeState::answersOf(const Inventory& inventory) {
  const auto found =
      std::ranges::find(_answers, &inventory, [](const auto& answers) { return answers->inventory; });
  if (found != _answers.end()) return **found;
  return *_answers.emplace_back(std::make_unique<ScopeAnswers>(&inventory));
}

}  // namespace ethernet

RefreshScope::RefreshScope(std::optional<Clock::time_point> sharedSince) {
  if (ethernet::currentScope) return;
  _state = std::make_unique<ethernet::ScopeState>(sharedSince);
  ethernet::currentScope = _state.get();
}

std::optional<std::uint64_t> RefreshScope::sharedState() const {
  return _state && _state->inventory() ? _state->inventory()->sharedState() : std::nullopt;
}

RefreshScope::~RefreshScope() {
  if (_state) ethernet::currentScope = nullptr;
}

}  // namespace ZEB
