// The names that people use for what an alert is about.
#pragma once

#include <chrono>
#include <string>
#include <unordered_map>

#include "cli/TreeModel.h"

namespace ZebManager {

/// Names of ports and teams by object path. Paths are numbered and the numbers move when a card or team comes
/// or goes, so what is known is read again when it is used, but no more than once a second.
class WatchNames {
 public:
  explicit WatchNames(Namespace& model) : _model(model) {}

  /// Throws ManagerError.
  const Tree& read();
  /// Empty when the path has no name. What is gone keeps its last name until another takes its path.
  std::string nameOf(const std::string& path);

 private:
  using Clock = std::chrono::steady_clock;

  Namespace& _model;
  Tree _tree;
  std::unordered_map<std::string, std::string> _names;
  Clock::time_point _readAt;
};

}  // namespace ZebManager
