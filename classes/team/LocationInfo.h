#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "common/Logger.h"
#include "common/Physloc.h"

namespace ZEB {

/// A place part by part, from the outermost: a text for each, and beside it what kind of part it is.
struct LocationInfo {
  std::vector<std::string> texts;
  std::vector<std::uint16_t> kinds;
};

/// Nothing for a place of unknown kind. Logs and throws `CmpiStatus` with `CMPI_RC_ERROR_SYSTEM` unless every
/// text has one kind.
std::optional<LocationInfo> locationInfo(const Logger& logger, const physloc_t& location);

}  // namespace ZEB
