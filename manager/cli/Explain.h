// The command `explain`.
#pragma once

#include "cli/Commands.h"

namespace ZebManager {

/// Prints of each property of an instance, or of one, where its value comes from. Throws ManagerError.
void explain(const Options& options, Session& session, const Output& output);

}  // namespace ZebManager
