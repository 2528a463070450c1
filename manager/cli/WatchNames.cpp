#include "cli/WatchNames.h"

#include "values/ManagerError.h"

namespace ZebManager {

const Tree& WatchNames::read() {
  _readAt = Clock::now();
  _tree = readTree(_model);
  for (const TreeCard& card : _tree.cards) {
    for (const TreePort& port : card.ports) _names[port.path] = port.name;
  }
  for (const TreeTeam& team : _tree.teams) _names[team.path] = team.name;
  return _tree;
}

std::string WatchNames::nameOf(const std::string& path) {
  try {
    if (Clock::now() - _readAt >= std::chrono::seconds(1)) read();
  } catch (const ManagerError&) {
    // An alert without a name is better than none.
  }
  const auto found = _names.find(path);
  return found == _names.end() ? std::string() : found->second;
}

}  // namespace ZebManager
