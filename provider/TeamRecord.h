#pragma once

#include <cstdint>
#include <vector>

#include "ethernet/EthernetPort.h"
#include "ethernet/EthernetTeamDataObject.h"
#include "ethernet/EthernetTeamSlave.h"

namespace ZEB {

class ZEB_EthernetPort;
class ZEB_EthernetTeam;

/// A team that was built. The collection owns the instance.
struct TeamRecord {
  bool valid = false;  ///< whether the team's membership in the collection of all is visible
  ZEB_EthernetTeam* team = nullptr;
  std::vector<EthernetTeamSlave> slaves;
  EthernetTeamDataObject data;  ///< without its VLANs
};

/// A port that was built. The collection owns the instance.
struct PortEntry {
  static constexpr std::int32_t kNoTeam = -1;

  std::int32_t teamIndex = kNoTeam;  ///< position among the team records
  bool visible = true;
  ZEB_EthernetPort* port = nullptr;
  EthernetPort record;  ///< without its VLANs
};

}  // namespace ZEB
