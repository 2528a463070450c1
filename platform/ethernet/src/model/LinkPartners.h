#pragma once

#include <string>

#include "model/Model.h"

namespace ZEB::ethernet {

/// What is known of the other ends of cables, as JSON. "ports": of each that has a link and whose other end
/// says what it offers, its name, the largest speed of that in bits per second, and whether that is full
/// duplex. "teams": of each that speaks LACP its name, the aggregator that carries its traffic, its partner,
/// and each member's aggregator and states. What is not known is left out.
std::string linkPartnersText(const Model& model);

}  // namespace ZEB::ethernet
