// Whether everything is as it should be.
#pragma once

#include "cli/Commands.h"

namespace ZebManager {

/// Looks at the schema, the plug-in, what it can read, its stores and records, and at what the plug-in of
/// whatever object manager has last reported, and prints what it found. Returns the exit status: 0 when
/// nothing is wrong, else 1.
int diagnose(const Options& options, const Output& output);

}  // namespace ZebManager
