#pragma once

#include "classes/port/AssociationFrame.h"

namespace ZEB {

/// A default gateway and an IP endpoint that uses it.
class ZEB_EthernetRemoteAccessAvailableToIPEndpoint : public AssociationFrame {
 public:
  ZEB_EthernetRemoteAccessAvailableToIPEndpoint(const Logger& logger, const std::string& nameSpace,
                                                const CmpiCpp::CmpiObjectPath& gateway,
                                                const CmpiCpp::CmpiObjectPath& ipEndpoint);
};

}  // namespace ZEB
