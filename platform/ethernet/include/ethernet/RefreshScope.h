#pragma once

#include <memory>

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
  RefreshScope();
  ~RefreshScope();
  RefreshScope(const RefreshScope&) = delete;
  RefreshScope& operator=(const RefreshScope&) = delete;

 private:
  std::unique_ptr<ethernet::ScopeState> _state;
};

}  // namespace ZEB
