// Making values, asking for class ancestry, and the log.
#include <syslog.h>

#include <array>
#include <chrono>

#include "broker/Broker.h"
#include "broker/SelectQuery.h"
#include "values/CallMemory.h"
#include "values/DateTimeText.h"
#include "values/ManagerError.h"
#include "values/ObjectPathText.h"
#include "values/Values.h"

namespace ZebManager {
namespace {

/// Makes something in the memory of the current call; outside a call there is none.
template <class Make>
auto inCall(CMPIStatus* status, Make make) -> decltype(make(std::declval<Arena&>())) {
  Arena* const arena = currentArena();
  put(status, arena ? CMPI_RC_OK : CMPI_RC_ERR_FAILED);
  return arena ? make(*arena) : nullptr;
}

CMPIInstance* newInstance(const CMPIBroker* broker, const CMPIObjectPath* source, CMPIStatus* status) {
  return inCall(status, [&](Arena& arena) -> Instance* {
    const ObjectPath* const path = as<ObjectPath>(source);
    const ClassDef* const found =
        path ? Broker::of(broker).repository().find(path->body().className) : nullptr;
    if (!path) put(status, CMPI_RC_ERR_INVALID_HANDLE);
    if (path && !found)
      put(status, CMPI_RC_ERR_NOT_FOUND, "no such class: " + std::string(path->body().className));
    return found ? makeInstance(arena, *path, *found, &Broker::of(broker).refusals()) : nullptr;
  });
}

CMPIObjectPath* newObjectPath(const CMPIBroker*, const char* nameSpace, const char* className,
                              CMPIStatus* status) {
  return inCall(status, [&](Arena& arena) {
    return makePath(arena, nameSpace ? nameSpace : "", className ? className : "");
  });
}

CMPIArgs* newArgs(const CMPIBroker*, CMPIStatus* status) {
  return inCall(status, [](Arena& arena) { return makeArgs(arena); });
}

CMPIString* newString(const CMPIBroker*, const char* text, CMPIStatus* status) {
  return inCall(status, [&](Arena& arena) { return makeString(arena, text ? text : ""); });
}

bool isElementType(CMPIType type) {
  return !isArray(type) &&
         (elementTypeName(type) != "unknown" || type == CMPI_chars || type == CMPI_instance);
}

CMPIArray* newArray(const CMPIBroker*, CMPICount count, CMPIType type, CMPIStatus* status) {
  return inCall(status, [&](Arena& arena) -> Array* {
    if (!isElementType(type)) {
      put(status, CMPI_RC_ERR_INVALID_DATA_TYPE);
      return nullptr;
    }
    return makeArray(arena, count, type == CMPI_chars ? CMPI_string : type);
  });
}

CMPIDateTime* newDateTime(const CMPIBroker*, CMPIStatus* status) {
  return inCall(status, [](Arena& arena) {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    const auto micros = std::chrono::duration_cast<std::chrono::microseconds>(now).count();
    return makeDateTime(arena, {static_cast<std::uint64_t>(micros), false});
  });
}

CMPIDateTime* newDateTimeFromBinary(const CMPIBroker*, CMPIUint64 microseconds, CMPIBoolean interval,
                                    CMPIStatus* status) {
  return inCall(status, [&](Arena& arena) { return makeDateTime(arena, {microseconds, interval != 0}); });
}

CMPIDateTime* newDateTimeFromChars(const CMPIBroker*, const char* text, CMPIStatus* status) {
  return inCall(status, [&](Arena& arena) -> DateTime* {
    const auto parsed = parseDateTime(text ? text : "");
    if (!parsed) put(status, CMPI_RC_ERR_INVALID_PARAMETER, "not a datetime");
    return parsed ? makeDateTime(arena, *parsed) : nullptr;
  });
}

CMPISelectExp* newSelectExp(const CMPIBroker* broker, const char* query, const char*, CMPIArray** projection,
                            CMPIStatus* status) {
  if (projection) *projection = nullptr;
  return inCall(status, [&](Arena& arena) {
    SelectExp* const made = makeSelectExp(arena, Broker::of(broker).repository(), query ? query : "");
    if (!made) put(status, CMPI_RC_ERR_INVALID_QUERY);
    return made;
  });
}

CMPIBoolean classPathIsA(const CMPIBroker* broker, const CMPIObjectPath* source, const char* className,
                         CMPIStatus* status) {
  const ObjectPath* const path = as<ObjectPath>(source);
  put(status, path && className ? CMPI_RC_OK : CMPI_RC_ERR_INVALID_PARAMETER);
  return path && className && Broker::of(broker).repository().isA(path->body().className, className);
}

/// Every encapsulated object begins with a handle and its table; the table tells what it is.
struct AnyObject {
  const void* hdl;
  const void* table;
};

struct TypeRow {
  const void* table;
  const char* name;
};

const char* nameOfType(const void* object) {
  static constexpr std::array kTypes = {
      TypeRow{&kStringFT, "CMPIString"},
      TypeRow{&kDateTimeFT, "CMPIDateTime"},
      TypeRow{&kArrayFT, "CMPIArray"},
      TypeRow{&kObjectPathFT, "CMPIObjectPath"},
      TypeRow{&kInstanceFT, "CMPIInstance"},
      TypeRow{&kArgsFT, "CMPIArgs"},
      TypeRow{&kContextFT, "CMPIContext"},
      TypeRow{&kResultFT, "CMPIResult"},
      TypeRow{&kEnumerationFT, "CMPIEnumeration"},
      TypeRow{&kSelectExpFT, "CMPISelectExp"},
  };
  for (const TypeRow& row : kTypes) {
    if (object && static_cast<const AnyObject*>(object)->table == row.table) return row.name;
  }
  return nullptr;
}

std::string textOfObject(const void* object) {
  if (auto* string = as<String>(static_cast<const CMPIString*>(object)))
    return std::string(string->body().text);
  if (auto* path = as<ObjectPath>(static_cast<const CMPIObjectPath*>(object)))
    return formatPath(path->body());
  if (auto* time = as<DateTime>(static_cast<const CMPIDateTime*>(object)))
    return formatDateTime(time->body());
  if (auto* instance = as<Instance>(static_cast<const CMPIInstance*>(object))) {
    return formatPath(*instance->body().path);
  }
  return nameOfType(object);
}

CMPIString* toString(const CMPIBroker*, const void* object, CMPIStatus* status) {
  return inCall(status, [&](Arena& arena) -> String* {
    if (nameOfType(object)) return makeString(arena, textOfObject(object));
    put(status, CMPI_RC_ERR_INVALID_HANDLE);
    return nullptr;
  });
}

CMPIBoolean isOfType(const CMPIBroker*, const void* object, const char* name, CMPIStatus* status) {
  const char* const type = nameOfType(object);
  put(status, type ? CMPI_RC_OK : CMPI_RC_ERR_INVALID_HANDLE);
  return type && name && std::string_view(type) == name;
}

CMPIString* getType(const CMPIBroker*, const void* object, CMPIStatus* status) {
  return inCall(status, [&](Arena& arena) -> String* {
    const char* const type = nameOfType(object);
    if (!type) put(status, CMPI_RC_ERR_INVALID_HANDLE);
    return type ? makeString(arena, type) : nullptr;
  });
}

/// There is no message catalogue: the default message is the message.
CMPIString* getMessage(const CMPIBroker*, const char*, const char* defaultMessage, CMPIStatus* status,
                       CMPICount, ...) {
  return inCall(status,
                [&](Arena& arena) { return makeString(arena, defaultMessage ? defaultMessage : ""); });
}

int priorityOf(CMPISeverity severity) {
  if (severity == CMPI_SEV_ERROR) return LOG_ERR;
  return severity == CMPI_SEV_WARNING ? LOG_WARNING : LOG_INFO;
}

CMPIStatus logMessage(const CMPIBroker*, CMPISeverity severity, const char* id, const char* text,
                      const CMPIString* string) {
  const std::string shown = oneLine(text ? text : textOf(string));
  syslog(LOG_DAEMON | priorityOf(severity), "%s: %s", id ? id : "provider", shown.c_str());
  return statusOf(CMPI_RC_OK);
}

CMPIStatus trace(const CMPIBroker*, CMPILevel, const char* component, const char* text,
                 const CMPIString* string) {
  const std::string shown = oneLine(text ? text : textOf(string));
  syslog(LOG_DAEMON | LOG_DEBUG, "%s: %s", component ? component : "provider", shown.c_str());
  return statusOf(CMPI_RC_OK);
}

// What is not offered.

CMPIError* newCMPIError(const CMPIBroker*, const char*, const char*, const char*, const CMPIErrorSeverity,
                        const CMPIErrorProbableCause, const CMPIrc, CMPIStatus* status) {
  put(status, CMPI_RC_ERR_NOT_SUPPORTED);
  return nullptr;
}

CMPIStatus openMessageFile(const CMPIBroker*, const char*, CMPIMsgFileHandle* file) {
  if (file) *file = nullptr;
  return statusOf(CMPI_RC_ERR_NOT_SUPPORTED);
}

CMPIStatus closeMessageFile(const CMPIBroker*, const CMPIMsgFileHandle) {
  return statusOf(CMPI_RC_ERR_NOT_SUPPORTED);
}

CMPIString* getMessage2(const CMPIBroker* broker, const char* id, const CMPIMsgFileHandle,
                        const char* defaultMessage, CMPIStatus* status, CMPICount, ...) {
  return getMessage(broker, id, defaultMessage, status, 0);
}

CMPIPropertyList* newPropertyList(const CMPIBroker*, const char**, CMPIStatus* status) {
  put(status, CMPI_RC_ERR_NOT_SUPPORTED);
  return nullptr;
}

CMPIString* newStringCP(const CMPIBroker*, const char*, const CMPICodepageID, CMPIStatus* status) {
  put(status, CMPI_RC_ERR_NOT_SUPPORTED);
  return nullptr;
}

CMPIEnumerationFilter* newEnumerationFilter(const CMPIBroker*, const char*, const char*, CMPIStatus* status) {
  put(status, CMPI_RC_ERR_NOT_SUPPORTED);
  return nullptr;
}

}  // namespace

const CMPIBrokerEncFT kBrokerEncFT = {
    CMPIVersion210,
    newInstance,
    newObjectPath,
    newArgs,
    newString,
    newArray,
    newDateTime,
    newDateTimeFromBinary,
    newDateTimeFromChars,
    newSelectExp,
    classPathIsA,
    toString,
    isOfType,
    getType,
    getMessage,
    logMessage,
    trace,
    newCMPIError,
    openMessageFile,
    closeMessageFile,
    getMessage2,
    newPropertyList,
    newStringCP,
    newEnumerationFilter,
};

}  // namespace ZebManager
