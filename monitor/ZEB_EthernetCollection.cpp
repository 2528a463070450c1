#include "monitor/ZEB_EthernetCollection.h"

#include <algorithm>
#include <optional>

#include "classes/port/CollectionMember.h"
#include "classes/port/PropertyTable.h"
#include "cmpicpp/CmpiFactories.h"
#include "common/ServedState.h"

namespace ZEB {

using CmpiCpp::CmpiInstance;

namespace {

constexpr std::uint32_t kInstanceNumber = 1;

/// A member's status that makes the group's another one; without `current`, whichever that is. Every other
/// pair leaves the group as it is.
struct Worse {
  operationalStatus update;
  std::optional<operationalStatus> current;
  operationalStatus result;
};

constexpr Worse kWorse[] = {
    {operationalStatus::Error, std::nullopt, operationalStatus::Error},
    {operationalStatus::Degraded, operationalStatus::OK, operationalStatus::Degraded},
};

using GroupStatus = ZEB_EthernetCollection::GroupStatus;
using P = Properties<const GroupStatus>;
const PropertyRows<const GroupStatus> kProperties{
    P::key("InstanceID"),
    P::string("ElementName", constant("Ethernet Adapter Collection")),
    P::string("Caption", constant("Ethernet Adapter Collection")),
    P::uint16Array(
        "GroupOperationalStatus", [](const GroupStatus& group) { return std::vector{group.status}; }, always),
    P::stringArray(
        "GroupStatusDescriptions",
        [](const GroupStatus& group) { return std::vector<std::string>{group.text}; }, always),
    P::string("Description", constant("This is a collection of all Ethernet Ports.")),
};

template <class Visit>
void forEachPort(CmpiManagedInstanceCollection& instances, Visit&& visit) {
  for (const std::uint32_t i : instances.watchers()) {
    CmpiManagedInstance& instance = instances.getManagedInstance(i);
    auto* member = dynamic_cast<CollectionMember*>(&instance);
    if (member && member->kind() == CollectionMember::Kind::Port) visit(instance, *member);
  }
}

/// Whether that is another filter than the port had; one that the store does not know stays.
bool restoreFilter(CollectionMember& port, const DataStore::Values& kept) {
  const auto found = kept.find(port.filterKey());
  if (found == kept.end()) return false;
  const bool included = found->second != 0;
  if (included == port.included()) return false;
  port.setIncluded(included);
  return true;
}

}  // namespace

ZEB_EthernetCollection::ZEB_EthernetCollection(const Logger& theLogger, const std::string& theNameSpace)
    : ManagedObject(
          theLogger, theNameSpace, kClassName,
          {{"InstanceID", "JXV:" + std::string(kClassName.view()) + "-" + std::to_string(kInstanceNumber)}}) {
}

ZEB_EthernetCollection::GroupStatus ZEB_EthernetCollection::reported(operationalStatus status) {
  static constexpr GroupStatus kKnown[] = {
      {operationalStatus::OK, "OK"},
      {operationalStatus::Degraded, "Degraded"},
      {operationalStatus::Error, "Error"},
  };
  const auto* known = std::find_if(std::begin(kKnown), std::end(kKnown),
                                   [&](const GroupStatus& group) { return group.status == status; });
  return known == std::end(kKnown) ? GroupStatus{operationalStatus::Unknown, "Unknown"} : *known;
}

CmpiInstance ZEB_EthernetCollection::makeInstance() {
  CmpiInstance instance = CmpiCpp::makeCmpiInstance(ZEBUtil::getBroker(), makeObjectPath());
  const GroupStatus group = reported(groupStatus());
  kProperties.fill(instance, group);
  return instance;
}

operationalStatus ZEB_EthernetCollection::groupStatus() {
  const std::lock_guard lock(_memory);
  return _groupStatus;
}

void ZEB_EthernetCollection::reset() {
  const std::lock_guard lock(_memory);
  _groupStatus = operationalStatus::OK;
}

void ZEB_EthernetCollection::updateMembers(CmpiManagedInstanceCollection& instances, bool force) {
  // Every instance has its turn and its log line, but only those that watch their status are looked at.
  auto watcher = instances.watchers().begin();
  for (std::uint32_t i = 0; i < instances.size(); ++i) {
    logger().info("manageDynamic()");
    if (force) _stateChanged = true;
    if (watcher != instances.watchers().end() && *watcher == i) {
      updateMember(instances.getManagedInstance(i));
      ++watcher;
    }
    _firstPass = false;
  }
}

void ZEB_EthernetCollection::updateMember(CmpiManagedInstance& instance) {
  auto* member = dynamic_cast<CollectionMember*>(&instance);
  // Asked before the guard is taken, because the member has a guard of its own.
  const operationalStatus update = member ? member->lastStatus() : operationalStatus::Unknown;
  const std::lock_guard lock(_memory);
  operationalStatus status = _groupStatus;
  if (member && member->kind() == CollectionMember::Kind::Port) {
    logger().info("ethPort found: current collection status: %d: ethport->_included is: %d", status,
                  member->included());
    if (instance.visible() && member->included()) status = updateWorstEthernetPort(status, update);
    logger().info("new Ethernet collection status: %d", status);
  } else if (member) {
    logger().info("ethTeam found in collection...");
    logger().info("current collection status: %d", status);
    // A team counts whether it is included or not.
    if (instance.visible()) status = updateWorstEthernetPort(status, update);
    logger().info("new Ethernet collection status: %d", status);
  }
  if (status != _groupStatus && !_firstPass)
    logger().info("send Ethernet collection state change indication");
  _groupStatus = status;
}

operationalStatus ZEB_EthernetCollection::updateWorstEthernetPort(operationalStatus current,
                                                                  operationalStatus update) const {
  logger().info("updateWorstEthernetPort Begin: current %d, update %d", current, update);
  if (update == operationalStatus::OK) logger().info("updated is statusOK");
  const auto* worse = std::find_if(std::begin(kWorse), std::end(kWorse), [&](const Worse& row) {
    return row.update == update && row.current.value_or(current) == current;
  });
  const operationalStatus result = worse == std::end(kWorse) ? current : worse->result;
  logger().info("updateWorstEthernetPort End: current %d, update %d", result, update);
  return result;
}

void ZEB_EthernetCollection::updateStatusFilter(CmpiManagedInstanceCollection& instances, DataStore* store) {
  logger().info("updateStatusFilter Start");
  if (!store) {
    logger().warn("DataStore not open, update not persistent");
    return;
  }
  if (!_firstPass) return;
  logger().info("firstState is True");
  const std::lock_guard lock(_following);
  _followed = store->values();
  forEachPort(instances, [&](CmpiManagedInstance& instance, CollectionMember& port) {
    logger().info("updateStatusFilter: ethPort found in collection...");
    if (instance.visible()) restoreFilter(port, *_followed);
  });
}

// A client of this process may change a filter meanwhile: what it has kept is seen by a further look.
void ZEB_EthernetCollection::follow(CmpiManagedInstanceCollection& instances, DataStore& store) {
  const std::lock_guard lock(_following);
  bool changed = false;
  for (auto kept = store.values(); kept != _followed; kept = store.values()) {
    _followed = kept;
    forEachPort(instances, [&](CmpiManagedInstance&, CollectionMember& port) {
      if (restoreFilter(port, *kept)) changed = true;
    });
  }
  if (!changed) return;
  reset();
  updateMembers(instances, false);
  ServedState::changed();
}

}  // namespace ZEB
