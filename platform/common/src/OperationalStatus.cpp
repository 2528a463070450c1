#include "common/OperationalStatus.h"

#include <array>

namespace ZEB {

const char* opstatusToString(operationalStatus status) {
  static constexpr std::array kTexts{"Unknown",
                                     "Other",
                                     "OK",
                                     "Degraded",
                                     "Stressed",
                                     "Predictive Failure",
                                     "Error",
                                     "Non-Recoverable Error",
                                     "Starting",
                                     "Stopping",
                                     "Stopped",
                                     "In Service",
                                     "No Contact",
                                     "Lost Communication",
                                     "Aborted",
                                     "Dormant",
                                     "Supporting Entity in Error",
                                     "Completed",
                                     "Power Mode",
                                     "Relocating"};
  const auto code = static_cast<std::size_t>(status);
  return code < kTexts.size() ? kTexts[code] : kTexts[0];
}

}  // namespace ZEB
