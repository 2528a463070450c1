// Somebody who is told of alerts.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "Unit.h"
#include "support/TestListener.h"

namespace ZebManager {

/// Makes a filter for all alerts, a listener and a subscription, as the user "writer".
void subscribe(const Unit& unit, const std::string& url);

/// The element and the event of each alert that came, in order.
std::vector<std::pair<std::string, std::string>> eventsAt(const TestListener& listener);

}  // namespace ZebManager
