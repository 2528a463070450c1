#include "monitor/ZEB_EthernetMemberOfCollection.h"

#include "classes/port/CollectionMember.h"
#include "cmpicpp/CmpiStatus.h"

namespace ZEB {

using CmpiCpp::CmpiData;
using CmpiCpp::CmpiInstance;
using CmpiCpp::CmpiObjectPath;

namespace {

constexpr CmpiCpp::NameLiteral kIncluded = "Included";

}  // namespace

const AssociationClass ZEB_EthernetMemberOfCollection::kClass{"ZEB_EthernetMemberOfCollection",
                                                              {"Member", "Collection"}};

ZEB_EthernetMemberOfCollection::ZEB_EthernetMemberOfCollection(const Logger& theLogger,
                                                               const std::string& nameSpace,
                                                               CmpiManagedInstance& member,
                                                               CmpiManagedInstance& collection)
    : AssociationFrame(theLogger, nameSpace, kClass, member.makeObjectPath(), collection.makeObjectPath()),
      _member(dynamic_cast<CollectionMember*>(&member)) {}

CmpiInstance ZEB_EthernetMemberOfCollection::makeInstance() {
  CmpiInstance instance = AssociationFrame::makeInstance();
  instance.addProperty(kIncluded, !_member || _member->included());
  return instance;
}

CmpiObjectPath ZEB_EthernetMemberOfCollection::modify(const CmpiInstance& instance, DataStore* store,
                                                      bool& changed) {
  logger().info("::modifyInstance() start");
  changed = false;
  if (!_member) return {};
  const CmpiData& data = instance.getProperty(kIncluded.view());
  if (data.type() != CMPI_boolean) {
    logger().info("data type is not boolean.  throw CmpiStatus error!");
    throw CmpiCpp::CmpiStatus(CMPI_RC_ERR_INVALID_PARAMETER);
  }
  const bool wanted = !data.isNull() && data.asBoolean();
  if (wanted != _member->included()) {
    logger().info("Change in property _included detected...");
    keep(store, wanted);
    _member->setIncluded(wanted);
    changed = true;
  }
  return otherEnd(firstEnd());
}

void ZEB_EthernetMemberOfCollection::keep(DataStore* store, bool included) const {
  if (!store) {
    logger().warn("datastore not open, modify not persistent");
    return;
  }
  const std::string key = firstEnd().str();
  // A key that the build did not make is not made here: such a change holds until the provider is reloaded.
  if (store->exists(key)) {
    store->setBool(key, included);
  } else {
    logger().warn("datastore has no key %s, modify not persistent", key);
  }
}

}  // namespace ZEB
