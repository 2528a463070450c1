// The object manager as a provider sees it.
#pragma once

#include "cmpi/values.h"

/// The object manager as a provider sees it: four function tables and a handle of its own.
struct CMPIBroker {
  const void* hdl;
  const CMPIBrokerFT* bft;
  const CMPIBrokerEncFT* eft;
  const CMPIBrokerExtFT* xft;
  const CMPIBrokerMemFT* mft;
};

/// Up-calls: thread attachment, indication delivery and the CIM operations.
struct CMPIBrokerFT {
  unsigned int brokerCapabilities;
  CMPIVersion brokerVersion;
  const char* brokerName;
  CMPIContext* (*prepareAttachThread)(const CMPIBroker*, const CMPIContext*);
  CMPIStatus (*attachThread)(const CMPIBroker*, const CMPIContext*);
  CMPIStatus (*detachThread)(const CMPIBroker*, const CMPIContext*);
  CMPIStatus (*deliverIndication)(const CMPIBroker*, const CMPIContext*, const char*, const CMPIInstance*);
  CMPIEnumeration* (*enumerateInstanceNames)(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*,
                                             CMPIStatus*);
  CMPIInstance* (*getInstance)(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*, const char**,
                               CMPIStatus*);
  CMPIObjectPath* (*createInstance)(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*,
                                    const CMPIInstance*, CMPIStatus*);
  CMPIStatus (*modifyInstance)(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*,
                               const CMPIInstance*, const char**);
  CMPIStatus (*deleteInstance)(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*);
  CMPIEnumeration* (*execQuery)(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*, const char*,
                                const char*, CMPIStatus*);
  CMPIEnumeration* (*enumerateInstances)(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*,
                                         const char**, CMPIStatus*);
  CMPIEnumeration* (*associators)(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*, const char*,
                                  const char*, const char*, const char*, const char**, CMPIStatus*);
  CMPIEnumeration* (*associatorNames)(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*,
                                      const char*, const char*, const char*, const char*, CMPIStatus*);
  CMPIEnumeration* (*references)(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*, const char*,
                                 const char*, const char**, CMPIStatus*);
  CMPIEnumeration* (*referenceNames)(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*,
                                     const char*, const char*, CMPIStatus*);
  CMPIData (*invokeMethod)(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*, const char*,
                           const CMPIArgs*, CMPIArgs*, CMPIStatus*);
  CMPIStatus (*setProperty)(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*, const char*,
                            const CMPIValue*, CMPIType);
  CMPIData (*getProperty)(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*, const char*,
                          CMPIStatus*);
  CMPIEnumeration* (*enumerateInstancesFiltered)(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*,
                                                 const char**, const char*, const char*, CMPIStatus*);
  CMPIEnumeration* (*associatorsFiltered)(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*,
                                          const char*, const char*, const char*, const char*, const char**,
                                          const char*, const char*, CMPIStatus*);
  CMPIEnumeration* (*referencesFiltered)(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*,
                                         const char*, const char*, const char**, const char*, const char*,
                                         CMPIStatus*);
};

/// Factories of encapsulated values, class ancestry and the object manager's log.
struct CMPIBrokerEncFT {
  CMPIVersion ftVersion;
  CMPIInstance* (*newInstance)(const CMPIBroker*, const CMPIObjectPath*, CMPIStatus*);
  CMPIObjectPath* (*newObjectPath)(const CMPIBroker*, const char*, const char*, CMPIStatus*);
  CMPIArgs* (*newArgs)(const CMPIBroker*, CMPIStatus*);
  CMPIString* (*newString)(const CMPIBroker*, const char*, CMPIStatus*);
  CMPIArray* (*newArray)(const CMPIBroker*, CMPICount, CMPIType, CMPIStatus*);
  CMPIDateTime* (*newDateTime)(const CMPIBroker*, CMPIStatus*);
  CMPIDateTime* (*newDateTimeFromBinary)(const CMPIBroker*, CMPIUint64, CMPIBoolean, CMPIStatus*);
  CMPIDateTime* (*newDateTimeFromChars)(const CMPIBroker*, const char*, CMPIStatus*);
  CMPISelectExp* (*newSelectExp)(const CMPIBroker*, const char*, const char*, CMPIArray**, CMPIStatus*);
  CMPIBoolean (*classPathIsA)(const CMPIBroker*, const CMPIObjectPath*, const char*, CMPIStatus*);
  CMPIString* (*toString)(const CMPIBroker*, const void*, CMPIStatus*);
  CMPIBoolean (*isOfType)(const CMPIBroker*, const void*, const char*, CMPIStatus*);
  CMPIString* (*getType)(const CMPIBroker*, const void*, CMPIStatus*);
  CMPIString* (*getMessage)(const CMPIBroker*, const char*, const char*, CMPIStatus*, CMPICount, ...);
  CMPIStatus (*logMessage)(const CMPIBroker*, CMPISeverity, const char*, const char*, const CMPIString*);
  CMPIStatus (*trace)(const CMPIBroker*, CMPILevel, const char*, const char*, const CMPIString*);
  CMPIError* (*newCMPIError)(const CMPIBroker*, const char*, const char*, const char*,
                             const CMPIErrorSeverity, const CMPIErrorProbableCause, const CMPIrc,
                             CMPIStatus*);
  CMPIStatus (*openMessageFile)(const CMPIBroker*, const char*, CMPIMsgFileHandle*);
  CMPIStatus (*closeMessageFile)(const CMPIBroker*, const CMPIMsgFileHandle);
  CMPIString* (*getMessage2)(const CMPIBroker*, const char*, const CMPIMsgFileHandle, const char*,
                             CMPIStatus*, CMPICount, ...);
  CMPIPropertyList* (*newPropertyList)(const CMPIBroker*, const char**, CMPIStatus*);
  CMPIString* (*newStringCP)(const CMPIBroker*, const char*, const CMPICodepageID, CMPIStatus*);
  CMPIEnumerationFilter* (*newEnumerationFilter)(const CMPIBroker*, const char*, const char*, CMPIStatus*);
};

/// Operating system services: threads, mutexes and conditions.
struct CMPIBrokerExtFT {
  CMPIVersion ftVersion;
  char* (*resolveFileName)(const char*);
  void* (*newThread)(CMPIThreadFunc, void*, int);
  int (*joinThread)(void*, void**);
  int (*exitThread)(void*);
  int (*cancelThread)(void*);
  int (*threadSleep)(CMPIUint32);
  int (*threadOnce)(int*, CMPIThreadOnceFunc);
  int (*createThreadKey)(unsigned int*, CMPIThreadKeyCleanupFunc);
  int (*destroyThreadKey)(unsigned int);
  void* (*getThreadSpecific)(unsigned int);
  int (*setThreadSpecific)(unsigned int, void*);
  void* (*newMutex)(int);
  void (*destroyMutex)(void*);
  void (*lockMutex)(void*);
  void (*unlockMutex)(void*);
  void* (*newCondition)(int);
  void (*destroyCondition)(void*);
  int (*condWait)(void*, void*);
  int (*timedCondWait)(void*, void*, struct timespec*);
  int (*signalCondition)(void*);
  int (*destroyMutex2)(void*);
  int (*lockMutex2)(void*);
  int (*unlockMutex2)(void*);
  int (*destroyCondition2)(void*);
};

/// Memory of the current call: marks, allocation and early release.
struct CMPIBrokerMemFT {
  CMPIVersion ftVersion;
  CMPIGcStat* (*mark)(const CMPIBroker*, CMPIStatus*);
  CMPIStatus (*release)(const CMPIBroker*, const CMPIGcStat*);
  void* (*cmpiMalloc)(const CMPIBroker*, size_t);
  void* (*cmpiCalloc)(const CMPIBroker*, size_t, size_t);
  void* (*cmpiRealloc)(const CMPIBroker*, void*, size_t);
  char* (*cmpiStrDup)(const CMPIBroker*, const char*);
  void (*cmpiFree)(const CMPIBroker*, void*);
  void (*freeInstance)(const CMPIBroker*, CMPIInstance*);
  void (*freeObjectPath)(const CMPIBroker*, CMPIObjectPath*);
  void (*freeArgs)(const CMPIBroker*, CMPIArgs*);
  void (*freeString)(const CMPIBroker*, CMPIString*);
  void (*freeArray)(const CMPIBroker*, CMPIArray*);
  void (*freeDateTime)(const CMPIBroker*, CMPIDateTime*);
  void (*freeSelectExp)(const CMPIBroker*, CMPISelectExp*);
  void (*freeChars)(const CMPIBroker*, char*);
};

static_assert(sizeof(CMPIBroker) == 40);
CMPI_AT(CMPIBroker, hdl, 0);
CMPI_AT(CMPIBroker, bft, 8);
CMPI_AT(CMPIBroker, eft, 16);
CMPI_AT(CMPIBroker, xft, 24);
CMPI_AT(CMPIBroker, mft, 32);
static_assert(sizeof(CMPIBrokerFT) == 184);
CMPI_AT(CMPIBrokerFT, brokerCapabilities, 0);
CMPI_AT(CMPIBrokerFT, brokerVersion, 4);
CMPI_AT(CMPIBrokerFT, brokerName, 8);
CMPI_AT(CMPIBrokerFT, prepareAttachThread, 16);
CMPI_AT(CMPIBrokerFT, attachThread, 24);
CMPI_AT(CMPIBrokerFT, detachThread, 32);
CMPI_AT(CMPIBrokerFT, deliverIndication, 40);
CMPI_AT(CMPIBrokerFT, enumerateInstanceNames, 48);
CMPI_AT(CMPIBrokerFT, getInstance, 56);
CMPI_AT(CMPIBrokerFT, createInstance, 64);
CMPI_AT(CMPIBrokerFT, modifyInstance, 72);
CMPI_AT(CMPIBrokerFT, deleteInstance, 80);
CMPI_AT(CMPIBrokerFT, execQuery, 88);
CMPI_AT(CMPIBrokerFT, enumerateInstances, 96);
CMPI_AT(CMPIBrokerFT, associators, 104);
CMPI_AT(CMPIBrokerFT, associatorNames, 112);
CMPI_AT(CMPIBrokerFT, references, 120);
CMPI_AT(CMPIBrokerFT, referenceNames, 128);
CMPI_AT(CMPIBrokerFT, invokeMethod, 136);
CMPI_AT(CMPIBrokerFT, setProperty, 144);
CMPI_AT(CMPIBrokerFT, getProperty, 152);
CMPI_AT(CMPIBrokerFT, enumerateInstancesFiltered, 160);
CMPI_AT(CMPIBrokerFT, associatorsFiltered, 168);
CMPI_AT(CMPIBrokerFT, referencesFiltered, 176);
static_assert(sizeof(CMPIBrokerEncFT) == 192);
CMPI_AT(CMPIBrokerEncFT, ftVersion, 0);
CMPI_AT(CMPIBrokerEncFT, newInstance, 8);
CMPI_AT(CMPIBrokerEncFT, newObjectPath, 16);
CMPI_AT(CMPIBrokerEncFT, newArgs, 24);
CMPI_AT(CMPIBrokerEncFT, newString, 32);
CMPI_AT(CMPIBrokerEncFT, newArray, 40);
CMPI_AT(CMPIBrokerEncFT, newDateTime, 48);
CMPI_AT(CMPIBrokerEncFT, newDateTimeFromBinary, 56);
CMPI_AT(CMPIBrokerEncFT, newDateTimeFromChars, 64);
CMPI_AT(CMPIBrokerEncFT, newSelectExp, 72);
CMPI_AT(CMPIBrokerEncFT, classPathIsA, 80);
CMPI_AT(CMPIBrokerEncFT, toString, 88);
CMPI_AT(CMPIBrokerEncFT, isOfType, 96);
CMPI_AT(CMPIBrokerEncFT, getType, 104);
CMPI_AT(CMPIBrokerEncFT, getMessage, 112);
CMPI_AT(CMPIBrokerEncFT, logMessage, 120);
CMPI_AT(CMPIBrokerEncFT, trace, 128);
CMPI_AT(CMPIBrokerEncFT, newCMPIError, 136);
CMPI_AT(CMPIBrokerEncFT, openMessageFile, 144);
CMPI_AT(CMPIBrokerEncFT, closeMessageFile, 152);
CMPI_AT(CMPIBrokerEncFT, getMessage2, 160);
CMPI_AT(CMPIBrokerEncFT, newPropertyList, 168);
CMPI_AT(CMPIBrokerEncFT, newStringCP, 176);
CMPI_AT(CMPIBrokerEncFT, newEnumerationFilter, 184);
static_assert(sizeof(CMPIBrokerExtFT) == 200);
CMPI_AT(CMPIBrokerExtFT, ftVersion, 0);
CMPI_AT(CMPIBrokerExtFT, resolveFileName, 8);
CMPI_AT(CMPIBrokerExtFT, newThread, 16);
CMPI_AT(CMPIBrokerExtFT, joinThread, 24);
CMPI_AT(CMPIBrokerExtFT, exitThread, 32);
CMPI_AT(CMPIBrokerExtFT, cancelThread, 40);
CMPI_AT(CMPIBrokerExtFT, threadSleep, 48);
CMPI_AT(CMPIBrokerExtFT, threadOnce, 56);
CMPI_AT(CMPIBrokerExtFT, createThreadKey, 64);
CMPI_AT(CMPIBrokerExtFT, destroyThreadKey, 72);
CMPI_AT(CMPIBrokerExtFT, getThreadSpecific, 80);
CMPI_AT(CMPIBrokerExtFT, setThreadSpecific, 88);
CMPI_AT(CMPIBrokerExtFT, newMutex, 96);
CMPI_AT(CMPIBrokerExtFT, destroyMutex, 104);
CMPI_AT(CMPIBrokerExtFT, lockMutex, 112);
CMPI_AT(CMPIBrokerExtFT, unlockMutex, 120);
CMPI_AT(CMPIBrokerExtFT, newCondition, 128);
CMPI_AT(CMPIBrokerExtFT, destroyCondition, 136);
CMPI_AT(CMPIBrokerExtFT, condWait, 144);
CMPI_AT(CMPIBrokerExtFT, timedCondWait, 152);
CMPI_AT(CMPIBrokerExtFT, signalCondition, 160);
CMPI_AT(CMPIBrokerExtFT, destroyMutex2, 168);
CMPI_AT(CMPIBrokerExtFT, lockMutex2, 176);
CMPI_AT(CMPIBrokerExtFT, unlockMutex2, 184);
CMPI_AT(CMPIBrokerExtFT, destroyCondition2, 192);
static_assert(sizeof(CMPIBrokerMemFT) == 128);
CMPI_AT(CMPIBrokerMemFT, ftVersion, 0);
CMPI_AT(CMPIBrokerMemFT, mark, 8);
CMPI_AT(CMPIBrokerMemFT, release, 16);
CMPI_AT(CMPIBrokerMemFT, cmpiMalloc, 24);
CMPI_AT(CMPIBrokerMemFT, cmpiCalloc, 32);
CMPI_AT(CMPIBrokerMemFT, cmpiRealloc, 40);
CMPI_AT(CMPIBrokerMemFT, cmpiStrDup, 48);
CMPI_AT(CMPIBrokerMemFT, cmpiFree, 56);
CMPI_AT(CMPIBrokerMemFT, freeInstance, 64);
CMPI_AT(CMPIBrokerMemFT, freeObjectPath, 72);
CMPI_AT(CMPIBrokerMemFT, freeArgs, 80);
CMPI_AT(CMPIBrokerMemFT, freeString, 88);
CMPI_AT(CMPIBrokerMemFT, freeArray, 96);
CMPI_AT(CMPIBrokerMemFT, freeDateTime, 104);
CMPI_AT(CMPIBrokerMemFT, freeSelectExp, 112);
CMPI_AT(CMPIBrokerMemFT, freeChars, 120);
