// Running a program on a terminal.
#pragma once

#include <string>
#include <vector>

#include "Process.h"

namespace ZebManager {

/// Runs the program on a pseudo-terminal of so many columns; `out` has all that it printed there, with line
/// ends as programs write them.
Outcome runOnTerminal(unsigned columns, const std::string& program, const std::vector<std::string>& arguments,
                      const std::vector<std::string>& environment);

}  // namespace ZebManager
