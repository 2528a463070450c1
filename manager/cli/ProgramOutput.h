// What another program of zebcim's says.
#pragma once

#include <string>
#include <vector>

#include "values/ManagerError.h"

namespace ZebManager {

/// Its standard error, which is this process's, says why.
class ProgramFailed : public ManagerError {
 public:
  using ManagerError::ManagerError;
};

/// All of its standard output. Throws ManagerError when it is not there, ProgramFailed when it fails.
std::string outputOf(const std::string& program, const std::vector<std::string>& arguments);

}  // namespace ZebManager
