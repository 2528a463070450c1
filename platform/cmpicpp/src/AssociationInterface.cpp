#include "Trampoline.h"
#include "cmpicpp/CmpiAssociationProvider.h"

namespace CmpiCpp {
namespace {

CMPIStatus associators(CMPIAssociationMI* mi, const CMPIContext* context, const CMPIResult* result,
                       const CMPIObjectPath* path, const char* associationClass, const char* resultClass,
                       const char* role, const char* resultRole, const char** properties) {
  return enter<CmpiAssociationProvider, CmpiInstanceResult>(
      mi,
      [&](auto& provider, auto& found) {
        provider.associators(found, CmpiContext(context), fromBroker(path), optionalName(associationClass),
                             optionalName(resultClass), optionalName(role), optionalName(resultRole),
                             properties);
      },
      [&](const CMPIBroker* broker, auto& found) { deliver(broker, result, found.take(), properties); });
}

CMPIStatus associatorNames(CMPIAssociationMI* mi, const CMPIContext* context, const CMPIResult* result,
                           const CMPIObjectPath* path, const char* associationClass, const char* resultClass,
                           const char* role, const char* resultRole) {
  return enter<CmpiAssociationProvider, CmpiObjectPathResult>(
      mi,
      [&](auto& provider, auto& found) {
        provider.associatorNames(found, CmpiContext(context), fromBroker(path),
                                 optionalName(associationClass), optionalName(resultClass),
                                 optionalName(role), optionalName(resultRole));
      },
      [&](const CMPIBroker* broker, const auto& found) { deliver(broker, result, found.paths()); });
}

CMPIStatus references(CMPIAssociationMI* mi, const CMPIContext* context, const CMPIResult* result,
                      const CMPIObjectPath* path, const char* resultClass, const char* role,
                      const char** properties) {
  return enter<CmpiAssociationProvider, CmpiInstanceResult>(
      mi,
      [&](auto& provider, auto& found) {
        provider.references(found, CmpiContext(context), fromBroker(path), optionalName(resultClass),
                            optionalName(role), properties);
      },
      [&](const CMPIBroker* broker, auto& found) { deliver(broker, result, found.take(), properties); });
}

CMPIStatus referenceNames(CMPIAssociationMI* mi, const CMPIContext* context, const CMPIResult* result,
                          const CMPIObjectPath* path, const char* resultClass, const char* role) {
  return enter<CmpiAssociationProvider, CmpiObjectPathResult>(
      mi,
      [&](auto& provider, auto& found) {
        provider.referenceNames(found, CmpiContext(context), fromBroker(path), optionalName(resultClass),
                                optionalName(role));
      },
      [&](const CMPIBroker* broker, const auto& found) { deliver(broker, result, found.paths()); });
}

CMPIStatus associatorsFiltered(CMPIAssociationMI* mi, const CMPIContext* /*context*/,
                               const CMPIResult* /*result*/, const CMPIObjectPath* /*path*/,
                               const char* /*associationClass*/, const char* /*resultClass*/,
                               const char* /*role*/, const char* /*resultRole*/, const char** /*properties*/,
                               const char* /*language*/, const char* /*filter*/,
                               CMPIBoolean /*continueOnError*/) {
  return enter<CmpiAssociationProvider>(mi, [](CmpiAssociationProvider&) { notSupported(); });
}

CMPIStatus referencesFiltered(CMPIAssociationMI* mi, const CMPIContext* /*context*/,
                              const CMPIResult* /*result*/, const CMPIObjectPath* /*path*/,
                              const char* /*resultClass*/, const char* /*role*/, const char** /*properties*/,
                              const char* /*language*/, const char* /*filter*/,
                              CMPIBoolean /*continueOnError*/) {
  return enter<CmpiAssociationProvider>(mi, [](CmpiAssociationProvider&) { notSupported(); });
}

}  // namespace

const CMPIAssociationMIFT kAssociationTable = {
    CMPIVersion100,      CMPIVersion100,    "association", cleanupInterface<CMPIAssociationMI>,
    associators,         associatorNames,   references,    referenceNames,
    associatorsFiltered, referencesFiltered};

CMPIAssociationMI* CmpiAssociationProvider::getAssociationMI() const {
  return interfaces() ? interfaces()->associationMI() : nullptr;
}

void CmpiAssociationProvider::associators(CmpiInstanceResult&, const CmpiContext&, const CmpiObjectPath&,
                                          const CmpiName&, const CmpiName&, const CmpiName&, const CmpiName&,
                                          CmpiPropertyList) {
  notSupported();
}
void CmpiAssociationProvider::associatorNames(CmpiObjectPathResult&, const CmpiContext&,
                                              const CmpiObjectPath&, const CmpiName&, const CmpiName&,
                                              const CmpiName&, const CmpiName&) {
  notSupported();
}
void CmpiAssociationProvider::references(CmpiInstanceResult&, const CmpiContext&, const CmpiObjectPath&,
                                         const CmpiName&, const CmpiName&, CmpiPropertyList) {
  notSupported();
}
void CmpiAssociationProvider::referenceNames(CmpiObjectPathResult&, const CmpiContext&, const CmpiObjectPath&,
                                             const CmpiName&, const CmpiName&) {
  notSupported();
}

}  // namespace CmpiCpp
