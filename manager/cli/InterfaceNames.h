// What the operating system calls ports, teams and VLANs.
#pragma once

#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include "broker/Namespace.h"

namespace ZebManager {

/// What a port, a team or an endpoint is called, in one question; empty for everything else.
std::string interfaceName(Namespace& model, const ObjectPath& path);

/// Read once.
class InterfaceNames {
 public:
  /// All of them, in three questions. Throws ManagerError.
  explicit InterfaceNames(Namespace& model);
  /// Those of some instances or paths. Throws ManagerError.
  InterfaceNames(Namespace& model, std::span<const CMPIData> items);

  /// Whether instances of the class have such names.
  static bool has(const ClassRepository& repository, std::string_view className);

  /// Of a port, a team, or an endpoint; empty for everything else.
  const std::string& nameOf(const std::string& path) const;
  /// Ports, teams and VLANs of that name.
  std::vector<std::string> pathsOf(const std::string& name) const;
  /// In the order in which they are served.
  const std::vector<std::string>& all() const { return _names; }

 private:
  void readAll(Namespace& model);
  void carry(Namespace& model, const char* association);

  std::unordered_map<std::string, std::string> _byPath;
  std::unordered_map<std::string, std::vector<std::string>> _byName;
  std::vector<std::string> _names;
};

}  // namespace ZebManager
