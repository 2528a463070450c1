// Where things are that people call by name, remembered.
#pragma once

#include <chrono>
#include <mutex>
#include <optional>
#include <string>

#include "cli/InterfaceNames.h"

namespace ZebManager {

/// For commands, which start anew each time, and would read everything to find one interface. What it says
/// was true once: who asks looks whether it still is. Safe from any thread.
class NameHints {
 public:
  /// Empty when nothing is called so. `again`: the last answer is not true any more. Throws ManagerError.
  std::string pathOf(Namespace& model, const std::string& name, bool again);

 private:
  using Clock = std::chrono::steady_clock;

  std::mutex _mutex;
  std::optional<InterfaceNames> _names;
  Clock::time_point _readAt;
};

}  // namespace ZebManager
