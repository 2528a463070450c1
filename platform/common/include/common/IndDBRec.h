#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace ZEB {

/// What is fixed about an event: its texts and codes.
struct IndDBRec {
  int severity = 0;  ///< value map "PerceivedSeverity"; what an indication's constructor takes
  std::string eventId;
  std::string summary;
  std::string description;
  std::uint16_t alertType = 0;  ///< value map "AlertType"
  std::string providerName;
  std::vector<std::string> recommendedActions;  ///< in the order in which to take them
  int category = 0;
  std::string otherCategory;        ///< the category in words, where it is 1
  std::uint16_t probableCause = 0;  ///< value map "ProbableCause"
  std::string probableCauseDescription;
};

}  // namespace ZEB
