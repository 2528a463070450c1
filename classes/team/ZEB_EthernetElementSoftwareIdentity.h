#pragma once

#include "classes/port/AssociationFrame.h"

namespace ZEB {

/// A controller and its driver.
class ZEB_EthernetElementSoftwareIdentity : public AssociationFrame {
 public:
  ZEB_EthernetElementSoftwareIdentity(const Logger& logger, const std::string& nameSpace,
                                      const CmpiCpp::CmpiObjectPath& controller,
                                      const CmpiCpp::CmpiObjectPath& driver);
};

}  // namespace ZEB
