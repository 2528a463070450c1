#include "provider/EntryPoints.h"

#include <string>

#include "cmpicpp/CmpiAssociationProvider.h"
#include "cmpicpp/CmpiIndicationProvider.h"
#include "cmpicpp/CmpiInstanceProvider.h"
#include "cmpicpp/CmpiMethodProvider.h"
#include "cmpicpp/CmpiStatus.h"
#include "common/Logger.h"
#include "provider/ProviderRegistry.h"

namespace {

using namespace CmpiCpp;

void setStatus(CMPIStatus* status, const CMPIBroker* broker, CMPIrc rc, const std::string& message) {
  if (!status) return;
  *status = {rc, nullptr};
  if (rc == CMPI_RC_OK || !broker || !broker->eft || !broker->eft->newString) return;
  CMPIStatus made{CMPI_RC_OK, nullptr};
  status->msg = broker->eft->newString(broker, message.c_str(), &made);
}

/// What every entry point does; `get` gives the interface of a provider that is a `Provider`.
template <class Provider, class Interface>
Interface* createInterface(const char* entryPoint, Interface* (Provider::*get)() const,
                           const CMPIBroker* broker, const CMPIContext* context, const char* providerName,
                           CMPIStatus* status) {
  const std::string name = providerName ? providerName : "";
  std::string failure;
  CMPIrc rc = CMPI_RC_ERR_FAILED;
  try {
    const ZEB::Logger logger(name);
    try {
      const CmpiBroker wrapped(broker, context);
      auto* provider = dynamic_cast<Provider*>(ZEB::ProviderRegistry::instance().getProvider(wrapped, name));
      if (provider) {
        setStatus(status, broker, CMPI_RC_OK, "");
        return (provider->*get)();
      }
      failure = "no provider named " + name;
    } catch (const CmpiStatus& thrown) {
      rc = thrown.rc();
      failure = thrown.what();
      logger.error("%s: %s constructor threw CmpiStatus exception: %s", entryPoint, name, failure);
    } catch (const std::exception& thrown) {
      failure = thrown.what();
      logger.error("%s: %s constructor threw std::exception: %s", entryPoint, name, failure);
    } catch (...) {
      failure = "unknown exception";
      logger.error("%s: %s constructor threw unknown exception", entryPoint, name);
    }
  } catch (...) {
    // Not even memory for a log line.
  }
  setStatus(status, broker, rc, failure);
  return nullptr;
}

}  // namespace

CMPIInstanceMI* _Generic_Create_InstanceMI(const CMPIBroker* broker, const CMPIContext* context,
                                           const char* name, CMPIStatus* status) {
  return createInterface("_Generic_Create_InstanceMI", &CmpiInstanceProvider::getInstanceMI, broker, context,
                         name, status);
}

CMPIAssociationMI* _Generic_Create_AssociationMI(const CMPIBroker* broker, const CMPIContext* context,
                                                 const char* name, CMPIStatus* status) {
  return createInterface("_Generic_Create_AssociationMI", &CmpiAssociationProvider::getAssociationMI, broker,
                         context, name, status);
}

CMPIMethodMI* _Generic_Create_MethodMI(const CMPIBroker* broker, const CMPIContext* context, const char* name,
                                       CMPIStatus* status) {
  return createInterface("_Generic_Create_MethodMI", &CmpiMethodProvider::getMethodMI, broker, context, name,
                         status);
}

CMPIIndicationMI* _Generic_Create_IndicationMI(const CMPIBroker* broker, const CMPIContext* context,
                                               const char* name, CMPIStatus* status) {
  return createInterface("_Generic_Create_IndicationMI", &CmpiIndicationProvider::getIndicationMI, broker,
                         context, name, status);
}
