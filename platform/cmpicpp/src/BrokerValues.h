#pragma once

#include "cmpi/cmpi.h"
#include "cmpicpp/CmpiArgs.h"
#include "cmpicpp/CmpiInstance.h"

// Between plain values and the broker's objects, which live as long as the current call. Text goes over as
// `CMPI_string` and never as `CMPI_chars`, whose passing convention differs between object managers.

namespace CmpiCpp {

CMPIString* toBroker(const CMPIBroker* broker, const std::string& text);
/// These two throw `CmpiStatus` with the broker's code when it cannot make the object.
CMPIObjectPath* toBroker(const CMPIBroker* broker, const CmpiObjectPath& path);
CMPIInstance* toBroker(const CMPIBroker* broker, const CmpiInstance& instance);
/// The value for a call that takes one beside its type code.
CMPIValue toBroker(const CMPIBroker* broker, const CmpiData& data);

std::string fromBroker(const CMPIString* text);
CmpiData fromBroker(const CMPIData& data);
CmpiObjectPath fromBroker(const CMPIObjectPath* path);
CmpiInstance fromBroker(const CMPIInstance* instance);
CmpiArgs fromBroker(const CMPIArgs* args);

}  // namespace CmpiCpp
