#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>

namespace ZEB {

namespace ethernet {
class ScopeState;
}

/// Brackets one CIM operation or one worker pass on the calling thread: refreshes inside share answers that
/// were asked for after it began. The first few interfaces are asked for one by one, each once; more of them
/// bring one dump that serves all that follow. `forceReload` inside gives that dump at once. Walks begun
/// inside use it too. A scope inside a scope joins the outer one. It also keeps what the data sources share
/// while they are deleted and made anew.
class RefreshScope {
 public:
  using Clock = std::chrono::steady_clock;

  RefreshScope() : RefreshScope(std::nullopt) {}
  /// For one operation of several that may share what was asked for since a time. Counters aside, it then
  /// takes the last whole answer as long as the kernel has announced nothing since and it is not old.
  explicit RefreshScope(std::optional<Clock::time_point> sharedSince);
  ~RefreshScope();
  /// For an operation of several: a number that stays as long as the facts that they work with do, counters
  /// aside. None where the system could not be asked.
  std::optional<std::uint64_t> sharedState() const;
  RefreshScope(const RefreshScope&) = delete;
  RefreshScope& operator=(const RefreshScope&) = delete;

 private:
  std::unique_ptr<ethernet::ScopeState> _state;
};

}  // namespace ZEB
