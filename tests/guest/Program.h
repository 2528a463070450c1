#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "posix/ChildProcess.h"

namespace ZEB::guest {

/// Starts `arguments[0]`, found along PATH, with standard output and error appended to `log`.
ChildProcess startProgram(std::vector<std::string> arguments, const std::filesystem::path& log);

}  // namespace ZEB::guest
