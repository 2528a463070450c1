#include "Trampoline.h"
#include "cmpicpp/CmpiInstanceProvider.h"

namespace CmpiCpp {
namespace {

CMPIStatus enumerateInstanceNames(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* result,
                                  const CMPIObjectPath* classPath) {
  return enter<CmpiInstanceProvider, CmpiObjectPathResult>(
      mi,
      [&](auto& provider, auto& found) {
        provider.enumInstanceNames(found, CmpiContext(context), fromBroker(classPath));
      },
      [&](const CMPIBroker* broker, const auto& found) { deliver(broker, result, found.paths()); });
}

CMPIStatus enumerateInstances(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* result,
                              const CMPIObjectPath* classPath, const char** properties) {
  return enter<CmpiInstanceProvider, CmpiInstanceResult>(
      mi,
      [&](auto& provider, auto& found) {
        provider.enumInstances(found, CmpiContext(context), fromBroker(classPath), properties);
      },
      [&](const CMPIBroker* broker, auto& found) {
        deliver(broker, result, found.take(), properties, CmpiContext(context));
      });
}

CMPIStatus getInstance(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* result,
                       const CMPIObjectPath* path, const char** properties) {
  return enter<CmpiInstanceProvider, CmpiInstanceResult>(
      mi,
      [&](auto& provider, auto& found) {
        provider.getInstance(found, CmpiContext(context), fromBroker(path), properties);
      },
      [&](const CMPIBroker* broker, auto& found) { deliver(broker, result, found.take(), properties); });
}

CMPIStatus createInstance(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* result,
                          const CMPIObjectPath* path, const CMPIInstance* instance) {
  return enter<CmpiInstanceProvider, CmpiObjectPathResult>(
      mi,
      [&](auto& provider, auto& made) {
        provider.createInstance(made, CmpiContext(context), fromBroker(path), fromBroker(instance));
      },
      [&](const CMPIBroker* broker, const auto& made) { deliver(broker, result, made.paths()); });
}

/// Keys cannot be changed, so no client lists one: a list that names a key of the path was made by the object
/// manager from all that the instance holds, and means as much as none.
CmpiPropertyList listOfClient(CmpiPropertyList names, const CmpiObjectPath& path) {
  for (CmpiPropertyList name = names; name && *name; ++name) {
    if (path.findKey(*name)) return nullptr;
  }
  return names;
}

CMPIStatus modifyInstance(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* /*result*/,
                          const CMPIObjectPath* path, const CMPIInstance* instance, const char** properties) {
  return enter<CmpiInstanceProvider>(mi, [&](CmpiInstanceProvider& provider) {
    const CmpiObjectPath target = fromBroker(path);
    provider.modifyInstance(CmpiContext(context), target, fromBroker(instance),
                            listOfClient(properties, target));
  });
}

CMPIStatus deleteInstance(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* /*result*/,
                          const CMPIObjectPath* path) {
  return enter<CmpiInstanceProvider>(mi, [&](CmpiInstanceProvider& provider) {
    provider.deleteInstance(CmpiContext(context), fromBroker(path));
  });
}

CMPIStatus execQuery(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* result,
                     const CMPIObjectPath* path, const char* query, const char* language) {
  return enter<CmpiInstanceProvider, CmpiInstanceResult>(
      mi,
      [&](auto& provider, auto& found) {
        provider.execQuery(found, CmpiContext(context), fromBroker(path), query, language);
      },
      [&](const CMPIBroker* broker, auto& found) { deliver(broker, result, found.take(), nullptr); });
}

CMPIStatus enumerateInstancesFiltered(CMPIInstanceMI* mi, const CMPIContext* /*context*/,
                                      const CMPIResult* /*result*/, const CMPIObjectPath* /*path*/,
                                      const char** /*properties*/, const char* /*language*/,
                                      const char* /*filter*/, CMPIStatus* /*status*/) {
  return enter<CmpiInstanceProvider>(mi, [](CmpiInstanceProvider&) { notSupported(); });
}

}  // namespace

const CMPIInstanceMIFT kInstanceTable = {
    CMPIVersion100,         CMPIVersion100,     "instance",  cleanupInterface<CMPIInstanceMI>,
    enumerateInstanceNames, enumerateInstances, getInstance, createInstance,
    modifyInstance,         deleteInstance,     execQuery,   enumerateInstancesFiltered};

CMPIInstanceMI* CmpiInstanceProvider::getInstanceMI() const {
  return interfaces() ? interfaces()->instanceMI() : nullptr;
}

void CmpiInstanceProvider::enumInstanceNames(CmpiObjectPathResult&, const CmpiContext&,
                                             const CmpiObjectPath&) {
  notSupported();
}
void CmpiInstanceProvider::enumInstances(CmpiInstanceResult&, const CmpiContext&, const CmpiObjectPath&,
                                         CmpiPropertyList) {
  notSupported();
}
void CmpiInstanceProvider::getInstance(CmpiInstanceResult&, const CmpiContext&, const CmpiObjectPath&,
                                       CmpiPropertyList) {
  notSupported();
}
void CmpiInstanceProvider::createInstance(CmpiObjectPathResult&, const CmpiContext&, const CmpiObjectPath&,
                                          const CmpiInstance&) {
  notSupported();
}
void CmpiInstanceProvider::modifyInstance(const CmpiContext&, const CmpiObjectPath&, const CmpiInstance&,
                                          CmpiPropertyList) {
  notSupported();
}
void CmpiInstanceProvider::deleteInstance(const CmpiContext&, const CmpiObjectPath&) {
  notSupported();
}
void CmpiInstanceProvider::execQuery(CmpiInstanceResult&, const CmpiContext&, const CmpiObjectPath&,
                                     const char*, const char*) {
  notSupported();
}

}  // namespace CmpiCpp
