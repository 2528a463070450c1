#pragma once

#include "classes/port/AssociationFrame.h"

namespace ZEB {

/// A LAN endpoint and an IP endpoint that is reached through it.
class ZEB_IPBindsToEthernetLANEndpoint : public AssociationFrame {
 public:
  ZEB_IPBindsToEthernetLANEndpoint(const Logger& logger, const std::string& nameSpace,
                                   const CmpiCpp::CmpiObjectPath& lanEndpoint,
                                   const CmpiCpp::CmpiObjectPath& ipEndpoint);
};

}  // namespace ZEB
