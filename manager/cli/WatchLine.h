// An alert as a line for people.
#pragma once

#include <chrono>
#include <string>

#include "values/Objects.h"

namespace ZebManager {

class PropertyView;

/// How bad an alert is, in a word or two.
std::string severityOf(const PropertyView& alert);
/// Where the hardware is that it is about; empty when it does not say.
std::string placeOf(const PropertyView& alert);

/// How a line is shown.
struct LineStyle {
  bool colour = false;
  std::size_t width = 0;  ///< columns; 0: as many as it takes
  bool advice = false;    ///< with what is recommended, one a line
};

/// Local time, name, severity, what happened, and where in brackets, without a line end. `name` is that of
/// the port or team, or empty.
std::string lineOfAlert(const Instance& alert, std::chrono::system_clock::time_point arrival,
                        const std::string& name, const LineStyle& style);

}  // namespace ZebManager
