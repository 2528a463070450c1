// Alerts as they come.
#pragma once

#include "cli/Commands.h"

namespace ZebManager {

/// Prints each alert at once, until a signal, the time or the number of alerts that the options name ends it.
/// Throws ManagerError.
void watchAlerts(const Options& options, Session& session, const Output& output);

}  // namespace ZebManager
