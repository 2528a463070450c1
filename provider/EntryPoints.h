#pragma once

#include "cmpi/cmpi.h"

#define ZEB_EXPORT __attribute__((visibility("default")))

// What the object manager calls, once or often: all four lead to the one provider of that name. Null for a
// name that the library does not know and for a provider that cannot be made; `status`, when not null, says
// why.
extern "C" {
ZEB_EXPORT CMPIInstanceMI* _Generic_Create_InstanceMI(const CMPIBroker* broker, const CMPIContext* context,
                                                      const char* name, CMPIStatus* status);
ZEB_EXPORT CMPIAssociationMI* _Generic_Create_AssociationMI(const CMPIBroker* broker,
                                                            const CMPIContext* context, const char* name,
                                                            CMPIStatus* status);
ZEB_EXPORT CMPIMethodMI* _Generic_Create_MethodMI(const CMPIBroker* broker, const CMPIContext* context,
                                                  const char* name, CMPIStatus* status);
ZEB_EXPORT CMPIIndicationMI* _Generic_Create_IndicationMI(const CMPIBroker* broker,
                                                          const CMPIContext* context, const char* name,
                                                          CMPIStatus* status);
}
