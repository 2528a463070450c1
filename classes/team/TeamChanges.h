#pragma once

#include <optional>
#include <string>
#include <vector>

#include "common/Logger.h"
#include "common/OperationalStatus.h"
#include "ethernet/EthernetTeamSlave.h"

namespace ZEB {

/// An alert that a change of a team calls for.
struct TeamAlert {
  int eventId;
  std::string message;
  friend bool operator==(const TeamAlert&, const TeamAlert&) = default;
};

/// Which changes of a team's members call for an alert.
struct TeamAlertGates {
  bool memberJoined = false;
  bool memberLeft = false;
  bool memberRoleChanged = false;
  bool memberStatusChanged = false;
  bool redundancyChanged = false;
  bool activeCountChanged = false;
};

/// The alert for a team's status that was `before` and is another one `now`, if the change calls for one.
std::optional<TeamAlert> teamStatusAlert(const std::string& team, operationalStatus before,
                                         operationalStatus now);

/// The alerts for what happened to a team's members, in the order in which they are sent: member by member
/// role, status or departure, then the new members, redundancy, and the number of active members. Logs what
/// it counted.
std::vector<TeamAlert> teamMemberAlerts(const Logger& logger, const std::string& team,
                                        const TeamAlertGates& gates,
                                        const std::vector<EthernetTeamSlave>& before,
                                        const std::vector<EthernetTeamSlave>& now);

}  // namespace ZEB
