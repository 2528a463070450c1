#include "Trampoline.h"
#include "cmpicpp/CmpiInstanceProvider.h"

namespace CmpiCpp {
namespace {

[[noreturn]] void notSupported() {
  throw CmpiStatus(CMPI_RC_ERR_NOT_SUPPORTED);
}

CMPIStatus enumerateInstanceNames(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* result,
                                  const CMPIObjectPath* classPath) {
  CmpiObjectPathResult found;
  return enter<CmpiInstanceProvider>(
      mi,
      [&](CmpiInstanceProvider& provider) {
        provider.enumInstanceNames(found, CmpiContext(context), fromBroker(classPath));
      },
      [&](const CMPIBroker* broker) { deliver(broker, result, found.paths()); });
}

CMPIStatus enumerateInstances(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* result,
                              const CMPIObjectPath* classPath, const char** properties) {
  CmpiInstanceResult found;
  return enter<CmpiInstanceProvider>(
      mi,
      [&](CmpiInstanceProvider& provider) {
        provider.enumInstances(found, CmpiContext(context), fromBroker(classPath), properties);
      },
      [&](const CMPIBroker* broker) { deliver(broker, result, found.instances(), properties); });
}

CMPIStatus getInstance(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* result,
                       const CMPIObjectPath* path, const char** properties) {
  CmpiInstanceResult found;
  return enter<CmpiInstanceProvider>(
      mi,
      [&](CmpiInstanceProvider& provider) {
        provider.getInstance(found, CmpiContext(context), fromBroker(path), properties);
      },
      [&](const CMPIBroker* broker) { deliver(broker, result, found.instances(), properties); });
}

CMPIStatus createInstance(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* result,
                          const CMPIObjectPath* path, const CMPIInstance* instance) {
  CmpiObjectPathResult made;
  return enter<CmpiInstanceProvider>(
      mi,
      [&](CmpiInstanceProvider& provider) {
        provider.createInstance(made, CmpiContext(context), fromBroker(path), fromBroker(instance));
      },
      [&](const CMPIBroker* broker) { deliver(broker, result, made.paths()); });
}

CMPIStatus modifyInstance(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* /*result*/,
                          const CMPIObjectPath* path, const CMPIInstance* instance, const char** properties) {
  return enter<CmpiInstanceProvider>(mi, [&](CmpiInstanceProvider& provider) {
    provider.modifyInstance(CmpiContext(context), fromBroker(path), fromBroker(instance), properties);
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
  CmpiInstanceResult found;
  return enter<CmpiInstanceProvider>(
      mi,
      [&](CmpiInstanceProvider& provider) {
        provider.execQuery(found, CmpiContext(context), fromBroker(path), query, language);
      },
      [&](const CMPIBroker* broker) { deliver(broker, result, found.instances(), nullptr); });
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
