#include "classes/team/TeamBuild.h"

#include "classes/port/Associations.h"
#include "classes/port/Known.h"
#include "classes/team/Associations.h"
#include "classes/team/ZEB_EthernetTeam.h"

namespace ZEB {

using CmpiCpp::CmpiObjectPath;

void TeamBuild::buildTeamInstances(EthernetTeamMRA& source) {
  EthernetTeamDataObject team(_maker.logger());
  int result = source.getFirstData(false, team);
  for (std::uint32_t number = 1; result == EthernetTeamMRA::kDelivered; ++number) {
    buildTeam(number, team);
    result = source.getNextData(false, team);
    if (result != EthernetTeamMRA::kDelivered && result != EthernetTeamMRA::kNoMoreData) {
      _maker.logger().error("failed to _ethTeamMRA::getNextData()");
    }
  }
}

void TeamBuild::buildTeam(std::uint32_t number, const EthernetTeamDataObject& team) {
  const EthernetTeamDataObject record = withoutVlans(team);
  auto& instance = _maker.create<ZEB_EthernetTeam>(number, record);
  const CmpiObjectPath path = instance.makeObjectPath();
  _maker.tie<ZEB_HostedEthernetTeam>(_maker.system(), path);

  const std::size_t position = _teams.size();
  _teams.push_back({true, &instance, record.getSlaves(), record});
  for (const EthernetTeamSlave& slave : _teams.back().slaves) _teamOfMember.try_emplace(slave.name, position);

  _endpoints.build<ZEB_EthernetTeamToLANEndpoint>(path, record);
  for (const EthernetVLanDataObject& vlan : team.vlans) {
    _endpoints.build<ZEB_EthernetTeamToLANEndpoint>(path, vlan);
  }
}

void TeamBuild::buildPortVLanInstances(const CmpiObjectPath& port, const EthernetPort& record) {
  for (const EthernetVLanDataObject& vlan : record.vlans) {
    _endpoints.build<ZEB_EthernetPortToLANEndpoint>(port, vlan);
  }
}

const TeamRecord* TeamBuild::findTeamOfPort(const EthernetPort& port) const {
  const auto name = known(port, &EthernetPort::getOsDeviceName);
  const auto team = name ? _teamOfMember.find(*name) : _teamOfMember.end();
  return team == _teamOfMember.end() ? nullptr : &_teams[team->second];
}

}  // namespace ZEB
