// One instance as the page shows it.
#pragma once

#include <string>

#include "broker/Namespace.h"

namespace ZebManager {

/// JSON: class, path, properties with types, values and what the schema says of them, and what associations
/// lead to. Throws ManagerError for a path that is none, CimError when the instance is not there.
std::string jsonOfInstance(Namespace& model, const std::string& path);

}  // namespace ZebManager
