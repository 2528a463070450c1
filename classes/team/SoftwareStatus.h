#pragma once

#include "cmpicpp/CmpiInstance.h"

namespace ZEB {

/// "ElementSoftwareStatus" of software that is current and installed.
CmpiCpp::CmpiInstance::Property softwareStatus();

}  // namespace ZEB
