#pragma once

#include "classes/port/AssociationFrame.h"

namespace ZEB {

/// A package and the place where it sits.
class ZEB_EthernetControllerPhysicalPackageEthernetControllerLocation : public AssociationFrame {
 public:
  ZEB_EthernetControllerPhysicalPackageEthernetControllerLocation(const Logger& logger,
                                                                  const std::string& nameSpace,
                                                                  const CmpiCpp::CmpiObjectPath& package,
                                                                  const CmpiCpp::CmpiObjectPath& location);
};

}  // namespace ZEB
