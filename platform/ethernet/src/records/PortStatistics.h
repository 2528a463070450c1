#pragma once

#include "ethernet/EthStats.h"
#include "model/Facts.h"

namespace ZEB::ethernet {

/// Fills the counters that were read, with name, time and `known`. False, and nothing touched, when none was.
bool readStatistics(const PortFacts& facts, ethStats_st& statistics);

}  // namespace ZEB::ethernet
