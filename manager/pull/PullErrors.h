// The errors of CIM that enumerations have beside those of the C interface.
#pragma once

#include "cmpi/cmpi.h"

namespace ZebManager {

inline constexpr auto kInvalidEnumerationContext = static_cast<CMPIrc>(21);
inline constexpr auto kInvalidOperationTimeout = static_cast<CMPIrc>(22);
inline constexpr auto kPullHasBeenAbandoned = static_cast<CMPIrc>(23);
inline constexpr auto kFilteredEnumerationNotSupported = static_cast<CMPIrc>(25);
inline constexpr auto kServerLimitsExceeded = static_cast<CMPIrc>(27);

}  // namespace ZebManager
