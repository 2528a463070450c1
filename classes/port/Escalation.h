#pragma once

#include "common/OperationalStatus.h"

namespace ZEB {

/// A status that has just turned degraded counts as an error.
constexpr operationalStatus escalated(operationalStatus now, operationalStatus before) {
  return now == operationalStatus::Degraded && now != before ? operationalStatus::Error : now;
}

}  // namespace ZEB
