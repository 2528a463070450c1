#include "classes/team/LocationInfo.h"

#include "cmpicpp/CmpiStatus.h"

namespace ZEB {

std::optional<LocationInfo> locationInfo(const Logger& logger, const physloc_t& location) {
  LocationInfo info;
  if (ZEBPhysloc::createLocationInfoVectors(location, info.texts, info.kinds) != 0) return std::nullopt;
  if (info.texts.size() != info.kinds.size()) {
    logger.error("lengths do not match for indexed arrays locationInfo and LocationInfoDesc.");
    throw CmpiCpp::CmpiStatus(CMPI_RC_ERROR_SYSTEM,
                              "lengths do not match for indexed arrays LocationInfo and LocationInfoDesc.");
  }
  return info;
}

}  // namespace ZEB
