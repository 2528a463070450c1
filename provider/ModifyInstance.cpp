#include "provider/ModifyInstance.h"

#include "cmpicpp/CmpiStatus.h"
#include "cmpicpp/Standstill.h"
#include "common/ServedState.h"
#include "common/ZEBUtil.h"
#include "monitor/ZEB_EthEventSettings.h"
#include "monitor/ZEB_EthernetCollection.h"
#include "monitor/ZEB_EthernetMemberOfCollection.h"

namespace ZEB {

using CmpiCpp::CmpiInstance;
using CmpiCpp::CmpiName;
using CmpiCpp::CmpiObjectPath;
using CmpiCpp::CmpiPropertyList;
using CmpiCpp::CmpiStatus;

namespace {

/// Null, like an invisible one, for an instance that is not there.
CmpiManagedInstance* findVisible(const Provided& provided, const CmpiObjectPath& path) {
  CmpiManagedInstance* found = provided.instances.getManagedInstance(path);
  return found && found->visible() ? found : nullptr;
}

void updateCollection(const Provided& provided, const CmpiObjectPath& path) {
  auto* collection = dynamic_cast<ZEB_EthernetCollection*>(findVisible(provided, path));
  if (!collection) throw CmpiStatus(CMPI_RC_ERR_NOT_FOUND);
  collection->reset();
  collection->updateMembers(provided.instances, true);
  ServedState::changed();
}

void modifyMembership(const Provided& provided, CmpiManagedInstance& found, const CmpiInstance& instance,
                      CmpiPropertyList /*the filter is the only property*/) {
  auto* membership = dynamic_cast<ZEB_EthernetMemberOfCollection*>(&found);
  if (!membership) return;
  bool changed = false;
  const CmpiObjectPath collection = membership->modify(instance, provided.store, changed);
  if (changed) updateCollection(provided, collection);
}

void modifySettings(const Provided& /*provided*/, CmpiManagedInstance& found, const CmpiInstance& instance,
                    CmpiPropertyList properties) {
  auto* settings = dynamic_cast<ZEB_EthEventSettings*>(&found);
  // A change that never ends lets go of the lock under which it is made.
  if (settings) settings->modify(instance, properties, [] { throw CmpiCpp::Standstill(); });
}

/// A class with something to change.
struct Route {
  CmpiCpp::NameLiteral className;
  const char* found;
  void (*modify)(const Provided&, CmpiManagedInstance&, const CmpiInstance&, CmpiPropertyList);
};

constexpr Route kRoutes[] = {
    {"ZEB_EthernetMemberOfCollection", "Found ZEB_EthernetMemberOfCollection instance path in collection",
     modifyMembership},
    {"ZEB_EthEventSettings", "Found ZEB_EthEventSettings instance path in collection", modifySettings},
};

void follow(const Route& route, const Provided& provided, CmpiObjectPath path, const CmpiInstance& instance,
            CmpiPropertyList properties) {
  path.setHost(ZEBUtil::getHostName());
  CmpiManagedInstance* found = findVisible(provided, path);
  if (!found) {
    provided.logger.warn("instance not found");
    return;
  }
  provided.logger.info(route.found);
  route.modify(provided, *found, instance, properties);
}

}  // namespace

void modifyInstance(const Provided& provided, const CmpiObjectPath& path, const CmpiInstance& instance,
                    CmpiPropertyList properties) {
  try {
    for (const Route& route : kRoutes) {
      if (instance.className() == CmpiName(route.className)) {
        follow(route, provided, path, instance, properties);
      }
    }
  } catch (const CmpiStatus& status) {
    provided.logger.error("::modifyInstance() exception: %s", status.what());
    throw;
  }
}

}  // namespace ZEB
