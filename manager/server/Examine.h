// What an administrator would be asked about the server.
#pragma once

#include <iosfwd>

#include "cli/Options.h"

namespace ZebManager {

/// Looks at the configuration and at what it names, without changing anything, and prints a line for each
/// thing: "ok", "note" or "failed", what it is, and what is to be said of it, with tabs between.
void examine(const Options& options, std::ostream& out);

}  // namespace ZebManager
