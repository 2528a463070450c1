// The objects that operations are about.
#pragma once

#include "cmpi/values.h"

/// Entries that accompany one call, such as the invocation flags and the principal.
struct CMPIContext {
  const void* hdl;
  const CMPIContextFT* ft;
};

/// Function table of CMPIContext.
struct CMPIContextFT {
  CMPIVersion ftVersion;
  CMPIStatus (*release)(CMPIContext*);
  CMPIContext* (*clone)(const CMPIContext*, CMPIStatus*);
  CMPIData (*getEntry)(const CMPIContext*, const char*, CMPIStatus*);
  CMPIData (*getEntryAt)(const CMPIContext*, CMPICount, CMPIString**, CMPIStatus*);
  CMPICount (*getEntryCount)(const CMPIContext*, CMPIStatus*);
  CMPIStatus (*addEntry)(const CMPIContext*, const char*, const CMPIValue*, const CMPIType);
};

/// Where a provider hands over what an operation found.
struct CMPIResult {
  const void* hdl;
  const CMPIResultFT* ft;
};

/// Function table of CMPIResult.
struct CMPIResultFT {
  CMPIVersion ftVersion;
  CMPIStatus (*release)(CMPIResult*);
  CMPIResult* (*clone)(const CMPIResult*, CMPIStatus*);
  CMPIStatus (*returnData)(const CMPIResult*, const CMPIValue*, const CMPIType);
  CMPIStatus (*returnInstance)(const CMPIResult*, const CMPIInstance*);
  CMPIStatus (*returnObjectPath)(const CMPIResult*, const CMPIObjectPath*);
  CMPIStatus (*returnDone)(const CMPIResult*);
  CMPIStatus (*returnError)(const CMPIResult*, const CMPIError*);
};

/// Immutable text.
struct CMPIString {
  const void* hdl;
  const CMPIStringFT* ft;
};

/// Function table of CMPIString.
struct CMPIStringFT {
  CMPIVersion ftVersion;
  CMPIStatus (*release)(CMPIString*);
  CMPIString* (*clone)(const CMPIString*, CMPIStatus*);
  const char* (*getCharPtr)(const CMPIString*, CMPIStatus*);
  char* (*newCharsCP)(const CMPIString*, const CMPICodepageID, CMPIStatus*);
};

/// Elements of one type, of a size fixed when it was made.
struct CMPIArray {
  const void* hdl;
  const CMPIArrayFT* ft;
};

/// Function table of CMPIArray.
struct CMPIArrayFT {
  CMPIVersion ftVersion;
  CMPIStatus (*release)(CMPIArray*);
  CMPIArray* (*clone)(const CMPIArray*, CMPIStatus*);
  CMPICount (*getSize)(const CMPIArray*, CMPIStatus*);
  CMPIType (*getSimpleType)(const CMPIArray*, CMPIStatus*);
  CMPIData (*getElementAt)(const CMPIArray*, CMPICount, CMPIStatus*);
  CMPIStatus (*setElementAt)(const CMPIArray*, CMPICount, const CMPIValue*, CMPIType);
};

/// One pass over the answer of an up-call.
struct CMPIEnumeration {
  const void* hdl;
  const CMPIEnumerationFT* ft;
};

/// Function table of CMPIEnumeration.
struct CMPIEnumerationFT {
  CMPIVersion ftVersion;
  CMPIStatus (*release)(CMPIEnumeration*);
  CMPIEnumeration* (*clone)(const CMPIEnumeration*, CMPIStatus*);
  CMPIData (*getNext)(const CMPIEnumeration*, CMPIStatus*);
  CMPIBoolean (*hasNext)(const CMPIEnumeration*, CMPIStatus*);
  CMPIArray* (*toArray)(const CMPIEnumeration*, CMPIStatus*);
};

/// A CIM instance: an object path and typed properties.
struct CMPIInstance {
  const void* hdl;
  const CMPIInstanceFT* ft;
};

/// Function table of CMPIInstance.
struct CMPIInstanceFT {
  CMPIVersion ftVersion;
  CMPIStatus (*release)(CMPIInstance*);
  CMPIInstance* (*clone)(const CMPIInstance*, CMPIStatus*);
  CMPIData (*getProperty)(const CMPIInstance*, const char*, CMPIStatus*);
  CMPIData (*getPropertyAt)(const CMPIInstance*, CMPICount, CMPIString**, CMPIStatus*);
  CMPICount (*getPropertyCount)(const CMPIInstance*, CMPIStatus*);
  CMPIStatus (*setProperty)(const CMPIInstance*, const char*, const CMPIValue*, CMPIType);
  CMPIObjectPath* (*getObjectPath)(const CMPIInstance*, CMPIStatus*);
  CMPIStatus (*setPropertyFilter)(const CMPIInstance*, const char**, const char**);
  CMPIStatus (*setObjectPath)(const CMPIInstance*, const CMPIObjectPath*);
  CMPIStatus (*setPropertyWithOrigin)(const CMPIInstance*, const char*, const CMPIValue*, const CMPIType,
                                      const char*);
};

/// Host, namespace, class name and keys of a CIM object.
struct CMPIObjectPath {
  const void* hdl;
  const CMPIObjectPathFT* ft;
};

/// Function table of CMPIObjectPath.
struct CMPIObjectPathFT {
  CMPIVersion ftVersion;
  CMPIStatus (*release)(CMPIObjectPath*);
  CMPIObjectPath* (*clone)(const CMPIObjectPath*, CMPIStatus*);
  CMPIStatus (*setNameSpace)(const CMPIObjectPath*, const char*);
  CMPIString* (*getNameSpace)(const CMPIObjectPath*, CMPIStatus*);
  CMPIStatus (*setHostname)(const CMPIObjectPath*, const char*);
  CMPIString* (*getHostname)(const CMPIObjectPath*, CMPIStatus*);
  CMPIStatus (*setClassName)(const CMPIObjectPath*, const char*);
  CMPIString* (*getClassName)(const CMPIObjectPath*, CMPIStatus*);
  CMPIStatus (*addKey)(const CMPIObjectPath*, const char*, const CMPIValue*, const CMPIType);
  CMPIData (*getKey)(const CMPIObjectPath*, const char*, CMPIStatus*);
  CMPIData (*getKeyAt)(const CMPIObjectPath*, CMPICount, CMPIString**, CMPIStatus*);
  CMPICount (*getKeyCount)(const CMPIObjectPath*, CMPIStatus*);
  CMPIStatus (*setNameSpaceFromObjectPath)(const CMPIObjectPath*, const CMPIObjectPath*);
  CMPIStatus (*setHostAndNameSpaceFromObjectPath)(const CMPIObjectPath*, const CMPIObjectPath*);
  CMPIData (*getClassQualifier)(const CMPIObjectPath*, const char*, CMPIStatus*);
  CMPIData (*getPropertyQualifier)(const CMPIObjectPath*, const char*, const char*, CMPIStatus*);
  CMPIData (*getMethodQualifier)(const CMPIObjectPath*, const char*, const char*, CMPIStatus*);
  CMPIData (*getParameterQualifier)(const CMPIObjectPath*, const char*, const char*, const char*,
                                    CMPIStatus*);
  CMPIString* (*toString)(const CMPIObjectPath*, CMPIStatus*);
};

/// Named arguments of a method.
struct CMPIArgs {
  const void* hdl;
  const CMPIArgsFT* ft;
};

/// Function table of CMPIArgs.
struct CMPIArgsFT {
  CMPIVersion ftVersion;
  CMPIStatus (*release)(CMPIArgs*);
  CMPIArgs* (*clone)(const CMPIArgs*, CMPIStatus*);
  CMPIStatus (*addArg)(const CMPIArgs*, const char*, const CMPIValue*, const CMPIType);
  CMPIData (*getArg)(const CMPIArgs*, const char*, CMPIStatus*);
  CMPIData (*getArgAt)(const CMPIArgs*, CMPICount, CMPIString**, CMPIStatus*);
  CMPICount (*getArgCount)(const CMPIArgs*, CMPIStatus*);
};

/// A point in time or an interval, in microseconds.
struct CMPIDateTime {
  const void* hdl;
  const CMPIDateTimeFT* ft;
};

/// Function table of CMPIDateTime.
struct CMPIDateTimeFT {
  CMPIVersion ftVersion;
  CMPIStatus (*release)(CMPIDateTime*);
  CMPIDateTime* (*clone)(const CMPIDateTime*, CMPIStatus*);
  CMPIUint64 (*getBinaryFormat)(const CMPIDateTime*, CMPIStatus*);
  CMPIString* (*getStringFormat)(const CMPIDateTime*, CMPIStatus*);
  CMPIBoolean (*isInterval)(const CMPIDateTime*, CMPIStatus*);
};

static_assert(sizeof(CMPIContext) == 16);
CMPI_AT(CMPIContext, hdl, 0);
CMPI_AT(CMPIContext, ft, 8);
static_assert(sizeof(CMPIContextFT) == 56);
CMPI_AT(CMPIContextFT, ftVersion, 0);
CMPI_AT(CMPIContextFT, release, 8);
CMPI_AT(CMPIContextFT, clone, 16);
CMPI_AT(CMPIContextFT, getEntry, 24);
CMPI_AT(CMPIContextFT, getEntryAt, 32);
CMPI_AT(CMPIContextFT, getEntryCount, 40);
CMPI_AT(CMPIContextFT, addEntry, 48);
static_assert(sizeof(CMPIResult) == 16);
CMPI_AT(CMPIResult, hdl, 0);
CMPI_AT(CMPIResult, ft, 8);
static_assert(sizeof(CMPIResultFT) == 64);
CMPI_AT(CMPIResultFT, ftVersion, 0);
CMPI_AT(CMPIResultFT, release, 8);
CMPI_AT(CMPIResultFT, clone, 16);
CMPI_AT(CMPIResultFT, returnData, 24);
CMPI_AT(CMPIResultFT, returnInstance, 32);
CMPI_AT(CMPIResultFT, returnObjectPath, 40);
CMPI_AT(CMPIResultFT, returnDone, 48);
CMPI_AT(CMPIResultFT, returnError, 56);
static_assert(sizeof(CMPIString) == 16);
CMPI_AT(CMPIString, hdl, 0);
CMPI_AT(CMPIString, ft, 8);
static_assert(sizeof(CMPIStringFT) == 40);
CMPI_AT(CMPIStringFT, ftVersion, 0);
CMPI_AT(CMPIStringFT, release, 8);
CMPI_AT(CMPIStringFT, clone, 16);
CMPI_AT(CMPIStringFT, getCharPtr, 24);
CMPI_AT(CMPIStringFT, newCharsCP, 32);
static_assert(sizeof(CMPIArray) == 16);
CMPI_AT(CMPIArray, hdl, 0);
CMPI_AT(CMPIArray, ft, 8);
static_assert(sizeof(CMPIArrayFT) == 56);
CMPI_AT(CMPIArrayFT, ftVersion, 0);
CMPI_AT(CMPIArrayFT, release, 8);
CMPI_AT(CMPIArrayFT, clone, 16);
CMPI_AT(CMPIArrayFT, getSize, 24);
CMPI_AT(CMPIArrayFT, getSimpleType, 32);
CMPI_AT(CMPIArrayFT, getElementAt, 40);
CMPI_AT(CMPIArrayFT, setElementAt, 48);
static_assert(sizeof(CMPIEnumeration) == 16);
CMPI_AT(CMPIEnumeration, hdl, 0);
CMPI_AT(CMPIEnumeration, ft, 8);
static_assert(sizeof(CMPIEnumerationFT) == 48);
CMPI_AT(CMPIEnumerationFT, ftVersion, 0);
CMPI_AT(CMPIEnumerationFT, release, 8);
CMPI_AT(CMPIEnumerationFT, clone, 16);
CMPI_AT(CMPIEnumerationFT, getNext, 24);
CMPI_AT(CMPIEnumerationFT, hasNext, 32);
CMPI_AT(CMPIEnumerationFT, toArray, 40);
static_assert(sizeof(CMPIInstance) == 16);
CMPI_AT(CMPIInstance, hdl, 0);
CMPI_AT(CMPIInstance, ft, 8);
static_assert(sizeof(CMPIInstanceFT) == 88);
CMPI_AT(CMPIInstanceFT, ftVersion, 0);
CMPI_AT(CMPIInstanceFT, release, 8);
CMPI_AT(CMPIInstanceFT, clone, 16);
CMPI_AT(CMPIInstanceFT, getProperty, 24);
CMPI_AT(CMPIInstanceFT, getPropertyAt, 32);
CMPI_AT(CMPIInstanceFT, getPropertyCount, 40);
CMPI_AT(CMPIInstanceFT, setProperty, 48);
CMPI_AT(CMPIInstanceFT, getObjectPath, 56);
CMPI_AT(CMPIInstanceFT, setPropertyFilter, 64);
CMPI_AT(CMPIInstanceFT, setObjectPath, 72);
CMPI_AT(CMPIInstanceFT, setPropertyWithOrigin, 80);
static_assert(sizeof(CMPIObjectPath) == 16);
CMPI_AT(CMPIObjectPath, hdl, 0);
CMPI_AT(CMPIObjectPath, ft, 8);
static_assert(sizeof(CMPIObjectPathFT) == 160);
CMPI_AT(CMPIObjectPathFT, ftVersion, 0);
CMPI_AT(CMPIObjectPathFT, release, 8);
CMPI_AT(CMPIObjectPathFT, clone, 16);
CMPI_AT(CMPIObjectPathFT, setNameSpace, 24);
CMPI_AT(CMPIObjectPathFT, getNameSpace, 32);
CMPI_AT(CMPIObjectPathFT, setHostname, 40);
CMPI_AT(CMPIObjectPathFT, getHostname, 48);
CMPI_AT(CMPIObjectPathFT, setClassName, 56);
CMPI_AT(CMPIObjectPathFT, getClassName, 64);
CMPI_AT(CMPIObjectPathFT, addKey, 72);
CMPI_AT(CMPIObjectPathFT, getKey, 80);
CMPI_AT(CMPIObjectPathFT, getKeyAt, 88);
CMPI_AT(CMPIObjectPathFT, getKeyCount, 96);
CMPI_AT(CMPIObjectPathFT, setNameSpaceFromObjectPath, 104);
CMPI_AT(CMPIObjectPathFT, setHostAndNameSpaceFromObjectPath, 112);
CMPI_AT(CMPIObjectPathFT, getClassQualifier, 120);
CMPI_AT(CMPIObjectPathFT, getPropertyQualifier, 128);
CMPI_AT(CMPIObjectPathFT, getMethodQualifier, 136);
CMPI_AT(CMPIObjectPathFT, getParameterQualifier, 144);
CMPI_AT(CMPIObjectPathFT, toString, 152);
static_assert(sizeof(CMPIArgs) == 16);
CMPI_AT(CMPIArgs, hdl, 0);
CMPI_AT(CMPIArgs, ft, 8);
static_assert(sizeof(CMPIArgsFT) == 56);
CMPI_AT(CMPIArgsFT, ftVersion, 0);
CMPI_AT(CMPIArgsFT, release, 8);
CMPI_AT(CMPIArgsFT, clone, 16);
CMPI_AT(CMPIArgsFT, addArg, 24);
CMPI_AT(CMPIArgsFT, getArg, 32);
CMPI_AT(CMPIArgsFT, getArgAt, 40);
CMPI_AT(CMPIArgsFT, getArgCount, 48);
static_assert(sizeof(CMPIDateTime) == 16);
CMPI_AT(CMPIDateTime, hdl, 0);
CMPI_AT(CMPIDateTime, ft, 8);
static_assert(sizeof(CMPIDateTimeFT) == 48);
CMPI_AT(CMPIDateTimeFT, ftVersion, 0);
CMPI_AT(CMPIDateTimeFT, release, 8);
CMPI_AT(CMPIDateTimeFT, clone, 16);
CMPI_AT(CMPIDateTimeFT, getBinaryFormat, 24);
CMPI_AT(CMPIDateTimeFT, getStringFormat, 32);
CMPI_AT(CMPIDateTimeFT, isInterval, 40);
