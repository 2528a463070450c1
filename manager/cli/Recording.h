// What is served, as a recording.
#pragma once

#include <string>
#include <string_view>

#include "cli/Options.h"

namespace ZebManager {

/// The text of the recording that is played, else of one of this machine that is made now. Throws
/// ManagerError.
std::string recordingOf(const Options& options);

/// The message that asks the plug-in's process for it, which may read what others may not. No CIM-XML begins
/// so.
inline constexpr std::string_view kRecordingMessage = "record";

}  // namespace ZebManager
