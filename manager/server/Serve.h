// The command `serve`.
#pragma once

#include <iosfwd>

#include "cli/Options.h"

namespace ZebManager {

/// Serves until a signal asks it to end. Prints where on `out`, and its log on `err`. Returns the exit
/// status. Throws ManagerError or SchemaError.
int serve(const Options& options, std::ostream& out, std::ostream& err);

}  // namespace ZebManager
