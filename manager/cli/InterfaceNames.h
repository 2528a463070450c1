// What the operating system calls ports, teams and VLANs.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "broker/Namespace.h"

namespace ZebManager {

/// Read once, in three questions.
class InterfaceNames {
 public:
  /// Throws ManagerError.
  explicit InterfaceNames(Namespace& model);

  /// Whether instances of the class have such names.
  static bool has(const ClassRepository& repository, std::string_view className);

  /// Of a port, a team, or an endpoint; empty for everything else.
  const std::string& nameOf(const std::string& path) const;
  /// Ports, teams and VLANs of that name.
  std::vector<std::string> pathsOf(const std::string& name) const;
  /// In the order in which they are served.
  const std::vector<std::string>& all() const { return _names; }

 private:
  void carry(Namespace& model, const char* association);

  std::unordered_map<std::string, std::string> _byPath;
  std::unordered_map<std::string, std::vector<std::string>> _byName;
  std::vector<std::string> _names;
};

}  // namespace ZebManager
