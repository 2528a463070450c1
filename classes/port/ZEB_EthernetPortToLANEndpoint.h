#pragma once

#include "classes/port/AssociationFrame.h"

namespace ZEB {

/// A port, or one that carries a VLAN, and the LAN endpoint on it.
class ZEB_EthernetPortToLANEndpoint : public AssociationFrame {
 public:
  ZEB_EthernetPortToLANEndpoint(const Logger& logger, const std::string& nameSpace,
                                const CmpiCpp::CmpiObjectPath& port,
                                const CmpiCpp::CmpiObjectPath& lanEndpoint);
};

}  // namespace ZEB
