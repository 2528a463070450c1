#include "ethernet/EthernetTeamMRA.h"

#include "model/Changes.h"
#include "records/RecordFactory.h"
#include "records/Walk.h"

namespace ZEB {

using namespace ethernet;

namespace {

constexpr auto kTeams = Inventory::Kind::Teams;

int teamCode(Walk::Result result) {
  if (result == Walk::Result::Entry) return EthernetTeamMRA::kDelivered;
  return result == Walk::Result::End ? EthernetTeamMRA::kNoMoreData : EthernetTeamMRA::kFailed;
}

}  // namespace

EthernetTeamMRA::EthernetTeamMRA(std::shared_ptr<Inventory> inventory)
    : _inventory(std::move(inventory)), _walk(std::make_unique<Walk>(_inventory, kTeams)) {}

EthernetTeamMRA::~EthernetTeamMRA() = default;

int EthernetTeamMRA::getFirstData(bool fresh, EthernetTeamDataObject& team) {
  const auto deliver = [&](const TeamEntry& entry) { team = makeRecord(entry, _inventory); };
  return teamCode(_walk->first(fresh, &Model::teams, deliver));
}

int EthernetTeamMRA::getNextData(bool, EthernetTeamDataObject& team) {
  const auto deliver = [&](const TeamEntry& entry) { team = makeRecord(entry, _inventory); };
  return teamCode(_walk->next(&Model::teams, deliver));
}

bool EthernetTeamMRA::forceReload(std::vector<std::string>& added, std::vector<std::string>& removed) {
  added.clear();
  removed.clear();
  const auto model = _inventory->reload(kTeams);
  _reloadFailed = !model;
  if (!model) return false;
  const auto given = _inventory->delivered(kTeams);
  added = teamsAdded(given.get(), model.get());
  removed = teamsAdded(model.get(), given.get());
  return _inventory->deliveryPending(kTeams) || !added.empty() || !removed.empty() ||
         teamsDiffer(given.get(), *model);
}

int EthernetTeamMRA::updateAll() {
  return _inventory->update() ? kDelivered : kFailed;
}

bool EthernetTeamMRA::ethTeamEventDetected() {
  return _inventory->eventDetected(kTeams);
}

void EthernetTeamMRA::eventsProcessed() {
  _inventory->lookedThrough(kTeams);
}

void EthernetTeamMRA::buildFailed() {
  _inventory->beginDelivery(kTeams);
}

std::unique_ptr<EthernetTeamMRA> ethernetTeamMRAFactory(const Logger&) {
  return std::make_unique<EthernetTeamMRA>(processInventory());
}

}  // namespace ZEB
