// Filters, conditions, errors and lists: what an operation is asked with or answered with beside objects.
#pragma once

#include "cmpi/values.h"

/// A parsed indication filter.
struct CMPISelectExp {
  const void* hdl;
  const CMPISelectExpFT* ft;
};

/// Function table of CMPISelectExp.
struct CMPISelectExpFT {
  CMPIVersion ftVersion;
  CMPIStatus (*release)(CMPISelectExp*);
  CMPISelectExp* (*clone)(const CMPISelectExp*, CMPIStatus*);
  CMPIBoolean (*evaluate)(const CMPISelectExp*, const CMPIInstance*, CMPIStatus*);
  CMPIString* (*getString)(const CMPISelectExp*, CMPIStatus*);
  CMPISelectCond* (*getDOC)(const CMPISelectExp*, CMPIStatus*);
  CMPISelectCond* (*getCOD)(const CMPISelectExp*, CMPIStatus*);
  CMPIBoolean (*evaluateUsingAccessor)(const CMPISelectExp*, CMPIAccessor*, void*, CMPIStatus*);
};

/// An extended CIM error.
struct CMPIError {
  const void* hdl;
  const CMPIErrorFT* ft;
};

/// Function table of CMPIError.
struct CMPIErrorFT {
  CMPIVersion ftVersion;
  CMPIStatus (*release)(CMPIError*);
  CMPIError* (*clone)(const CMPIError*, CMPIStatus*);
  CMPIErrorType (*getErrorType)(const CMPIError*, CMPIStatus*);
  CMPIString* (*getOtherErrorType)(const CMPIError*, CMPIStatus*);
  CMPIString* (*getOwningEntity)(const CMPIError*, CMPIStatus*);
  CMPIString* (*getMessageID)(const CMPIError*, CMPIStatus*);
  CMPIString* (*getMessage)(const CMPIError*, CMPIStatus*);
  CMPIErrorSeverity (*getPerceivedSeverity)(const CMPIError*, CMPIStatus*);
  CMPIErrorProbableCause (*getProbableCause)(const CMPIError*, CMPIStatus*);
  CMPIString* (*getProbableCauseDescription)(const CMPIError*, CMPIStatus*);
  CMPIArray* (*getRecommendedActions)(const CMPIError*, CMPIStatus*);
  CMPIString* (*getErrorSource)(const CMPIError*, CMPIStatus*);
  CMPIErrorSrcFormat (*getErrorSourceFormat)(const CMPIError*, CMPIStatus*);
  CMPIString* (*getOtherErrorSourceFormat)(const CMPIError*, CMPIStatus*);
  CMPIrc (*getCIMStatusCode)(const CMPIError*, CMPIStatus*);
  CMPIString* (*getCIMStatusCodeDescription)(const CMPIError*, CMPIStatus*);
  CMPIArray* (*getMessageArguments)(const CMPIError*, CMPIStatus*);
  CMPIStatus (*setErrorType)(const CMPIError*, const CMPIErrorType);
  CMPIStatus (*setOtherErrorType)(const CMPIError*, const char*);
  CMPIStatus (*setProbableCauseDescription)(const CMPIError*, const char*);
  CMPIStatus (*setRecommendedActions)(const CMPIError*, const CMPIArray*);
  CMPIStatus (*setErrorSource)(const CMPIError*, const char*);
  CMPIStatus (*setErrorSourceFormat)(const CMPIError*, const CMPIErrorSrcFormat);
  CMPIStatus (*setOtherErrorSourceFormat)(const CMPIError*, const char*);
  CMPIStatus (*setCIMStatusCodeDescription)(const CMPIError*, const char*);
  CMPIStatus (*setMessageArguments)(const CMPIError*, const CMPIArray*);
};

/// A list of property names.
struct CMPIPropertyList {
  const void* hdl;
  const CMPIPropertyListFT* ft;
};

/// Function table of CMPIPropertyList.
struct CMPIPropertyListFT {
  CMPIVersion ftVersion;
  CMPIStatus (*release)(CMPIPropertyList*);
  CMPIPropertyList* (*clone)(const CMPIPropertyList*, CMPIStatus*);
  CMPIBoolean (*isPropertyInList)(const CMPIPropertyList*, const char*, CMPIStatus*);
  const char** (*getProperties)(const CMPIPropertyList*, CMPIStatus*);
};

/// A filter of an enumeration.
struct CMPIEnumerationFilter {
  const void* hdl;
  const CMPIEnumerationFilterFT* ft;
};

/// Function table of CMPIEnumerationFilter.
struct CMPIEnumerationFilterFT {
  CMPIVersion ftVersion;
  CMPIStatus (*release)(CMPIEnumerationFilter*);
  CMPIEnumerationFilter* (*clone)(const CMPIEnumerationFilter*, CMPIStatus*);
  CMPIBoolean (*match)(const CMPIEnumerationFilter*, const CMPIInstance*, CMPIStatus*);
};

/// A filter's condition in normal form.
struct CMPISelectCond {
  const void* hdl;
  const CMPISelectCondFT* ft;
};

/// Function table of CMPISelectCond.
struct CMPISelectCondFT {
  CMPIVersion ftVersion;
  CMPIStatus (*release)(CMPISelectCond*);
  CMPISelectCond* (*clone)(const CMPISelectCond*, CMPIStatus*);
  CMPICount (*getCountAndType)(const CMPISelectCond*, int*, CMPIStatus*);
  CMPISubCond* (*getSubCondAt)(const CMPISelectCond*, CMPICount, CMPIStatus*);
};

/// One part of a condition.
struct CMPISubCond {
  const void* hdl;
  const CMPISubCondFT* ft;
};

/// Function table of CMPISubCond.
struct CMPISubCondFT {
  CMPIVersion ftVersion;
  CMPIStatus (*release)(CMPISubCond*);
  CMPISubCond* (*clone)(const CMPISubCond*, CMPIStatus*);
  CMPICount (*getCount)(const CMPISubCond*, CMPIStatus*);
  CMPIPredicate* (*getPredicateAt)(const CMPISubCond*, CMPICount, CMPIStatus*);
  CMPIPredicate* (*getPredicate)(const CMPISubCond*, const char*, CMPIStatus*);
};

/// One comparison of a condition.
struct CMPIPredicate {
  const void* hdl;
  const CMPIPredicateFT* ft;
};

/// Function table of CMPIPredicate.
struct CMPIPredicateFT {
  CMPIVersion ftVersion;
  CMPIStatus (*release)(CMPIPredicate*);
  CMPIPredicate* (*clone)(const CMPIPredicate*, CMPIStatus*);
  CMPIStatus (*getData)(const CMPIPredicate*, CMPIType*, CMPIPredOp*, CMPIString**, CMPIString**);
  CMPIBoolean (*evaluateUsingAccessor)(const CMPIPredicate*, CMPIAccessor*, void*, CMPIStatus*);
};

static_assert(sizeof(CMPISelectExp) == 16);
CMPI_AT(CMPISelectExp, hdl, 0);
CMPI_AT(CMPISelectExp, ft, 8);
static_assert(sizeof(CMPISelectExpFT) == 64);
CMPI_AT(CMPISelectExpFT, ftVersion, 0);
CMPI_AT(CMPISelectExpFT, release, 8);
CMPI_AT(CMPISelectExpFT, clone, 16);
CMPI_AT(CMPISelectExpFT, evaluate, 24);
CMPI_AT(CMPISelectExpFT, getString, 32);
CMPI_AT(CMPISelectExpFT, getDOC, 40);
CMPI_AT(CMPISelectExpFT, getCOD, 48);
CMPI_AT(CMPISelectExpFT, evaluateUsingAccessor, 56);
static_assert(sizeof(CMPIError) == 16);
CMPI_AT(CMPIError, hdl, 0);
CMPI_AT(CMPIError, ft, 8);
static_assert(sizeof(CMPIErrorFT) == 216);
CMPI_AT(CMPIErrorFT, ftVersion, 0);
CMPI_AT(CMPIErrorFT, release, 8);
CMPI_AT(CMPIErrorFT, clone, 16);
CMPI_AT(CMPIErrorFT, getErrorType, 24);
CMPI_AT(CMPIErrorFT, getOtherErrorType, 32);
CMPI_AT(CMPIErrorFT, getOwningEntity, 40);
CMPI_AT(CMPIErrorFT, getMessageID, 48);
CMPI_AT(CMPIErrorFT, getMessage, 56);
CMPI_AT(CMPIErrorFT, getPerceivedSeverity, 64);
CMPI_AT(CMPIErrorFT, getProbableCause, 72);
CMPI_AT(CMPIErrorFT, getProbableCauseDescription, 80);
CMPI_AT(CMPIErrorFT, getRecommendedActions, 88);
CMPI_AT(CMPIErrorFT, getErrorSource, 96);
CMPI_AT(CMPIErrorFT, getErrorSourceFormat, 104);
CMPI_AT(CMPIErrorFT, getOtherErrorSourceFormat, 112);
CMPI_AT(CMPIErrorFT, getCIMStatusCode, 120);
CMPI_AT(CMPIErrorFT, getCIMStatusCodeDescription, 128);
CMPI_AT(CMPIErrorFT, getMessageArguments, 136);
CMPI_AT(CMPIErrorFT, setErrorType, 144);
CMPI_AT(CMPIErrorFT, setOtherErrorType, 152);
CMPI_AT(CMPIErrorFT, setProbableCauseDescription, 160);
CMPI_AT(CMPIErrorFT, setRecommendedActions, 168);
CMPI_AT(CMPIErrorFT, setErrorSource, 176);
CMPI_AT(CMPIErrorFT, setErrorSourceFormat, 184);
CMPI_AT(CMPIErrorFT, setOtherErrorSourceFormat, 192);
CMPI_AT(CMPIErrorFT, setCIMStatusCodeDescription, 200);
CMPI_AT(CMPIErrorFT, setMessageArguments, 208);
static_assert(sizeof(CMPIPropertyList) == 16);
CMPI_AT(CMPIPropertyList, hdl, 0);
CMPI_AT(CMPIPropertyList, ft, 8);
static_assert(sizeof(CMPIPropertyListFT) == 40);
CMPI_AT(CMPIPropertyListFT, ftVersion, 0);
CMPI_AT(CMPIPropertyListFT, release, 8);
CMPI_AT(CMPIPropertyListFT, clone, 16);
CMPI_AT(CMPIPropertyListFT, isPropertyInList, 24);
CMPI_AT(CMPIPropertyListFT, getProperties, 32);
static_assert(sizeof(CMPIEnumerationFilter) == 16);
CMPI_AT(CMPIEnumerationFilter, hdl, 0);
CMPI_AT(CMPIEnumerationFilter, ft, 8);
static_assert(sizeof(CMPIEnumerationFilterFT) == 32);
CMPI_AT(CMPIEnumerationFilterFT, ftVersion, 0);
CMPI_AT(CMPIEnumerationFilterFT, release, 8);
CMPI_AT(CMPIEnumerationFilterFT, clone, 16);
CMPI_AT(CMPIEnumerationFilterFT, match, 24);
static_assert(sizeof(CMPISelectCond) == 16);
CMPI_AT(CMPISelectCond, hdl, 0);
CMPI_AT(CMPISelectCond, ft, 8);
static_assert(sizeof(CMPISelectCondFT) == 40);
CMPI_AT(CMPISelectCondFT, ftVersion, 0);
CMPI_AT(CMPISelectCondFT, release, 8);
CMPI_AT(CMPISelectCondFT, clone, 16);
CMPI_AT(CMPISelectCondFT, getCountAndType, 24);
CMPI_AT(CMPISelectCondFT, getSubCondAt, 32);
static_assert(sizeof(CMPISubCond) == 16);
CMPI_AT(CMPISubCond, hdl, 0);
CMPI_AT(CMPISubCond, ft, 8);
static_assert(sizeof(CMPISubCondFT) == 48);
CMPI_AT(CMPISubCondFT, ftVersion, 0);
CMPI_AT(CMPISubCondFT, release, 8);
CMPI_AT(CMPISubCondFT, clone, 16);
CMPI_AT(CMPISubCondFT, getCount, 24);
CMPI_AT(CMPISubCondFT, getPredicateAt, 32);
CMPI_AT(CMPISubCondFT, getPredicate, 40);
static_assert(sizeof(CMPIPredicate) == 16);
CMPI_AT(CMPIPredicate, hdl, 0);
CMPI_AT(CMPIPredicate, ft, 8);
static_assert(sizeof(CMPIPredicateFT) == 40);
CMPI_AT(CMPIPredicateFT, ftVersion, 0);
CMPI_AT(CMPIPredicateFT, release, 8);
CMPI_AT(CMPIPredicateFT, clone, 16);
CMPI_AT(CMPIPredicateFT, getData, 24);
CMPI_AT(CMPIPredicateFT, evaluateUsingAccessor, 32);
