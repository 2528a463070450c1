// Making, copying and checking the values of the broker.
#pragma once

#include <string>
#include <string_view>

#include "values/Objects.h"

namespace ZebManager {

/// Stores a status where the caller asked for one.
void put(CMPIStatus* status, CMPIrc code, std::string_view message = {});
/// A status whose message, when there is one, belongs to the current call.
CMPIStatus statusOf(CMPIrc code, std::string_view message = {});

String* makeString(Arena& arena, std::string_view text);
DateTime* makeDateTime(Arena& arena, const DateTimeBody& value);
Array* makeArray(Arena& arena, CMPICount count, CMPIType elementType);
ObjectPath* makePath(Arena& arena, std::string_view nameSpace, std::string_view className);
Instance* makeInstance(Arena& arena, const ObjectPath& path, const ClassDef& classDef,
                       RefusalLog* refusals = nullptr);
Args* makeArgs(Arena& arena);
Context* makeContext(Arena& arena);
/// Collects what a provider returns; it goes to `keep`, where it outlives marks of the call's arena.
Result* makeResult(Arena& keep);
Enumeration* makeEnumeration(Arena& arena, const CMPIData* items, std::uint32_t count);

CMPIData dataOf(CMPIType type, const CMPIValue& value);
CMPIData nullOf(CMPIType type);
CMPIData dataOf(String* text);
CMPIData dataOf(ObjectPath* path);
CMPIData dataOf(Instance* instance);
CMPIData dataOf(DateTime* dateTime);
CMPIData dataOf(Array* array);

/// Text of a string; empty for null.
std::string_view textOf(const CMPIString* string);
inline bool isNull(const CMPIData& data) {
  return (data.state & CMPI_nullValue) != 0;
}

/// The number of an integer value, whatever its width.
std::uint64_t unsignedOf(const CMPIData& data);
std::int64_t signedOf(const CMPIData& data);
std::string utf8Of(CMPIChar16 character);

/// A value in another arena, with everything in it. A value of the same arena may go on sharing parts.
CMPIData copyData(Arena& arena, const CMPIData& data);

/// Takes a value that a provider passed: C strings become strings, a null pointer becomes a null value, what
/// can be changed later is copied. An error when the type is unknown or the object is not the broker's.
CMPIrc takeValue(Arena& arena, const CMPIValue* value, CMPIType type, CMPIData& out);

/// The body to change: the handle's own, after a copy when it is shared.
ArrayBody& writable(Array& array);
PathBody& writable(ObjectPath& path);
InstanceBody& writable(Instance& instance);

/// `release` of any handle: a clone goes with its arena, everything else goes with the call.
template <class H>
CMPIStatus releaseHandle(typename H::Face* object) {
  H* const handle = as<H>(object);
  if (!handle) return statusOf(CMPI_RC_ERR_INVALID_HANDLE);
  if (handle->owned) delete handle->arena;
  return statusOf(CMPI_RC_OK);
}

/// `clone` of any handle whose body `copyBody(Arena&, const Body&)` can copy.
template <class H, class CopyBody>
typename H::Face* cloneHandle(const typename H::Face* object, CMPIStatus* status, CopyBody copyBody) {
  const H* const handle = as<H>(object);
  if (!handle) {
    put(status, CMPI_RC_ERR_INVALID_HANDLE);
    return nullptr;
  }
  auto arena = std::make_unique<Arena>();
  H* const clone = makeHandle<H>(*arena, copyBody(*arena, handle->body()), true);
  static_cast<void>(arena.release());  // the clone's own release ends it
  put(status, CMPI_RC_OK);
  return clone;
}

PathBody* copyPath(Arena& arena, const PathBody& path);
InstanceBody* copyInstance(Arena& arena, const InstanceBody& instance);
ArrayBody* copyArray(Arena& arena, const ArrayBody& array);
ValuesBody* copyValues(Arena& arena, const ValuesBody& values);

/// Answers of `get…At` and `get…(name)`, alike for keys, properties, arguments and context entries.
CMPIData valueAt(const NamedValues& values, CMPICount index, CMPIString** name, CMPIStatus* status);
CMPIData valueNamed(const NamedValues& values, const char* name, CMPIrc missing, CMPIStatus* status);

}  // namespace ZebManager
