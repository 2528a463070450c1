#pragma once

#include <string>
#include <vector>

#include "ethernet/EthernetMRA.h"
#include "ethernet/EthernetTeamMRA.h"
#include "ethernet/Sources.h"

// The records of the recorded hosts.

namespace ZEB::test {

inline std::vector<EthernetAdapterDataObject> adaptersOf(const std::string& file,
                                                         bool includeVirtual = false) {
  EthernetMRA source(ethernet::recordedInventory(std::string(ZEB_SNAPSHOTS) + "/" + file, includeVirtual));
  std::vector<EthernetAdapterDataObject> adapters;
  EthernetAdapterDataObject adapter{Logger()};
  for (int rc = source.getFirstData(false, adapter); rc == 0; rc = source.getNextData(false, adapter)) {
    adapters.push_back(adapter);
  }
  return adapters;
}

inline std::vector<EthernetTeamDataObject> teamsOf(const std::string& file) {
  EthernetTeamMRA source(ethernet::recordedInventory(std::string(ZEB_SNAPSHOTS) + "/" + file, false));
  std::vector<EthernetTeamDataObject> teams;
  EthernetTeamDataObject team{Logger()};
  for (int rc = source.getFirstData(false, team); rc == 0; rc = source.getNextData(false, team))
    teams.push_back(team);
  return teams;
}

}  // namespace ZEB::test
