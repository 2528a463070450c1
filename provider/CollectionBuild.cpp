#include <ctime>
#include <optional>

#include "classes/port/ZEB_EthernetPort.h"
#include "classes/team/ZEB_EthernetTeam.h"
#include "classes/team/ZEB_EthernetTeamMember.h"
#include "cmpicpp/CmpiStatus.h"
#include "monitor/ZEB_EthEventSettings.h"
#include "monitor/ZEB_EthernetCollection.h"
#include "monitor/ZEB_EthernetGroupHostedCollection.h"
#include "monitor/ZEB_EthernetMemberOfCollection.h"
#include "provider/InstanceBuild.h"

// The last part of a build: the settings, the collection of all ports, and who is a member of what.

namespace ZEB {

void ZEBEthernetPortProvider::InstanceBuild::buildCollection() {
  auto& settings = create<ZEB_EthEventSettings>();
  _provider._eventSettings = &settings;
  auto& collection = create<ZEB_EthernetCollection>();
  create<ZEB_EthernetGroupHostedCollection>(collection, _system);
  buildMemberships(collection);

  collection.updateStatusFilter(_provider._collection, _provider._dataStore.get());
  collection.updateMembers(_provider._collection, false);
  settings.setLastPollTime(std::time(nullptr));
}

void ZEBEthernetPortProvider::InstanceBuild::buildMemberships(ZEB_EthernetCollection& collection) {
  // The keys of thousands of new ports are one transaction.
  std::optional<DataStore::Batch> batch;
  if (_provider._dataStore) batch.emplace(*_provider._dataStore);
  for (const TeamRecord& team : _teams) {
    create<ZEB_EthernetMemberOfCollection>(*team.team, collection).setVisible(team.valid);
  }
  for (const PortEntry& entry : _ports) {
    if (entry.teamIndex != PortEntry::kNoTeam) {
      buildTeamMember(entry);
      continue;
    }
    create<ZEB_EthernetMemberOfCollection>(*entry.port, collection).setVisible(entry.visible);
    if (batch && _filterIsKept) keepFilter(*entry.port);
  }
  try {
    if (batch && _filterIsKept) batch->commit();
  } catch (const CmpiCpp::CmpiStatus& status) {
    _provider._logger.error("the status filters cannot be kept: %s", status.what());
  }
}

void ZEBEthernetPortProvider::InstanceBuild::buildTeamMember(const PortEntry& entry) {
  const TeamRecord& team = _teams[static_cast<std::size_t>(entry.teamIndex)];
  create<ZEB_EthernetTeamMember>(team.team->makeObjectPath(), entry.port->makeObjectPath(), team.data,
                                 entry.record);
}

void ZEBEthernetPortProvider::InstanceBuild::keepFilter(ZEB_EthernetPort& port) {
  DataStore& store = *_provider._dataStore;
  const std::string& key = port.filterKey();
  try {
    if (store.exists(key)) return;
    _provider._logger.info("store key for %s...", key);
    store.setBool(key, true);
  } catch (const CmpiCpp::CmpiStatus& status) {
    // Said once for the whole build, which goes on without.
    _filterIsKept = false;
    _provider._logger.error("the status filters cannot be kept: %s", status.what());
  }
}

}  // namespace ZEB
