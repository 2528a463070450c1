// The CMPI C interface, version 2.1: the structures and function tables by which a provider and an object
// manager call each other. Every offset is asserted at the end, since both sides are built apart.
//
// Objects that the broker's `new...` functions make belong to the current call and are gone when it returns;
// what `clone` made lives until its own `release`. Property lists are null-terminated arrays of C strings,
// and a null list means every property. Slots past the version that a table declares may be missing or null.
#pragma once

#include <cstddef>
#include <cstdint>

using CMPIBoolean = unsigned char;
using CMPIChar16 = std::uint16_t;
using CMPIUint8 = std::uint8_t;
using CMPIUint16 = std::uint16_t;
using CMPIUint32 = std::uint32_t;
using CMPIUint64 = std::uint64_t;
using CMPISint8 = std::int8_t;
using CMPISint16 = std::int16_t;
using CMPISint32 = std::int32_t;
using CMPISint64 = std::int64_t;
using CMPIReal32 = float;
using CMPIReal64 = double;
using CMPICount = unsigned int;
using CMPIVersion = int;
using CMPIFlags = unsigned int;

inline constexpr CMPIVersion CMPIVersion100 = 100;
inline constexpr CMPIVersion CMPIVersion200 = 200;
inline constexpr CMPIVersion CMPIVersion210 = 210;

/// Type code of a value; `CMPI_ARRAY` is or-ed to the code of the elements.
using CMPIType = unsigned short;
inline constexpr CMPIType CMPI_null = 0;
inline constexpr CMPIType CMPI_boolean = 2;
inline constexpr CMPIType CMPI_char16 = 3;
inline constexpr CMPIType CMPI_real32 = 8;
inline constexpr CMPIType CMPI_real64 = 12;
inline constexpr CMPIType CMPI_uint8 = 128;
inline constexpr CMPIType CMPI_uint16 = 144;
inline constexpr CMPIType CMPI_uint32 = 160;
inline constexpr CMPIType CMPI_uint64 = 176;
inline constexpr CMPIType CMPI_sint8 = 192;
inline constexpr CMPIType CMPI_sint16 = 208;
inline constexpr CMPIType CMPI_sint32 = 224;
inline constexpr CMPIType CMPI_sint64 = 240;
inline constexpr CMPIType CMPI_instance = 4096;
inline constexpr CMPIType CMPI_ref = 4352;
inline constexpr CMPIType CMPI_args = 4608;
inline constexpr CMPIType CMPI_class = 4864;
inline constexpr CMPIType CMPI_filter = 5120;
inline constexpr CMPIType CMPI_enumeration = 5376;
inline constexpr CMPIType CMPI_string = 5632;
inline constexpr CMPIType CMPI_chars = 5888;
inline constexpr CMPIType CMPI_dateTime = 6144;
inline constexpr CMPIType CMPI_ptr = 6400;
inline constexpr CMPIType CMPI_charsptr = 6656;
inline constexpr CMPIType CMPI_ARRAY = 8192;

/// Whether a value is there: `CMPI_nullValue` tells a null apart from a zero.
using CMPIValueState = unsigned short;
inline constexpr CMPIValueState CMPI_goodValue = 0;
inline constexpr CMPIValueState CMPI_nullValue = 256;
inline constexpr CMPIValueState CMPI_keyValue = 512;
inline constexpr CMPIValueState CMPI_notFound = 1024;
inline constexpr CMPIValueState CMPI_badValue = 32768;

/// Bits of the invocation flags that a context carries under `CMPIInvocationFlags`.
inline constexpr CMPIFlags CMPI_FLAG_LocalOnly = 1;
inline constexpr CMPIFlags CMPI_FLAG_DeepInheritance = 2;
inline constexpr CMPIFlags CMPI_FLAG_IncludeQualifiers = 4;
inline constexpr CMPIFlags CMPI_FLAG_IncludeClassOrigin = 8;

/// Capability bits of a broker.
inline constexpr unsigned int CMPI_MB_BasicRead = 1;
inline constexpr unsigned int CMPI_MB_BasicWrite = 3;
inline constexpr unsigned int CMPI_MB_InstanceManipulation = 7;
inline constexpr unsigned int CMPI_MB_AssociationTraversal = 9;
inline constexpr unsigned int CMPI_MB_QueryExecution = 17;
inline constexpr unsigned int CMPI_MB_QueryNormalization = 49;
inline constexpr unsigned int CMPI_MB_BasicQualifierSupport = 71;
inline constexpr unsigned int CMPI_MB_Indications = 129;
inline constexpr unsigned int CMPI_MB_OSEncapsulationSupport = 256;
inline constexpr unsigned int CMPI_MB_Supports_MemEnhancements = 16384;
inline constexpr unsigned int CMPI_MB_Supports_Extended_Error = 32768;

inline constexpr char CMPIInvocationFlags[] = "CMPIInvocationFlags";
inline constexpr char CMPIPrincipal[] = "CMPIPrincipal";
inline constexpr char CMPIInitNameSpace[] = "CMPIInitNameSpace";

/// Return codes; those below 100 are CIM status codes.
enum CMPIrc : int {
  CMPI_RC_OK = 0,
  CMPI_RC_ERR_FAILED = 1,
  CMPI_RC_ERR_ACCESS_DENIED = 2,
  CMPI_RC_ERR_INVALID_NAMESPACE = 3,
  CMPI_RC_ERR_INVALID_PARAMETER = 4,
  CMPI_RC_ERR_INVALID_CLASS = 5,
  CMPI_RC_ERR_NOT_FOUND = 6,
  CMPI_RC_ERR_NOT_SUPPORTED = 7,
  CMPI_RC_ERR_CLASS_HAS_CHILDREN = 8,
  CMPI_RC_ERR_CLASS_HAS_INSTANCES = 9,
  CMPI_RC_ERR_INVALID_SUPERCLASS = 10,
  CMPI_RC_ERR_ALREADY_EXISTS = 11,
  CMPI_RC_ERR_NO_SUCH_PROPERTY = 12,
  CMPI_RC_ERR_TYPE_MISMATCH = 13,
  CMPI_RC_ERR_QUERY_LANGUAGE_NOT_SUPPORTED = 14,
  CMPI_RC_ERR_INVALID_QUERY = 15,
  CMPI_RC_ERR_METHOD_NOT_AVAILABLE = 16,
  CMPI_RC_ERR_METHOD_NOT_FOUND = 17,
  CMPI_RC_NO_MORE_ELEMENTS = 18,
  CMPI_RC_ERR_SERVER_LIMITS_EXCEEDED = 27,
  CMPI_RC_DO_NOT_UNLOAD = 50,
  CMPI_RC_NEVER_UNLOAD = 51,
  CMPI_RC_ERR_INVALID_HANDLE = 60,
  CMPI_RC_ERR_INVALID_DATA_TYPE = 61,
  CMPI_RC_ERR_NOT_IN_CODEPAGE = 62,
  CMPI_RC_ERROR_SYSTEM = 100,
  CMPI_RC_ERROR = 200,
};

/// Severity of a message for the object manager's log.
enum CMPISeverity : int { CMPI_SEV_INFO = 1, CMPI_SEV_WARNING = 2, CMPI_SEV_ERROR = 3 };

/// Detail of a trace message.
enum CMPILevel : int { CMPI_LEV_INFO = 1, CMPI_LEV_WARNING = 2, CMPI_LEV_VERBOSE = 3 };

/// Operators of a filter's predicate.
enum CMPIPredOp : int {
  CMPI_PredOp_Equals = 1,
  CMPI_PredOp_NotEquals = 2,
  CMPI_PredOp_LessThan = 3,
  CMPI_PredOp_GreaterThanOrEquals = 4,
  CMPI_PredOp_GreaterThan = 5,
  CMPI_PredOp_LessThanOrEquals = 6,
  CMPI_PredOp_Isa = 7,
  CMPI_PredOp_NotIsa = 8,
  CMPI_PredOp_Like = 9,
  CMPI_PredOp_NotLike = 10
};

// Codes of an extended error. Their values are those of the CIM_Error class; nothing here reads them.
enum CMPIErrorType : int { UnknownErrorType = 0 };
enum CMPIErrorSeverity : int { ErrorSevUnknown = 0 };
enum CMPIErrorProbableCause : int { ErrorProbCauseUnknown = 0 };
enum CMPIErrorSrcFormat : int { CMPIErrSrcFormatUnknown = 0 };

using CMPIMsgFileHandle = void*;
using CMPIGcStat = void;
using CMPICodepageID = const char*;

struct CMPIBroker;
struct CMPIBrokerFT;
struct CMPIBrokerEncFT;
struct CMPIBrokerExtFT;
struct CMPIBrokerMemFT;
struct CMPIContext;
struct CMPIContextFT;
struct CMPIResult;
struct CMPIResultFT;
struct CMPIString;
struct CMPIStringFT;
struct CMPIArray;
struct CMPIArrayFT;
struct CMPIEnumeration;
struct CMPIEnumerationFT;
struct CMPIInstance;
struct CMPIInstanceFT;
struct CMPIObjectPath;
struct CMPIObjectPathFT;
struct CMPIArgs;
struct CMPIArgsFT;
struct CMPIDateTime;
struct CMPIDateTimeFT;
struct CMPISelectExp;
struct CMPISelectExpFT;
struct CMPIError;
struct CMPIErrorFT;
struct CMPIPropertyList;
struct CMPIPropertyListFT;
struct CMPIEnumerationFilter;
struct CMPIEnumerationFilterFT;
struct CMPIInstanceMI;
struct CMPIInstanceMIFT;
struct CMPIAssociationMI;
struct CMPIAssociationMIFT;
struct CMPIMethodMI;
struct CMPIMethodMIFT;
struct CMPIIndicationMI;
struct CMPIIndicationMIFT;
struct CMPIPropertyMI;
struct CMPIPropertyMIFT;
struct CMPISelectCond;
struct CMPISelectCondFT;
struct CMPISubCond;
struct CMPISubCondFT;
struct CMPIPredicate;
struct CMPIPredicateFT;

/// The payload of a value; the type code beside it says which member holds.
union CMPIValue {
  CMPIUint64 uint64;
  CMPIUint32 uint32;
  CMPIUint16 uint16;
  CMPIUint8 uint8;
  CMPISint64 sint64;
  CMPISint32 sint32;
  CMPISint16 sint16;
  CMPISint8 sint8;
  CMPIReal64 real64;
  CMPIReal32 real32;
  CMPIBoolean boolean;
  CMPIChar16 char16;

  CMPIInstance* inst;
  CMPIObjectPath* ref;
  CMPIArgs* args;
  CMPISelectExp* filter;
  CMPIEnumeration* Enum;
  CMPIArray* array;
  CMPIString* string;
  char* chars;
  CMPIDateTime* dateTime;

  struct {
    void* ptr;
    CMPICount length;
  } dataPtr;
};

/// A typed value with its state.
struct CMPIData {
  CMPIType type;
  CMPIValueState state;
  CMPIValue value;
};

/// Outcome of a call. The message, when there is one, belongs to the current call.
struct CMPIStatus {
  CMPIrc rc;
  CMPIString* msg;
};

using CMPIAccessor = CMPIData(const char*, void*);
using CMPIThreadFunc = void* (*)(void*);
using CMPIThreadOnceFunc = void (*)();
using CMPIThreadKeyCleanupFunc = void (*)(void*);

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

// The layout that both sides agreed on, on a 64-bit Linux.
#define CMPI_AT(structure, member, offset) static_assert(offsetof(structure, member) == (offset))

static_assert(sizeof(CMPIData) == 24);
static_assert(sizeof(CMPIValue) == 16);
static_assert(sizeof(CMPIStatus) == 16);
static_assert(sizeof(CMPIBoolean) == 1);
static_assert(sizeof(CMPICount) == 4);
static_assert(sizeof(CMPIType) == 2);

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

#undef CMPI_AT
