// What is posted to an Alertmanager.
#pragma once

#include <map>
#include <span>
#include <string>

#include "alertmanager/OpenAlert.h"

namespace ZebManager {

/// Alerts as JSON of its API v2. Those that are open end at `until`, unless they are sent again before. No
/// time is later than `now`, which may be earlier than when they began.
std::string alertsText(std::span<const OpenAlert> alerts, const std::map<std::string, std::string>& labels,
                       DayTime now, DayTime until);

}  // namespace ZebManager
