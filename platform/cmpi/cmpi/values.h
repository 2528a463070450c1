// What both sides of the interface say to each other: numbers, states, codes, and the names of the objects.
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

// The layout that both sides agreed on, on a 64-bit Linux.
#define CMPI_AT(structure, member, offset) static_assert(offsetof(structure, member) == (offset))

static_assert(sizeof(CMPIData) == 24);
static_assert(sizeof(CMPIValue) == 16);
static_assert(sizeof(CMPIStatus) == 16);
static_assert(sizeof(CMPIBoolean) == 1);
static_assert(sizeof(CMPICount) == 4);
static_assert(sizeof(CMPIType) == 2);
