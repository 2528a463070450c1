#pragma once

#include <optional>

#include "common/Physloc.h"
#include "model/Facts.h"

namespace ZEB::ethernet {

/// Where an adapter sits; nothing when that is not known. A slot that has a number counts before what the
/// firmware says of on-board devices. No two adapters of one model sit in the same place.
std::optional<physloc_t> locationOf(const AdapterFacts& adapter);

}  // namespace ZEB::ethernet
