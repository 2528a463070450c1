// What an instance is like, to find it again on a machine that has fewer interfaces.
#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "broker/Namespace.h"

namespace ZebManager {

using InstanceValues = nlohmann::ordered_json;  ///< by property, as they are served

InstanceValues valuesOf(const Instance& instance);
/// Of one that is only enumerated, too; nothing when there is none.
std::optional<InstanceValues> readValues(Namespace& model, const std::string& path);

/// Of all instances of its class, in the order in which they are served, the paths.
std::vector<std::string> pathsBeside(Namespace& model, const std::string& path);

/// The interfaces that an instance stands for, or those that the nearest things stand for that it is
/// associated with. The system is near to everything and leads nowhere. Throws ManagerError.
std::set<std::string> interfacesNear(Namespace& model, const std::string& path);

/// What is the same wherever the instance is: the numbers in its names are others there.
struct Likeness {
  std::string className;
  InstanceValues values;
  std::set<std::string> interfaces;
  bool isOnlyOne = false;  ///< of its class

  /// Throws ManagerError.
  static Likeness of(Namespace& model, const std::string& path, const InstanceValues& values);
  /// Whether the instance of that path is like it.
  bool isAt(Namespace& model, const std::string& path) const;
  /// The path of the instance that is like it there; nothing when none is, or two are.
  std::optional<std::string> findIn(Namespace& model) const;
};

}  // namespace ZebManager
