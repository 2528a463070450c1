#pragma once

#include "BrokerValues.h"
#include "cmpicpp/CmpiStatus.h"
#include "cmpicpp/ManagementInterfaces.h"
#include "cmpicpp/Standstill.h"

namespace CmpiCpp {

[[noreturn]] inline void notSupported() {
  throw CmpiStatus(CMPI_RC_ERR_NOT_SUPPORTED);
}

/// The status for the object manager, with a message where there is one.
CMPIStatus makeStatus(const CmpiBroker& broker, CMPIrc rc, const std::string& message);

/// Runs `body` so that no exception crosses the C interface; but for a standstill, which is the caller's.
template <class Body>
CMPIStatus guarded(const CmpiBroker& broker, Body&& body) {
  try {
    body();
    return {CMPI_RC_OK, nullptr};
  } catch (const CmpiStatus& status) {
    return makeStatus(broker, status.rc(), status.msg());
  } catch (const Standstill&) {
    throw;
  } catch (const std::exception& error) {
    return makeStatus(broker, CMPI_RC_ERR_FAILED, error.what());
  } catch (...) {
    return makeStatus(broker, CMPI_RC_ERR_FAILED, "unknown error");
  }
}

template <class Interface>
ManagementInterfaces& interfacesOf(Interface* interface) {
  return *static_cast<ManagementInterfaces*>(const_cast<void*>(interface->hdl));
}

/// Every entry of a management interface: finds the provider behind it, runs `operation` on it as a
/// `Provider`, and turns what is thrown into a status. `deliver`, which hands the plain results to the object
/// manager, runs after the operation has ended. The call is over last of all, so that whoever waits for it
/// finds nobody left in the library's code.
template <class Provider, class Found, class Interface, class Operation, class Deliver>
CMPIStatus enter(Interface* interface, Operation&& operation, Deliver&& deliver) {
  ManagementInterfaces::Call call(interfacesOf(interface));
  try {
    return guarded(call.broker(), [&] {
      auto* provider = dynamic_cast<Provider*>(call.provider());
      if (!provider) throw CmpiStatus(CMPI_RC_ERR_FAILED, "the provider has been unloaded");
      Found found;
      operation(*provider, found);
      call.leaveProvider();
      deliver(call.broker().get(), found);
    });
  } catch (const Standstill&) {
    call.leaveProvider();
  }
  call.standStill();
  return {CMPI_RC_ERR_FAILED, nullptr};
}

/// An operation that finds nothing.
template <class Provider, class Interface, class Operation>
CMPIStatus enter(Interface* interface, Operation&& operation) {
  struct Nothing {};
  return enter<Provider, Nothing>(
      interface, [&](Provider& provider, Nothing&) { operation(provider); },
      [](const CMPIBroker*, const Nothing&) {});
}

/// The clean-up entry that all four interfaces share.
template <class Interface>
CMPIStatus cleanupInterface(Interface* interface, const CMPIContext* context, CMPIBoolean terminating) {
  CMPIrc answer = CMPI_RC_OK;
  ManagementInterfaces& interfaces = interfacesOf(interface);
  const CMPIStatus status = guarded(
      interfaces.broker(), [&] { answer = interfaces.cleanup(CmpiContext(context), terminating != 0); });
  return status.rc == CMPI_RC_OK ? CMPIStatus{answer, nullptr} : status;
}

/// Hands plain results over and tells the object manager that they are all.
void deliver(const CMPIBroker* broker, const CMPIResult* result, const std::vector<CmpiObjectPath>& paths);
/// Each instance goes when the object manager has its own of it, so that the two need not be there in full at
/// one time. `context`: of an enumeration, in which the object manager may say that it does without its own
/// again as soon as it was returned.
void deliver(const CMPIBroker* broker, const CMPIResult* result, std::vector<CmpiInstance> instances,
             CmpiPropertyList properties, const CmpiContext& context = {});

/// A name that an object manager may leave out with a null pointer.
inline CmpiName optionalName(const char* name) {
  return name ? CmpiName(name) : CmpiName();
}

extern const CMPIInstanceMIFT kInstanceTable;
extern const CMPIAssociationMIFT kAssociationTable;
extern const CMPIMethodMIFT kMethodTable;
extern const CMPIIndicationMIFT kIndicationTable;

}  // namespace CmpiCpp
