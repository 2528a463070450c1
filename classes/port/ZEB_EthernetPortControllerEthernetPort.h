#pragma once

#include "classes/port/AssociationFrame.h"

namespace ZEB {

/// A controller and one of its ports.
class ZEB_EthernetPortControllerEthernetPort : public AssociationFrame {
 public:
  ZEB_EthernetPortControllerEthernetPort(const Logger& logger, const std::string& nameSpace,
                                         const CmpiCpp::CmpiObjectPath& controller,
                                         const CmpiCpp::CmpiObjectPath& port);
};

}  // namespace ZEB
