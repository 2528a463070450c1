// What an administrator would be asked about alerts that go to Alertmanager.
#pragma once

#include <functional>
#include <string>

#include "alertmanager/AlertmanagerSettings.h"

namespace ZebManager {

/// Calls `say` with "ok", "note" or "failed" and a text for each thing. Sends no alert.
void examineAlertmanager(const AlertmanagerSettings& settings,
                         const std::function<void(const char* state, const std::string& text)>& say);

}  // namespace ZebManager
