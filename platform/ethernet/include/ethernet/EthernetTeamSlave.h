#pragma once

#include <string>

#include "common/OperationalStatus.h"
#include "ethernet/EthernetEnums.h"

namespace ZEB {

/// A member of a team, as it was when the team's record was last read.
struct EthernetTeamSlave {
  std::string name;  ///< OS device name
  bool active = false;
  EthTeamMemberRoleEnum role = EthTeamMemberRoleEnum::Unknown;
  operationalStatus status = operationalStatus::Unknown;
  bool joining = false;  ///< came lately and has had no link in the team so far
  friend bool operator==(const EthernetTeamSlave&, const EthernetTeamSlave&) = default;
};

}  // namespace ZEB
