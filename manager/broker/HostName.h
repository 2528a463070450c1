// What this machine is called.
#pragma once

#include <string>

namespace ZebManager {

/// As the kernel has it, and as the plug-in's paths carry it; read once.
const std::string& hostName();

}  // namespace ZebManager
