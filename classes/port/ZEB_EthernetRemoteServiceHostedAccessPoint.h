#pragma once

#include "classes/port/AssociationFrame.h"

namespace ZEB {

/// The computer system and a default gateway that it uses.
class ZEB_EthernetRemoteServiceHostedAccessPoint : public AssociationFrame {
 public:
  ZEB_EthernetRemoteServiceHostedAccessPoint(const Logger& logger, const std::string& nameSpace,
                                             const CmpiCpp::CmpiObjectPath& system,
                                             const CmpiCpp::CmpiObjectPath& gateway);
};

}  // namespace ZEB
