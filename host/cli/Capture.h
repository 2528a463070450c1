// Recording this host.
#pragma once

#include <string>

#include "cli/Options.h"

namespace ZebHost {

/// Puts the tool that records in the place of this process. Returns only by throwing HostError: the tool is
/// not there or does not start.
[[noreturn]] void capture(const Options& options, const std::string& executableFolder);

}  // namespace ZebHost
