// An alert as a line for people.
#pragma once

#include <chrono>
#include <string>

#include "values/Objects.h"

namespace ZebManager {

/// Local time, severity, what happened, and where in brackets, without a line end. `name` is that of the port
/// or team, or empty.
std::string lineOfAlert(const Instance& alert, std::chrono::system_clock::time_point arrival,
                        const std::string& name, bool colour);

}  // namespace ZebManager
