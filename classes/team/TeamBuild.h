#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "classes/port/InstanceMaker.h"
#include "classes/team/EndpointBuild.h"
#include "ethernet/EthernetPort.h"
#include "ethernet/EthernetTeamDataObject.h"
#include "ethernet/EthernetTeamMRA.h"

namespace ZEB {

class ZEB_EthernetTeam;

/// The record alone, which many instances copy. Nobody asks their copy for VLANs, and with them a build would
/// grow with the product of both.
template <class Record>
Record withoutVlans(Record record) {
  record.vlans = {};
  return record;
}

/// A team that was built. The collection owns the instance.
struct TeamRecord {
  bool valid = false;  ///< whether the team's membership in the collection of all is visible
  ZEB_EthernetTeam* team = nullptr;
  std::vector<EthernetTeamSlave> slaves;
  EthernetTeamDataObject data;  ///< without its VLANs
};

/// The part of a build that makes teams and VLANs, and knows which port belongs to which team.
class TeamBuild {
 public:
  TeamBuild(const InstanceMaker& maker, EndpointBuild& endpoints) : _maker(maker), _endpoints(endpoints) {}

  /// Every team of the source, once, before the ports.
  void buildTeamInstances(EthernetTeamMRA& source);
  void buildPortVLanInstances(const CmpiCpp::CmpiObjectPath& port, const EthernetPort& record);

  /// The first team that has a member of the port's name, or null.
  const TeamRecord* findTeamOfPort(const EthernetPort& port) const;
  const std::vector<TeamRecord>& teams() const { return _teams; }

 private:
  void buildTeam(std::uint32_t number, const EthernetTeamDataObject& team);

  const InstanceMaker& _maker;
  EndpointBuild& _endpoints;
  std::vector<TeamRecord> _teams;
  std::unordered_map<std::string, std::size_t> _teamOfMember;  ///< by the member's name, the first team
};

}  // namespace ZEB
