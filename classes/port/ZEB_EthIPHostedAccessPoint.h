#pragma once

#include "classes/port/AssociationFrame.h"

namespace ZEB {

/// The computer system and an IP endpoint.
class ZEB_EthIPHostedAccessPoint : public AssociationFrame {
 public:
  ZEB_EthIPHostedAccessPoint(const Logger& logger, const std::string& nameSpace,
                             const CmpiCpp::CmpiObjectPath& system,
                             const CmpiCpp::CmpiObjectPath& ipEndpoint);
};

}  // namespace ZEB
