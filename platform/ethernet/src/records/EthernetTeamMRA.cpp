#include "ethernet/EthernetTeamMRA.h"

#include "model/Changes.h"
#include "records/RecordFactory.h"
#include "records/Walk.h"

namespace ZEB {

using namespace ethernet;

namespace {

constexpr auto kKind = Inventory::Kind::Teams;

int code(Walk::Result result) {
  if (result == Walk::Result::Entry) return EthernetTeamMRA::kDelivered;
  return result == Walk::Result::End ? EthernetTeamMRA::kNoMoreData : EthernetTeamMRA::kFailed;
}

}  // namespace

EthernetTeamMRA::EthernetTeamMRA(std::shared_ptr<Inventory> inventory)
    : _inventory(std::move(inventory)), _walk(std::make_unique<Walk>(_inventory, kKind)) {}

EthernetTeamMRA::~EthernetTeamMRA() = default;

int EthernetTeamMRA::getFirstData(bool fresh, EthernetTeamDataObject& team) {
  const auto deliver = [&](const TeamEntry& entry) { team = makeRecord(entry, _inventory); };
  return code(_walk->first(fresh, &Model::teams, deliver));
}

int EthernetTeamMRA::getNextData(bool, EthernetTeamDataObject& team) {
  const auto deliver = [&](const TeamEntry& entry) { team = makeRecord(entry, _inventory); };
  return code(_walk->next(&Model::teams, deliver));
}

bool EthernetTeamMRA::forceReload(std::vector<std::string>& added, std::vector<std::string>& removed) {
  added.clear();
  removed.clear();
  const auto model = _inventory->reload(kKind);
  _reloadFailed = !model;
  if (!model) return false;
  const auto given = _inventory->delivered(kKind);
  added = teamsAdded(given.get(), model.get());
  removed = teamsAdded(model.get(), given.get());
  return _inventory->deliveryPending(kKind) || !added.empty() || !removed.empty() ||
         teamsDiffer(given.get(), *model);
}

int EthernetTeamMRA::updateAll() {
  return _inventory->update() ? kDelivered : kFailed;
}

bool EthernetTeamMRA::ethTeamEventDetected() {
  return _inventory->eventDetected(kKind);
}

void EthernetTeamMRA::eventsProcessed() {
  _inventory->lookedThrough(kKind);
}

void EthernetTeamMRA::buildFailed() {
  _inventory->beginDelivery(kKind);
}

std::unique_ptr<EthernetTeamMRA> ethernetTeamMRAFactory(const Logger&) {
  return std::make_unique<EthernetTeamMRA>(processInventory());
}

}  // namespace ZEB
