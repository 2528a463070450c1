#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "snapshot/HostSnapshot.h"

namespace ZEB::ethernet {

/// Where a driver keeps the counters that are reported, among all that it has: found once by their names.
struct CounterPlaces {
  std::uint32_t total = 0;
  struct Place {
    std::uint32_t position;
    std::optional<std::uint64_t> MacStatistics::*counter;
  };
  std::vector<Place> places;
};

/// Which of a driver's counters mean what. Drivers name alike things in many ways; where one has several of
/// the names, the plainest counts.
CounterPlaces findCounters(const std::vector<std::string>& names);

}  // namespace ZEB::ethernet
