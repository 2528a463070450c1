#include "ethernet/EthernetMRA.h"

#include "model/Changes.h"
#include "model/LinkPartners.h"
#include "records/RecordFactory.h"
#include "records/Walk.h"

namespace ZEB {

using namespace ethernet;

namespace {

constexpr auto kKind = Inventory::Kind::Ports;

int code(Walk::Result result) {
  if (result == Walk::Result::Entry) return EthernetMRA::kDelivered;
  return result == Walk::Result::End ? EthernetMRA::kNoMoreData : EthernetMRA::kFailed;
}

}  // namespace

EthernetMRA::EthernetMRA(std::shared_ptr<Inventory> inventory)
    : _inventory(std::move(inventory)), _walk(std::make_unique<Walk>(_inventory, kKind)) {}

EthernetMRA::~EthernetMRA() = default;

int EthernetMRA::getFirstData(bool fresh, EthernetAdapterDataObject& adapter) {
  const auto deliver = [&](const AdapterEntry& entry) { adapter = makeRecord(entry, _inventory); };
  return code(_walk->first(fresh, &Model::adapters, deliver));
}

int EthernetMRA::getNextData(bool, EthernetAdapterDataObject& adapter) {
  const auto deliver = [&](const AdapterEntry& entry) { adapter = makeRecord(entry, _inventory); };
  return code(_walk->next(&Model::adapters, deliver));
}

bool EthernetMRA::forceReload() {
  const auto model = _inventory->reload(kKind);
  _reloadFailed = !model;
  if (!model) return false;
  const auto given = _inventory->delivered(kKind);
  return _inventory->deliveryPending(kKind) || adaptersDiffer(given.get(), *model);
}

int EthernetMRA::updateAll() {
  return _inventory->update() ? kDelivered : kFailed;
}

bool EthernetMRA::announced() {
  return _inventory->announced();
}

bool EthernetMRA::concernedBy(const LayerChange& change) const {
  return _inventory->concernedBy(change);
}

bool EthernetMRA::ethEventDetected() {
  return _inventory->eventDetected(kKind);
}

void EthernetMRA::eventsProcessed() {
  _inventory->lookedThrough(kKind);
}

std::optional<std::chrono::steady_clock::time_point> EthernetMRA::nextSettled() {
  return _inventory->nextSettled();
}

std::string EthernetMRA::linkPartners() {
  const auto model = _inventory->current();
  return model ? linkPartnersText(*model) : std::string();
}

void EthernetMRA::buildFailed() {
  _inventory->beginDelivery(kKind);
}

std::string EthernetMRA::failureText() const {
  return _inventory->failureText();
}

std::unique_ptr<EthernetMRA> ethernetMRAFactory(const Logger&, const CmpiCpp::CmpiContext&) {
  return std::make_unique<EthernetMRA>(processInventory());
}

}  // namespace ZEB
