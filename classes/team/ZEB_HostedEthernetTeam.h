#pragma once

#include "classes/port/AssociationFrame.h"

namespace ZEB {

/// The computer system and one of its teams. The path names the team first, the instance the system.
class ZEB_HostedEthernetTeam : public AssociationFrame {
 public:
  ZEB_HostedEthernetTeam(const Logger& logger, const std::string& nameSpace,
                         const CmpiCpp::CmpiObjectPath& system, const CmpiCpp::CmpiObjectPath& team);
};

}  // namespace ZEB
