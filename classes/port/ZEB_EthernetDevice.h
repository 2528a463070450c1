#pragma once

#include "classes/port/AssociationFrame.h"

namespace ZEB {

/// The computer system and one of its ports.
class ZEB_EthernetDevice : public AssociationFrame {
 public:
  ZEB_EthernetDevice(const Logger& logger, const std::string& nameSpace,
                     const CmpiCpp::CmpiObjectPath& system, const CmpiCpp::CmpiObjectPath& port);
};

}  // namespace ZEB
