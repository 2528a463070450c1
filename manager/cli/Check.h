// The machine in one line.
#pragma once

#include "cli/Commands.h"

namespace ZebManager {

/// Prints a line as monitoring systems take it, with performance data, and returns their status: 0 all is
/// well, 1 something is degraded, 2 something has failed, 3 it cannot be said.
int check(const Options& options, const Output& output);

}  // namespace ZebManager
