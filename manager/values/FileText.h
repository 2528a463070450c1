#pragma once

#include <string>

namespace ZebManager {

/// All that a file holds. Throws ManagerError when it cannot be read.
std::string textOfFile(const std::string& file);

}  // namespace ZebManager
