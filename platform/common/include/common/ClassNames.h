#pragma once

#include "cmpicpp/CmpiName.h"

namespace ZEB {

// Classes that the provider refers to and other providers serve, and names that the whole system shares.
inline constexpr CmpiCpp::NameLiteral kComputerSystemClass = "ZEB_ComputerSystem";
inline constexpr CmpiCpp::NameLiteral kFCHBAComputerSystemClass = "ZEB_FCHBAComputerSystem";
inline constexpr CmpiCpp::NameLiteral kChassisClass = "ZEB_ComputerSystemChassis";
inline constexpr CmpiCpp::NameLiteral kPerformWork = "PerformWork";
/// Where data stores are kept unless the site has another place for them.
inline constexpr const char kDataStoreDirectory[] = "/var/lib/qv-zeb/";

}  // namespace ZEB
