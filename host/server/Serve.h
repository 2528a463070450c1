// The command `serve`.
#pragma once

#include <iosfwd>

#include "cli/Options.h"

namespace ZebHost {

/// Serves until a signal asks it to end. Prints where on `out`, and its log on `err`. Returns the exit
/// status. Throws HostError or SchemaError.
int serve(const Options& options, std::ostream& out, std::ostream& err);

}  // namespace ZebHost
