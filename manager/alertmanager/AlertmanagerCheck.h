// Whether an Alertmanager takes alerts.
#pragma once

#include <string>

#include "alertmanager/AlertmanagerSettings.h"

namespace ZebManager {

/// Posts it no alert, and waits a few seconds at most. Empty when it takes that, else what is wrong and what
/// to do.
std::string troubleWithAlertmanager(const AlertmanagerSettings& settings, const std::string& url);

}  // namespace ZebManager
