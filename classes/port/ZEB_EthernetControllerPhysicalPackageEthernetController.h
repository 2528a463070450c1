#pragma once

#include "classes/port/AssociationFrame.h"

namespace ZEB {

/// A package and the controller that it carries.
class ZEB_EthernetControllerPhysicalPackageEthernetController : public AssociationFrame {
 public:
  ZEB_EthernetControllerPhysicalPackageEthernetController(const Logger& logger, const std::string& nameSpace,
                                                          const CmpiCpp::CmpiObjectPath& package,
                                                          const CmpiCpp::CmpiObjectPath& controller);
};

}  // namespace ZEB
