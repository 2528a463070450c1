// Why properties have the values that they have, for pages.
#pragma once

#include <chrono>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "cli/Options.h"
#include "schema/ClassRepository.h"

namespace ZebManager {

/// Has the command `explain` find it out, one instance at a time, and keeps what it said for a while. Safe
/// from any thread.
class Explanations {
 public:
  Explanations(const Options& options, const ClassRepository& classes);

  /// What the command says as JSON; nothing while it is busy with another. Throws ManagerError.
  std::optional<std::string> of(const std::string& path);

 private:
  using Clock = std::chrono::steady_clock;
  struct Kept {
    std::string json;
    Clock::time_point made;
  };

  std::optional<std::string> kept(const std::string& path);

  const ClassRepository& _classes;
  std::vector<std::string> _arguments;
  std::mutex _working;
  std::mutex _mutex;
  std::map<std::string, Kept> _kept;
};

}  // namespace ZebManager
