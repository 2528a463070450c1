#pragma once

#include <string>

#include "model/Model.h"

namespace ZEB::ethernet {

/// What LACP says of the teams that speak it, as JSON: a list of them with their names, the aggregator that
/// carries their traffic, their partner, and each member's aggregator and states. What is not known is left
/// out.
std::string linkAggregationText(const Model& model);

}  // namespace ZEB::ethernet
