#include "Trampoline.h"
#include "cmpicpp/CmpiIndicationProvider.h"

namespace CmpiCpp {
namespace {

CMPIStatus authorizeFilter(CMPIIndicationMI* mi, const CMPIContext* context, const CMPISelectExp* /*filter*/,
                           const char* eventType, const CMPIObjectPath* classPath, const char* owner) {
  return enter<CmpiIndicationProvider>(mi, [&](CmpiIndicationProvider& provider) {
    provider.authorizeFilter(CmpiContext(context), eventType, fromBroker(classPath), owner);
  });
}

// Some object managers leave out the result argument, so that every argument after the context is another one
// than it seems: none is touched.
CMPIStatus mustPoll(CMPIIndicationMI* mi, const CMPIContext* context, const CMPIResult* /*result*/,
                    const CMPISelectExp* /*filter*/, const char* /*eventType*/,
                    const CMPIObjectPath* /*classPath*/) {
  return enter<CmpiIndicationProvider>(mi, [&](CmpiIndicationProvider& provider) {
    provider.mustPoll(CmpiContext(context), "", CmpiObjectPath());
  });
}

CMPIStatus activateFilter(CMPIIndicationMI* mi, const CMPIContext* context, const CMPISelectExp* /*filter*/,
                          const char* eventType, const CMPIObjectPath* classPath, CMPIBoolean first) {
  return enter<CmpiIndicationProvider>(mi, [&](CmpiIndicationProvider& provider) {
    provider.activateFilter(CmpiContext(context), eventType, fromBroker(classPath), first != 0);
  });
}

CMPIStatus deActivateFilter(CMPIIndicationMI* mi, const CMPIContext* context, const CMPISelectExp* /*filter*/,
                            const char* eventType, const CMPIObjectPath* classPath, CMPIBoolean last) {
  return enter<CmpiIndicationProvider>(mi, [&](CmpiIndicationProvider& provider) {
    provider.deActivateFilter(CmpiContext(context), eventType, fromBroker(classPath), last != 0);
  });
}

/// Switches delivery on or off in the provider, then in what decides about unloading.
CMPIStatus switchIndications(CMPIIndicationMI* mi, const CMPIContext* context, bool enabled) {
  return enter<CmpiIndicationProvider>(mi, [&](CmpiIndicationProvider& provider) {
    if (enabled) {
      provider.enableIndications(CmpiContext(context));
    } else {
      provider.disableIndications(CmpiContext(context));
    }
    interfacesOf(mi).setIndicationsEnabled(enabled);
  });
}

CMPIStatus enableIndications(CMPIIndicationMI* mi, const CMPIContext* context) {
  return switchIndications(mi, context, true);
}

CMPIStatus disableIndications(CMPIIndicationMI* mi, const CMPIContext* context) {
  return switchIndications(mi, context, false);
}

CMPIStatus authorizeFilterCollection(CMPIIndicationMI* mi, const CMPIContext* /*context*/,
                                     const CMPIInstance* /*collection*/) {
  return enter<CmpiIndicationProvider>(
      mi, [](CmpiIndicationProvider&) { throw CmpiStatus(CMPI_RC_ERR_NOT_SUPPORTED); });
}

CMPIStatus switchFilterCollection(CMPIIndicationMI* mi, const CMPIContext* context,
                                  const CMPIInstance* collection, CMPIBoolean /*firstOrLast*/) {
  return authorizeFilterCollection(mi, context, collection);
}

}  // namespace

const CMPIIndicationMIFT kIndicationTable = {CMPIVersion100,
                                             CMPIVersion100,
                                             "indication",
                                             cleanupInterface<CMPIIndicationMI>,
                                             authorizeFilter,
                                             mustPoll,
                                             activateFilter,
                                             deActivateFilter,
                                             enableIndications,
                                             disableIndications,
                                             authorizeFilterCollection,
                                             switchFilterCollection,
                                             switchFilterCollection};

CMPIIndicationMI* CmpiIndicationProvider::getIndicationMI() const {
  return interfaces() ? interfaces()->indicationMI() : nullptr;
}

void CmpiIndicationProvider::authorizeFilter(const CmpiContext&, const char*, const CmpiObjectPath&,
                                             const char*) {}
void CmpiIndicationProvider::mustPoll(const CmpiContext&, const char*, const CmpiObjectPath&) {}
bool CmpiIndicationProvider::activateFilter(const CmpiContext&, const char*, const CmpiObjectPath&,
                                            bool first) {
  return first;
}
bool CmpiIndicationProvider::deActivateFilter(const CmpiContext&, const char*, const CmpiObjectPath&,
                                              bool last) {
  return last;
}
void CmpiIndicationProvider::enableIndications(const CmpiContext&) {}
void CmpiIndicationProvider::disableIndications(const CmpiContext&) {}

}  // namespace CmpiCpp
