#pragma once

#include "classes/port/AssociationFrame.h"

namespace ZEB {

/// A controller and its firmware.
class ZEB_EthernetElementFirmwareIdentity : public AssociationFrame {
 public:
  ZEB_EthernetElementFirmwareIdentity(const Logger& logger, const std::string& nameSpace,
                                      const CmpiCpp::CmpiObjectPath& controller,
                                      const CmpiCpp::CmpiObjectPath& firmware);
};

}  // namespace ZEB
