// What the subscriptions of "root/interop" come to, for those who make and deliver indications.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "indications/BootClock.h"

namespace ZebManager {

/// Lines for the log of the server. May be called on any thread.
using LogLine = std::function<void(const std::string&)>;

/// A filter, and a listener that wants what it selects.
struct Subscription {
  std::string name;         ///< unique, and the same for as long as the subscription exists
  std::string filterName;   ///< `IndicationFilter::name`
  std::string handlerName;  ///< unique for a listener; indications of one listener are sent in order
  std::string destination;  ///< URL of the listener
  std::optional<BootClock::time_point> end = std::nullopt;  ///< nothing is queued from then on

  std::vector<std::string> properties = {};  ///< that the filter selects; empty for all

  bool operator==(const Subscription&) const = default;
};

}  // namespace ZebManager
