#include "classes/team/TeamChanges.h"

#include <algorithm>

#include "ethernet/EthernetTeamDataObject.h"
#include "monitor/alerts/Events.h"

namespace ZEB {
namespace {

using Slaves = std::vector<EthernetTeamSlave>;

bool isAny(operationalStatus) {
  return true;
}
bool isOK(operationalStatus status) {
  return status == operationalStatus::OK;
}
bool isNotOK(operationalStatus status) {
  return !isOK(status);
}
bool isDormant(operationalStatus status) {
  return status == operationalStatus::Dormant;
}
bool isFailing(operationalStatus status) {
  return status == operationalStatus::Degraded || status == operationalStatus::Error;
}

/// A message is its two parts around the team's name.
struct StatusChange {
  bool (*before)(operationalStatus);
  bool (*now)(operationalStatus);
  const char* start;
  const char* end;
  int eventId;
};

constexpr StatusChange kStatusChanges[] = {
    {isNotOK, isFailing, "Ethernet Team ", " has failed", kFailed},
    {isOK, isFailing, "Ethernet Team ", " has lost connectivity", kConnectivityLost},
    {isAny, isDormant, "Ethernet Team ", " has been deactivated", kDeactivated},
    {isFailing, isOK, "The connectivity of Ethernet Team ", " has restored", kConnectivityRestored},
    {isDormant, isOK, "Ethernet Team ", " has been activated", kActivated},
};

/// Members that are OK, before and now, and how many members there are now.
struct Redundancy {
  int before;
  int now;
  int members;
};

struct RedundancyChange {
  bool (*applies)(const Redundancy&);
  const char* start;
  const char* end;
  int eventId;
};

constexpr RedundancyChange kRedundancyChanges[] = {
    {[](const Redundancy& r) { return r.now > r.before && r.now != r.members; },
     "The redundancy of Ethernet Team ", " has increased", kRedundancyIncreased},
    {[](const Redundancy& r) { return r.now > r.before && r.now == r.members; },
     "The redundancy of Ethernet Team ", " has fully restored", kRedundancyRestored},
    {[](const Redundancy& r) { return r.now < r.before && r.now > 1; }, "The redundancy of Ethernet Team ",
     " has decreased", kRedundancyDecreased},
    {[](const Redundancy& r) { return r.now < r.before && r.now == 1; }, "The redundancy of Ethernet Team ",
     " has lost", kRedundancyLost},
    {[](const Redundancy& r) { return r.now < r.before && r.now == 0; }, "The Ethernet Team ", " has failed",
     kTeamFailed},
};

const EthernetTeamSlave* findByName(const Slaves& slaves, const std::string& name) {
  const auto found = std::ranges::find(slaves, name, &EthernetTeamSlave::name);
  return found == slaves.end() ? nullptr : &*found;
}

int countOK(const Slaves& slaves) {
  return static_cast<int>(std::ranges::count(slaves, operationalStatus::OK, &EthernetTeamSlave::status));
}
int countActive(const Slaves& slaves) {
  return static_cast<int>(std::ranges::count(slaves, true, &EthernetTeamSlave::active));
}

TeamAlert memberChanged(int eventId, const char* what, const std::string& member, const std::string& team,
                        const std::string& before, const std::string& now) {
  return {eventId, "The " + std::string(what) + " of member " + member + " of Ethernet Team " + team +
                       " has changed from " + before + " to " + now};
}

/// Walks the members that there were.
void addChangesAndDepartures(std::vector<TeamAlert>& alerts, const std::string& team,
                             const TeamAlertGates& gates, const Slaves& before, const Slaves& now) {
  const auto roleText = &EthernetTeamDataObject::roleToString;
  for (const EthernetTeamSlave& old : before) {
    const EthernetTeamSlave* current = findByName(now, old.name);
    if (!current) {
      if (gates.memberLeft) {
        alerts.push_back(
            {kMemberDropped, "Member " + old.name + " has been dropped from Ethernet Team " + team});
      }
      continue;
    }
    // Whoever has come and got its link has done just that.
    if (current->joining || (old.joining && isOK(current->status))) continue;
    if (gates.memberRoleChanged && old.role != current->role) {
      alerts.push_back(memberChanged(kMemberRoleChanged, "role", old.name, team, roleText(old.role),
                                     roleText(current->role)));
    }
    if (gates.memberStatusChanged && old.status != current->status) {
      alerts.push_back(memberChanged(kMemberStatusChanged, "status", old.name, team,
                                     opstatusToString(old.status), opstatusToString(current->status)));
    }
  }
}

/// Walks the members that there are.
void addArrivals(std::vector<TeamAlert>& alerts, const std::string& team, const TeamAlertGates& gates,
                 const Slaves& before, const Slaves& now) {
  if (!gates.memberJoined) return;
  for (const EthernetTeamSlave& current : now) {
    if (findByName(before, current.name)) continue;
    alerts.push_back(
        {kMemberAdded, "New Member " + current.name + " has been added into Ethernet Team " + team});
  }
}

}  // namespace

std::optional<TeamAlert> teamStatusAlert(const std::string& team, operationalStatus before,
                                         operationalStatus now) {
  const auto change = std::ranges::find_if(
      kStatusChanges, [&](const StatusChange& c) { return c.before(before) && c.now(now); });
  if (change == std::end(kStatusChanges)) return std::nullopt;
  return TeamAlert{change->eventId, change->start + team + change->end};
}

std::vector<TeamAlert> teamMemberAlerts(const Logger& logger, const std::string& team,
                                        const TeamAlertGates& gates, const Slaves& before,
                                        const Slaves& now) {
  std::vector<TeamAlert> alerts;
  addChangesAndDepartures(alerts, team, gates, before, now);
  addArrivals(alerts, team, gates, before, now);

  const Redundancy redundancy{countOK(before), countOK(now), static_cast<int>(now.size())};
  const int activeBefore = countActive(before);
  const int activeNow = countActive(now);
  logger.info("numOldStatusOK[%d], numNewStatusOK[%d]; numOldActive[%d], numNewActive[%d]", redundancy.before,
              redundancy.now, activeBefore, activeNow);
  if (gates.redundancyChanged) {
    const auto change = std::ranges::find_if(
        kRedundancyChanges, [&](const RedundancyChange& c) { return c.applies(redundancy); });
    if (change != std::end(kRedundancyChanges)) {
      alerts.push_back({change->eventId, change->start + team + change->end});
    }
  }
  if (gates.activeCountChanged && activeBefore != activeNow) {
    alerts.push_back({kActiveMembersChanged, "Active Member Count of Ethernet Team " + team +
                                                 " Changed from " + std::to_string(activeBefore) + " to " +
                                                 std::to_string(activeNow)});
  }
  return alerts;
}

}  // namespace ZEB
