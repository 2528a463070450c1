#pragma once

#include "classes/port/AssociationFrame.h"

namespace ZEB {

/// A team and the LAN endpoint of the team itself or of a VLAN on it.
class ZEB_EthernetTeamToLANEndpoint : public AssociationFrame {
 public:
  ZEB_EthernetTeamToLANEndpoint(const Logger& logger, const std::string& nameSpace,
                                const CmpiCpp::CmpiObjectPath& team,
                                const CmpiCpp::CmpiObjectPath& lanEndpoint);
};

}  // namespace ZEB
