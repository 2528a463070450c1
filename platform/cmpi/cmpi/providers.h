// The interfaces that a provider offers, a function table for each.
#pragma once

#include "cmpi/values.h"

/// The interface for instance operations that a provider hands to the object manager.
struct CMPIInstanceMI {
  const void* hdl;
  const CMPIInstanceMIFT* ft;
};

/// Function table of CMPIInstanceMI.
struct CMPIInstanceMIFT {
  CMPIVersion ftVersion;
  int miVersion;
  const char* miName;
  CMPIStatus (*cleanup)(CMPIInstanceMI*, const CMPIContext*, CMPIBoolean);
  CMPIStatus (*enumerateInstanceNames)(CMPIInstanceMI*, const CMPIContext*, const CMPIResult*,
                                       const CMPIObjectPath*);
  CMPIStatus (*enumerateInstances)(CMPIInstanceMI*, const CMPIContext*, const CMPIResult*,
                                   const CMPIObjectPath*, const char**);
  CMPIStatus (*getInstance)(CMPIInstanceMI*, const CMPIContext*, const CMPIResult*, const CMPIObjectPath*,
                            const char**);
  CMPIStatus (*createInstance)(CMPIInstanceMI*, const CMPIContext*, const CMPIResult*, const CMPIObjectPath*,
                               const CMPIInstance*);
  CMPIStatus (*modifyInstance)(CMPIInstanceMI*, const CMPIContext*, const CMPIResult*, const CMPIObjectPath*,
                               const CMPIInstance*, const char**);
  CMPIStatus (*deleteInstance)(CMPIInstanceMI*, const CMPIContext*, const CMPIResult*, const CMPIObjectPath*);
  CMPIStatus (*execQuery)(CMPIInstanceMI*, const CMPIContext*, const CMPIResult*, const CMPIObjectPath*,
                          const char*, const char*);
  CMPIStatus (*enumerateInstancesFiltered)(CMPIInstanceMI*, const CMPIContext*, const CMPIResult*,
                                           const CMPIObjectPath*, const char**, const char*, const char*,
                                           CMPIStatus*);
};

/// The interface for association operations.
struct CMPIAssociationMI {
  const void* hdl;
  const CMPIAssociationMIFT* ft;
};

/// Function table of CMPIAssociationMI.
struct CMPIAssociationMIFT {
  CMPIVersion ftVersion;
  int miVersion;
  const char* miName;
  CMPIStatus (*cleanup)(CMPIAssociationMI*, const CMPIContext*, CMPIBoolean);
  CMPIStatus (*associators)(CMPIAssociationMI*, const CMPIContext*, const CMPIResult*, const CMPIObjectPath*,
                            const char*, const char*, const char*, const char*, const char**);
  CMPIStatus (*associatorNames)(CMPIAssociationMI*, const CMPIContext*, const CMPIResult*,
                                const CMPIObjectPath*, const char*, const char*, const char*, const char*);
  CMPIStatus (*references)(CMPIAssociationMI*, const CMPIContext*, const CMPIResult*, const CMPIObjectPath*,
                           const char*, const char*, const char**);
  CMPIStatus (*referenceNames)(CMPIAssociationMI*, const CMPIContext*, const CMPIResult*,
                               const CMPIObjectPath*, const char*, const char*);
  CMPIStatus (*associatorsFiltered)(CMPIAssociationMI*, const CMPIContext*, const CMPIResult*,
                                    const CMPIObjectPath*, const char*, const char*, const char*, const char*,
                                    const char**, const char*, const char*, CMPIBoolean);
  CMPIStatus (*referencesFiltered)(CMPIAssociationMI*, const CMPIContext*, const CMPIResult*,
                                   const CMPIObjectPath*, const char*, const char*, const char**, const char*,
                                   const char*, CMPIBoolean);
};

/// The interface for extrinsic methods.
struct CMPIMethodMI {
  const void* hdl;
  const CMPIMethodMIFT* ft;
};

/// Function table of CMPIMethodMI.
struct CMPIMethodMIFT {
  CMPIVersion ftVersion;
  int miVersion;
  const char* miName;
  CMPIStatus (*cleanup)(CMPIMethodMI*, const CMPIContext*, CMPIBoolean);
  CMPIStatus (*invokeMethod)(CMPIMethodMI*, const CMPIContext*, const CMPIResult*, const CMPIObjectPath*,
                             const char*, const CMPIArgs*, CMPIArgs*);
};

/// The interface by which filters are activated and delivery is switched.
struct CMPIIndicationMI {
  const void* hdl;
  const CMPIIndicationMIFT* ft;
};

/// Function table of CMPIIndicationMI.
struct CMPIIndicationMIFT {
  CMPIVersion ftVersion;
  int miVersion;
  const char* miName;
  CMPIStatus (*cleanup)(CMPIIndicationMI*, const CMPIContext*, CMPIBoolean);
  CMPIStatus (*authorizeFilter)(CMPIIndicationMI*, const CMPIContext*, const CMPISelectExp*, const char*,
                                const CMPIObjectPath*, const char*);
  CMPIStatus (*mustPoll)(CMPIIndicationMI*, const CMPIContext*, const CMPIResult*, const CMPISelectExp*,
                         const char*, const CMPIObjectPath*);
  CMPIStatus (*activateFilter)(CMPIIndicationMI*, const CMPIContext*, const CMPISelectExp*, const char*,
                               const CMPIObjectPath*, CMPIBoolean);
  CMPIStatus (*deActivateFilter)(CMPIIndicationMI*, const CMPIContext*, const CMPISelectExp*, const char*,
                                 const CMPIObjectPath*, CMPIBoolean);
  CMPIStatus (*enableIndications)(CMPIIndicationMI*, const CMPIContext*);
  CMPIStatus (*disableIndications)(CMPIIndicationMI*, const CMPIContext*);
  CMPIStatus (*authorizeFilterCollection)(CMPIIndicationMI*, const CMPIContext*, const CMPIInstance*);
  CMPIStatus (*activateFilterCollection)(CMPIIndicationMI*, const CMPIContext*, const CMPIInstance*,
                                         CMPIBoolean);
  CMPIStatus (*deActivateFilterCollection)(CMPIIndicationMI*, const CMPIContext*, const CMPIInstance*,
                                           CMPIBoolean);
};

/// The interface for single properties, kept for the shape of the standard only.
struct CMPIPropertyMI {
  const void* hdl;
  const CMPIPropertyMIFT* ft;
};

/// Function table of CMPIPropertyMI.
struct CMPIPropertyMIFT {
  CMPIVersion ftVersion;
  int miVersion;
  const char* miName;
  CMPIStatus (*cleanup)(CMPIPropertyMI*, const CMPIContext*, CMPIBoolean);
  CMPIStatus (*setProperty)(CMPIPropertyMI*, const CMPIContext*, const CMPIResult*, const CMPIObjectPath*,
                            const char*, const CMPIData);
  CMPIStatus (*getProperty)(CMPIPropertyMI*, const CMPIContext*, const CMPIResult*, const CMPIObjectPath*,
                            const char*);
  CMPIStatus (*setPropertyWithOrigin)(CMPIPropertyMI*, const CMPIContext*, const CMPIResult*, CMPIObjectPath*,
                                      const char*, const CMPIData, const char*);
};

static_assert(sizeof(CMPIInstanceMI) == 16);
CMPI_AT(CMPIInstanceMI, hdl, 0);
CMPI_AT(CMPIInstanceMI, ft, 8);
static_assert(sizeof(CMPIInstanceMIFT) == 88);
CMPI_AT(CMPIInstanceMIFT, ftVersion, 0);
CMPI_AT(CMPIInstanceMIFT, miVersion, 4);
CMPI_AT(CMPIInstanceMIFT, miName, 8);
CMPI_AT(CMPIInstanceMIFT, cleanup, 16);
CMPI_AT(CMPIInstanceMIFT, enumerateInstanceNames, 24);
CMPI_AT(CMPIInstanceMIFT, enumerateInstances, 32);
CMPI_AT(CMPIInstanceMIFT, getInstance, 40);
CMPI_AT(CMPIInstanceMIFT, createInstance, 48);
CMPI_AT(CMPIInstanceMIFT, modifyInstance, 56);
CMPI_AT(CMPIInstanceMIFT, deleteInstance, 64);
CMPI_AT(CMPIInstanceMIFT, execQuery, 72);
CMPI_AT(CMPIInstanceMIFT, enumerateInstancesFiltered, 80);
static_assert(sizeof(CMPIAssociationMI) == 16);
CMPI_AT(CMPIAssociationMI, hdl, 0);
CMPI_AT(CMPIAssociationMI, ft, 8);
static_assert(sizeof(CMPIAssociationMIFT) == 72);
CMPI_AT(CMPIAssociationMIFT, ftVersion, 0);
CMPI_AT(CMPIAssociationMIFT, miVersion, 4);
CMPI_AT(CMPIAssociationMIFT, miName, 8);
CMPI_AT(CMPIAssociationMIFT, cleanup, 16);
CMPI_AT(CMPIAssociationMIFT, associators, 24);
CMPI_AT(CMPIAssociationMIFT, associatorNames, 32);
CMPI_AT(CMPIAssociationMIFT, references, 40);
CMPI_AT(CMPIAssociationMIFT, referenceNames, 48);
CMPI_AT(CMPIAssociationMIFT, associatorsFiltered, 56);
CMPI_AT(CMPIAssociationMIFT, referencesFiltered, 64);
static_assert(sizeof(CMPIMethodMI) == 16);
CMPI_AT(CMPIMethodMI, hdl, 0);
CMPI_AT(CMPIMethodMI, ft, 8);
static_assert(sizeof(CMPIMethodMIFT) == 32);
CMPI_AT(CMPIMethodMIFT, ftVersion, 0);
CMPI_AT(CMPIMethodMIFT, miVersion, 4);
CMPI_AT(CMPIMethodMIFT, miName, 8);
CMPI_AT(CMPIMethodMIFT, cleanup, 16);
CMPI_AT(CMPIMethodMIFT, invokeMethod, 24);
static_assert(sizeof(CMPIIndicationMI) == 16);
CMPI_AT(CMPIIndicationMI, hdl, 0);
CMPI_AT(CMPIIndicationMI, ft, 8);
static_assert(sizeof(CMPIIndicationMIFT) == 96);
CMPI_AT(CMPIIndicationMIFT, ftVersion, 0);
CMPI_AT(CMPIIndicationMIFT, miVersion, 4);
CMPI_AT(CMPIIndicationMIFT, miName, 8);
CMPI_AT(CMPIIndicationMIFT, cleanup, 16);
CMPI_AT(CMPIIndicationMIFT, authorizeFilter, 24);
CMPI_AT(CMPIIndicationMIFT, mustPoll, 32);
CMPI_AT(CMPIIndicationMIFT, activateFilter, 40);
CMPI_AT(CMPIIndicationMIFT, deActivateFilter, 48);
CMPI_AT(CMPIIndicationMIFT, enableIndications, 56);
CMPI_AT(CMPIIndicationMIFT, disableIndications, 64);
CMPI_AT(CMPIIndicationMIFT, authorizeFilterCollection, 72);
CMPI_AT(CMPIIndicationMIFT, activateFilterCollection, 80);
CMPI_AT(CMPIIndicationMIFT, deActivateFilterCollection, 88);
static_assert(sizeof(CMPIPropertyMI) == 16);
CMPI_AT(CMPIPropertyMI, hdl, 0);
CMPI_AT(CMPIPropertyMI, ft, 8);
static_assert(sizeof(CMPIPropertyMIFT) == 48);
CMPI_AT(CMPIPropertyMIFT, ftVersion, 0);
CMPI_AT(CMPIPropertyMIFT, miVersion, 4);
CMPI_AT(CMPIPropertyMIFT, miName, 8);
CMPI_AT(CMPIPropertyMIFT, cleanup, 16);
CMPI_AT(CMPIPropertyMIFT, setProperty, 24);
CMPI_AT(CMPIPropertyMIFT, getProperty, 32);
CMPI_AT(CMPIPropertyMIFT, setPropertyWithOrigin, 40);
