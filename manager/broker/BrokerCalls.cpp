// Calls up from the provider: attachment of threads, indications, and CIM operations, which go back to the
// provider itself. An operation reached this way has memory of its own; its answer is copied to the caller's.
#include "broker/Broker.h"
#include "values/CallMemory.h"
#include "values/Values.h"

namespace ZebManager {
namespace {

constexpr unsigned kCapabilities = CMPI_MB_InstanceManipulation | CMPI_MB_AssociationTraversal |
                                   CMPI_MB_Indications | CMPI_MB_OSEncapsulationSupport |
                                   CMPI_MB_Supports_MemEnhancements;

std::string text(const char* chars) {
  return chars ? chars : "";
}

CMPIStatus statusOfReply(const Reply& reply) {
  return statusOf(reply.code, reply.message);
}

CMPIEnumeration* enumerationOf(const Reply& reply, CMPIStatus* status) {
  Arena* const arena = currentArena();
  if (status) *status = arena ? statusOfReply(reply) : CMPIStatus{CMPI_RC_ERR_FAILED, nullptr};
  if (!arena || reply.code != CMPI_RC_OK) return nullptr;
  const auto items = reply.items();
  return makeEnumeration(*arena, items.data(), static_cast<std::uint32_t>(items.size()));
}

/// The first item of a type; a reply without one is "not found".
CMPIData firstOf(const Reply& reply, CMPIType type, CMPIStatus* status) {
  Arena* const arena = currentArena();
  const bool found = arena && reply.code == CMPI_RC_OK && !reply.items().empty() &&
                     (type == CMPI_null || reply.items()[0].type == type);
  if (found) {
    put(status, CMPI_RC_OK);
    return copyData(*arena, reply.items()[0]);
  }
  if (status) *status = reply.code == CMPI_RC_OK ? statusOf(CMPI_RC_ERR_NOT_FOUND) : statusOfReply(reply);
  return nullOf(type);
}

/// Whether a path is one of the broker's, for operations whose answer is a pointer or a status.
bool isPath(const CMPIObjectPath* path, CMPIStatus* status) {
  if (as<ObjectPath>(path)) return true;
  put(status, CMPI_RC_ERR_INVALID_HANDLE);
  return false;
}

CMPIContext* prepareAttachThread(const CMPIBroker* broker, const CMPIContext* context) {
  const Context* const own = as<Context>(context);
  return own ? Broker::of(broker).threads().prepare(*own) : nullptr;
}

CMPIStatus attachThread(const CMPIBroker* broker, const CMPIContext* context) {
  return Broker::of(broker).threads().attach(context);
}

CMPIStatus detachThread(const CMPIBroker* broker, const CMPIContext* context) {
  return Broker::of(broker).threads().detach(context);
}

CMPIStatus deliverIndication(const CMPIBroker* face, const CMPIContext*, const char* nameSpace,
                             const CMPIInstance* indication) {
  Broker& broker = Broker::of(face);
  const Instance* const instance = as<Instance>(indication);
  if (!instance) return statusOf(CMPI_RC_ERR_INVALID_HANDLE);
  if (!nameSpace || !sameName(nameSpace, broker.provider().nameSpace())) {
    return statusOf(CMPI_RC_ERR_INVALID_NAMESPACE);
  }
  if (!instance->body().classDef->indication) {
    return statusOf(CMPI_RC_ERR_INVALID_PARAMETER, "not an indication");
  }
  if (!broker.indications().deliver(*instance)) {
    return statusOf(CMPI_RC_ERR_SERVER_LIMITS_EXCEEDED, "too many indications are waiting");
  }
  return statusOf(CMPI_RC_OK);
}

CMPIEnumeration* enumerateInstanceNames(const CMPIBroker* broker, const CMPIContext*,
                                        const CMPIObjectPath* path, CMPIStatus* status) {
  if (!isPath(path, status)) return nullptr;
  const std::string_view className = as<ObjectPath>(path)->body().className;
  return enumerationOf(Broker::of(broker).provider().enumerateInstanceNames(className), status);
}

CMPIInstance* getInstance(const CMPIBroker* broker, const CMPIContext*, const CMPIObjectPath* path,
                          const char** properties, CMPIStatus* status) {
  if (!isPath(path, status)) return nullptr;
  return firstOf(Broker::of(broker).provider().getInstance(*path, properties), CMPI_instance, status)
      .value.inst;
}

CMPIObjectPath* createInstance(const CMPIBroker* broker, const CMPIContext*, const CMPIObjectPath* path,
                               const CMPIInstance* instance, CMPIStatus* status) {
  if (!isPath(path, status)) return nullptr;
  if (!as<Instance>(instance)) {
    put(status, CMPI_RC_ERR_INVALID_HANDLE);
    return nullptr;
  }
  return firstOf(Broker::of(broker).provider().createInstance(*path, *instance), CMPI_ref, status).value.ref;
}

CMPIStatus modifyInstance(const CMPIBroker* broker, const CMPIContext*, const CMPIObjectPath* path,
                          const CMPIInstance* instance, const char** properties) {
  if (!as<ObjectPath>(path) || !as<Instance>(instance)) return statusOf(CMPI_RC_ERR_INVALID_HANDLE);
  return statusOfReply(Broker::of(broker).provider().modifyInstance(*path, *instance, properties));
}

CMPIStatus deleteInstance(const CMPIBroker* broker, const CMPIContext*, const CMPIObjectPath* path) {
  if (!as<ObjectPath>(path)) return statusOf(CMPI_RC_ERR_INVALID_HANDLE);
  return statusOfReply(Broker::of(broker).provider().deleteInstance(*path));
}

CMPIEnumeration* enumerateInstances(const CMPIBroker* broker, const CMPIContext*, const CMPIObjectPath* path,
                                    const char** properties, CMPIStatus* status) {
  if (!isPath(path, status)) return nullptr;
  const std::string_view className = as<ObjectPath>(path)->body().className;
  return enumerationOf(Broker::of(broker).provider().enumerateInstances(className, properties), status);
}

CMPIEnumeration* associators(const CMPIBroker* broker, const CMPIContext*, const CMPIObjectPath* path,
                             const char* associationClass, const char* resultClass, const char* role,
                             const char* resultRole, const char** properties, CMPIStatus* status) {
  if (!isPath(path, status)) return nullptr;
  const AssociationFilter filter = {text(associationClass), text(resultClass), text(role), text(resultRole)};
  return enumerationOf(Broker::of(broker).provider().associators(*path, filter, properties), status);
}

CMPIEnumeration* associatorNames(const CMPIBroker* broker, const CMPIContext*, const CMPIObjectPath* path,
                                 const char* associationClass, const char* resultClass, const char* role,
                                 const char* resultRole, CMPIStatus* status) {
  if (!isPath(path, status)) return nullptr;
  const AssociationFilter filter = {text(associationClass), text(resultClass), text(role), text(resultRole)};
  return enumerationOf(Broker::of(broker).provider().associatorNames(*path, filter), status);
}

CMPIEnumeration* references(const CMPIBroker* broker, const CMPIContext*, const CMPIObjectPath* path,
                            const char* resultClass, const char* role, const char** properties,
                            CMPIStatus* status) {
  if (!isPath(path, status)) return nullptr;
  const AssociationFilter filter = {{}, text(resultClass), text(role), {}};
  return enumerationOf(Broker::of(broker).provider().references(*path, filter, properties), status);
}

CMPIEnumeration* referenceNames(const CMPIBroker* broker, const CMPIContext*, const CMPIObjectPath* path,
                                const char* resultClass, const char* role, CMPIStatus* status) {
  if (!isPath(path, status)) return nullptr;
  const AssociationFilter filter = {{}, text(resultClass), text(role), {}};
  return enumerationOf(Broker::of(broker).provider().referenceNames(*path, filter), status);
}

CMPIData invokeMethod(const CMPIBroker* broker, const CMPIContext*, const CMPIObjectPath* path,
                      const char* method, const CMPIArgs* in, CMPIArgs* out, CMPIStatus* status) {
  if (!isPath(path, status)) return nullOf(CMPI_null);
  Arena* const arena = currentArena();
  if (!arena || !method || (in && !as<Args>(in)) || (out && !as<Args>(out))) {
    put(status, CMPI_RC_ERR_INVALID_PARAMETER);
    return nullOf(CMPI_null);
  }
  const CMPIArgs& given = in ? *in : *makeArgs(*arena);
  CMPIArgs& taken = out ? *out : *makeArgs(*arena);
  return firstOf(Broker::of(broker).provider().invokeMethod(*path, method, given, taken), CMPI_null, status);
}

// What is not offered.

CMPIEnumeration* noEnumeration(CMPIStatus* status) {
  put(status, CMPI_RC_ERR_NOT_SUPPORTED);
  return nullptr;
}

CMPIEnumeration* execQuery(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*, const char*,
                           const char*, CMPIStatus* status) {
  return noEnumeration(status);
}

CMPIStatus setProperty(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*, const char*,
                       const CMPIValue*, CMPIType) {
  return statusOf(CMPI_RC_ERR_NOT_SUPPORTED);
}

CMPIData getProperty(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*, const char*,
                     CMPIStatus* status) {
  put(status, CMPI_RC_ERR_NOT_SUPPORTED);
  return nullOf(CMPI_null);
}

CMPIEnumeration* enumerateInstancesFiltered(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*,
                                            const char**, const char*, const char*, CMPIStatus* status) {
  return noEnumeration(status);
}

CMPIEnumeration* associatorsFiltered(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*,
                                     const char*, const char*, const char*, const char*, const char**,
                                     const char*, const char*, CMPIStatus* status) {
  return noEnumeration(status);
}

CMPIEnumeration* referencesFiltered(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*, const char*,
                                    const char*, const char**, const char*, const char*, CMPIStatus* status) {
  return noEnumeration(status);
}

}  // namespace

const CMPIBrokerFT kBrokerFT = {
    kCapabilities,
    CMPIVersion210,
    "zebcim",
    prepareAttachThread,
    attachThread,
    detachThread,
    deliverIndication,
    enumerateInstanceNames,
    getInstance,
    createInstance,
    modifyInstance,
    deleteInstance,
    execQuery,
    enumerateInstances,
    associators,
    associatorNames,
    references,
    referenceNames,
    invokeMethod,
    setProperty,
    getProperty,
    enumerateInstancesFiltered,
    associatorsFiltered,
    referencesFiltered,
};

}  // namespace ZebManager
