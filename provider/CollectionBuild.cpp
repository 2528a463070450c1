#include "provider/CollectionBuild.h"

#include <optional>

#include "classes/port/ZEB_EthernetPort.h"
#include "classes/team/ZEB_EthernetTeam.h"
#include "classes/team/ZEB_EthernetTeamMember.h"
#include "cmpicpp/CmpiStatus.h"
#include "monitor/ZEB_EthernetCollection.h"
#include "monitor/ZEB_EthernetGroupHostedCollection.h"
#include "monitor/ZEB_EthernetMemberOfCollection.h"

namespace ZEB {

void CollectionBuild::run(CmpiManagedInstanceCollection& instances, const std::vector<TeamRecord>& teams,
                          const std::vector<PortEntry>& ports) {
  auto& collection = _maker.create<ZEB_EthernetCollection>();
  _maker.create<ZEB_EthernetGroupHostedCollection>(collection, _maker.system());
  buildMemberships(collection, teams, ports);
  collection.updateStatusFilter(instances, _store);
  collection.updateMembers(instances, false);
}

void CollectionBuild::buildMemberships(ZEB_EthernetCollection& collection,
                                       const std::vector<TeamRecord>& teams,
                                       const std::vector<PortEntry>& ports) {
  // The keys of thousands of new ports are one transaction.
  std::optional<DataStore::Batch> batch;
  if (_store) batch.emplace(*_store);
  for (const TeamRecord& team : teams) {
    _maker.create<ZEB_EthernetMemberOfCollection>(*team.team, collection).setVisible(team.valid);
  }
  for (const PortEntry& entry : ports) buildMembership(collection, entry);
  try {
    if (batch && _filterIsKept) batch->commit();
  } catch (const CmpiCpp::CmpiStatus& status) {
    _maker.logger().error("the status filters cannot be kept: %s", status.what());
  }
}

void CollectionBuild::buildMembership(ZEB_EthernetCollection& collection, const PortEntry& entry) {
  if (entry.team) {
    _maker.create<ZEB_EthernetTeamMember>(entry.team->team->makeObjectPath(), entry.port->makeObjectPath(),
                                          entry.team->data, entry.record);
    return;
  }
  _maker.create<ZEB_EthernetMemberOfCollection>(*entry.port, collection).setVisible(entry.visible);
  if (_store && _filterIsKept) keepFilter(*entry.port);
}

void CollectionBuild::keepFilter(ZEB_EthernetPort& port) {
  const std::string& key = port.filterKey();
  try {
    if (_store->exists(key)) return;
    _maker.logger().info("store key for %s...", key);
    _store->setBool(key, true);
  } catch (const CmpiCpp::CmpiStatus& status) {
    // Said once for the whole build, which goes on without.
    _filterIsKept = false;
    _maker.logger().error("the status filters cannot be kept: %s", status.what());
  }
}

}  // namespace ZEB
