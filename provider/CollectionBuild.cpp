#include "provider/CollectionBuild.h"

#include "classes/port/ZEB_EthernetPort.h"
#include "classes/team/ZEB_EthernetTeam.h"
#include "classes/team/ZEB_EthernetTeamMember.h"
#include "monitor/ZEB_EthernetCollection.h"
#include "monitor/ZEB_EthernetGroupHostedCollection.h"
#include "monitor/ZEB_EthernetMemberOfCollection.h"

namespace ZEB {

void CollectionBuild::run(CmpiManagedInstanceCollection& instances, const std::vector<TeamRecord>& teams,
                          const std::vector<PortEntry>& ports) {
  auto& collection = _maker.create<ZEB_EthernetCollection>();
  _maker.tie<ZEB_EthernetGroupHostedCollection>(collection, _maker.system());
  buildMemberships(collection, teams, ports);
  collection.updateStatusFilter(instances, _store);
  collection.updateMembers(instances, false);
}

void CollectionBuild::buildMemberships(ZEB_EthernetCollection& collection,
                                       const std::vector<TeamRecord>& teams,
                                       const std::vector<PortEntry>& ports) {
  if (_maker.makesAll()) {
    for (const TeamRecord& team : teams) {
      _maker.create<ZEB_EthernetMemberOfCollection>(*team.team, collection).setVisible(team.valid);
    }
    for (const PortEntry& entry : ports) buildMembership(collection, entry);
  }
  // The keys of thousands of new ports are one transaction.
  DataStore::Values missing;
  const auto kept = _store ? _store->values() : nullptr;
  for (const PortEntry& entry : ports) {
    if (!kept || entry.team || kept->contains(entry.port->filterKey())) continue;
    _maker.logger().info("store key for %s...", entry.port->filterKey());
    missing.emplace(entry.port->filterKey(), true);
  }
  if (_store) _store->addDefaults(missing);
}

void CollectionBuild::buildMembership(ZEB_EthernetCollection& collection, const PortEntry& entry) {
  if (entry.team) {
    _maker.create<ZEB_EthernetTeamMember>(entry.team->team->makeObjectPath(), entry.port->makeObjectPath(),
                                          entry.team->data, entry.record);
    return;
  }
  _maker.create<ZEB_EthernetMemberOfCollection>(*entry.port, collection).setVisible(entry.visible);
}

}  // namespace ZEB
