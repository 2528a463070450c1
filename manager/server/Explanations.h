// Why properties have the values that they have, for pages.
#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "cli/Options.h"
#include "schema/ClassRepository.h"

namespace ZebManager {

/// Has the command `explain` find it out on a recording, one instance at a time, and keeps what it said for a
/// while. Safe from any thread.
class Explanations {
 public:
  /// `record`: gives a recording of what is served now; this process may not be allowed to read it. May
  /// throw.
  Explanations(const Options& options, const ClassRepository& classes, std::function<std::string()> record);

  /// What the command says as JSON; nothing while it is busy with another. Throws ManagerError.
  std::optional<std::string> of(const std::string& path);

 private:
  using Clock = std::chrono::steady_clock;
  struct Kept {
    std::string json;
    Clock::time_point made;
  };

  std::optional<std::string> kept(const std::string& path);
  std::string find(const std::string& path) const;

  const ClassRepository& _classes;
  const std::function<std::string()> _record;
  std::vector<std::string> _arguments;
  std::mutex _working;
  std::mutex _mutex;
  std::map<std::string, Kept> _kept;
};

}  // namespace ZebManager
