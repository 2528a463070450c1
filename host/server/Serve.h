// The command `serve`.
#pragma once

#include "cli/Commands.h"

namespace ZebHost {

/// Serves until a signal asks it to end. Returns the exit status. Throws HostError or SchemaError.
int serve(const Options& options, const Output& output);

}  // namespace ZebHost
