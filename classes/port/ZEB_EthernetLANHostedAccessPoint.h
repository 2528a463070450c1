#pragma once

#include "classes/port/AssociationFrame.h"

namespace ZEB {

/// The computer system and a LAN endpoint.
class ZEB_EthernetLANHostedAccessPoint : public AssociationFrame {
 public:
  ZEB_EthernetLANHostedAccessPoint(const Logger& logger, const std::string& nameSpace,
                                   const CmpiCpp::CmpiObjectPath& system,
                                   const CmpiCpp::CmpiObjectPath& lanEndpoint);
};

}  // namespace ZEB
