// Which indication opens which alert, and which ends it.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "alertmanager/OpenAlert.h"
#include "tree/PropertyView.h"
#include "tree/Tree.h"

namespace ZebManager {

/// "critical" or "warning".
const char* severityOf(const std::string& alertName);

/// Whether an event opens or ends anything.
bool concernsAlertmanager(const std::string& eventId);
/// Whether an indication is of a port, which only its path names.
bool isOfPort(const PropertyView& indication);

/// What an indication does, in order. `interface`: name of the port that it is about, when it is about one.
std::vector<AlertChange> changesOf(const PropertyView& indication, const std::string& interface,
                                   DayTime time);

/// Whether the machine, as it is now, says that an alert is over. What it does not say ends nothing.
bool isOver(const OpenAlert& alert, const Tree& machine, DayTime now);

}  // namespace ZebManager
