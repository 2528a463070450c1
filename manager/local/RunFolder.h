// Where programs on this machine find each other.
#pragma once

#include <string>

namespace ZebManager {

/// The run directory of this system's plug-in, by the environment and its configuration file; ends with a
/// slash. Empty when it is to be nowhere: then no service is found. Throws ManagerError when the environment
/// names one that is none.
std::string configuredRunFolder();

/// The recording that this system's plug-in serves, by the same; empty when it serves this machine.
std::string configuredRecording();

/// The socket of the service that uses a run directory, which is not nowhere.
inline std::string serviceSocket(const std::string& runFolder) {
  return runFolder + "zebcim/socket";
}

}  // namespace ZebManager
