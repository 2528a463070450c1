// What the plug-in and a service depend on.
#pragma once

#include <string>

#include "cli/DoctorFindings.h"
#include "cli/Options.h"

namespace ZebManager {

/// The configuration file of the plug-in, in which nothing is wrong.
void lookAtSettings(DoctorFindings& findings);

/// Kernel and rights: what they keep the plug-in from telling.
void lookAtThisMachine(DoctorFindings& findings);

/// The configuration of the server as the server reads it, and whether a service answers.
void lookAtService(DoctorFindings& findings, const Options& options, const std::string& runFolder);

/// Where other object managers know the plug-in.
void lookAtObjectManagers(DoctorFindings& findings);

}  // namespace ZebManager
