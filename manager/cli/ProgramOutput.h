// What another program of zebcim's says.
#pragma once

#include <string>
#include <vector>

namespace ZebManager {

/// All of its standard output. Throws ManagerError when it is not there or fails.
std::string outputOf(const std::string& program, const std::vector<std::string>& arguments);

}  // namespace ZebManager
