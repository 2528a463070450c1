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

/// For a program that runs beside a service, with what processor time nobody else wants.
struct Aside {
  std::string temporaryFolder;  ///< that it makes its own in
  int stop = -1;                ///< ends it when this can be read, or has been closed
};

/// All of its standard output. Throws ManagerError when it is not there, ProgramFailed when it fails or is
/// ended.
std::string outputOf(const std::string& program, const std::vector<std::string>& arguments,
                     const Aside* aside = nullptr);

}  // namespace ZebManager
