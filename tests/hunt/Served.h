#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "support/FakeBroker.h"

namespace ZEB::test {

/// What a plug-in serves: the values by instance and property.
using Served = std::map<std::string, std::string>;

/// Every instance and association that an instance interface enumerates.
Served servedBy(FakeBroker& broker, CMPIInstanceMI* instances);

/// The same as of one moment, settings and counters aside, and the state that all answers say that this is;
/// none where they do not say one.
struct ServedMoment {
  std::optional<std::uint64_t> state;
  Served served;
};
ServedMoment stateServedBy(FakeBroker& broker, CMPIInstanceMI* instances);

/// The same of a plug-in as it is when it is loaded now, from a file: beside the one that is linked in.
Served servedByANewOne();

/// What the one that lived serves otherwise than a new one, but for what it remembers; a line each.
std::string differences(const Served& anew, const Served& lived);

}  // namespace ZEB::test
