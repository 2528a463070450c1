#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "snapshot/Outcome.h"

namespace ZEB::ethernet {

/// One moment of a timeline, as the JSON of a whole snapshot.
struct TimelineStep {
  double at = 0;
  nlohmann::json snapshot;
  std::string place;  ///< where in the file it stands, to begin a failure with
};

/// Makes every step of a timeline a whole snapshot: a step either is one or says what changes in the one
/// before.
Outcome<std::vector<TimelineStep>> unfoldTimeline(const nlohmann::json& root);

}  // namespace ZEB::ethernet
