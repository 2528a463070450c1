#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <tuple>
#include <unordered_map>
#include <vector>

#include "records/Inventory.h"

namespace ZEB::ethernet {

/// What one thread's open `RefreshScope` has asked an inventory for.
class ScopeAnswers {
 public:
  explicit ScopeAnswers(const Inventory* whose) : inventory(whose) {}

  /// Interfaces asked for one by one before a dump of all is the cheaper way.
  static constexpr std::size_t kSingles = 8;

  const Inventory* inventory;
  std::shared_ptr<const Model> model;             ///< once there, it answers everything
  bool olderCounters = false;                     ///< whether those of the model are not new enough
  std::shared_ptr<const Model> links;             ///< answers who asks for no more
  std::shared_ptr<const CounterAnswer> counters;  ///< answers who asks for no more

  template <class Facts>
  auto& singles() {
    return std::get<Singles<Facts>>(_singles);
  }
  std::size_t singleCount() const;

 private:
  template <class Facts>
  using Singles = std::unordered_map<std::uint32_t, std::shared_ptr<const Facts>>;
  std::tuple<Singles<PortFacts>, Singles<VlanFacts>, Singles<TeamFacts>> _singles;
};

class ScopeState {
 public:
  explicit ScopeState(std::optional<Inventory::Clock::time_point> since)
      : begun(Inventory::Clock::now()), sharedSince(since), _kept(existingProcessInventory()) {}

  ScopeAnswers& answersOf(const Inventory& inventory);
  /// The process's; null when there is none.
  Inventory* inventory() const { return _kept.get(); }
  const Inventory::Clock::time_point begun;
  const std::optional<Inventory::Clock::time_point> sharedSince;

 private:
  std::vector<std::unique_ptr<ScopeAnswers>> _answers;  ///< one inventory but in tests
  std::shared_ptr<Inventory> _kept;
};

/// The calling thread's open scope; null when there is none.
ScopeState* openScope();

}  // namespace ZEB::ethernet
