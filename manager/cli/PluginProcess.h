// The plug-in's process.
#pragma once

#include "cli/Options.h"

namespace ZebManager {

/// What the hidden command `provide` does: performs the messages that come through the inherited socket.
/// Returns the exit status.
int runPluginProcess(const Options& options);

}  // namespace ZebManager
