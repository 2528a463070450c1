// What stands behind the handles that cross the CMPI interface.
//
// A handle is the CMPI structure with the arena that its changes go to. Its body may be shared by several
// handles; a shared body is never changed, the handle takes a copy first. That makes object paths and
// finished instances cheap to pass on. Bodies and handles live in an arena and are never destroyed one by
// one.
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>
#include <type_traits>

#include "cmpi/cmpi.h"
#include "schema/ClassRepository.h"
#include "values/Arena.h"
#include "values/RefusalLog.h"

namespace ZebManager {

/// A name and a value, as keys, properties, arguments and context entries are.
struct NamedValue {
  std::string_view name;  ///< followed by a null byte
  CMPIData data;
};

/// Growing list of named values in an arena.
struct NamedValues {
  NamedValue* items = nullptr;
  std::uint32_t count = 0;
  std::uint32_t capacity = 0;

  /// Null when no value has the name.
  NamedValue* find(std::string_view name) const;
  NamedValue& append(Arena& arena, std::string_view name);
  /// For a list that has nothing in it yet.
  void reserve(Arena& arena, std::uint32_t values);
  const NamedValue* begin() const { return items; }
  const NamedValue* end() const { return items + count; }
};

struct StringBody {
  std::string_view text;  ///< followed by a null byte
};

struct DateTimeBody {
  std::uint64_t microseconds = 0;  ///< since the epoch (UTC), or in all for an interval
  bool interval = false;
};

struct ArrayBody {
  CMPIType elementType = CMPI_null;
  CMPICount count = 0;
  CMPIData* elements = nullptr;
  bool shared = false;
};

struct PathBody {
  std::string_view host;
  std::string_view nameSpace;
  std::string_view className;
  NamedValues keys;
  bool shared = false;
};

struct InstanceBody {
  const ClassDef* classDef = nullptr;
  PathBody* path = nullptr;  ///< always shared
  NamedValues properties;
  std::uint16_t* positions = nullptr;   ///< by the class's property index: 1 + place in `properties`, or 0
  RefusalLog* refusals = nullptr;       ///< null when nobody wants to know
  const char* const* filter = nullptr;  ///< names that may be set, null-terminated; null for all
  bool shared = false;
};

struct ValuesBody {
  NamedValues values;
};

/// What is done with an instance that is returned. It may be gone after that.
using TakeInstance = std::function<void(const InstanceBody&)>;

struct ListBody {
  CMPIData* items = nullptr;
  std::uint32_t count = 0;
  std::uint32_t capacity = 0;
  std::uint32_t position = 0;          ///< of an enumeration
  Arena* keep = nullptr;               ///< of a result: where what was returned goes
  bool complete = false;               ///< of a result: `returnDone` came
  const TakeInstance* take = nullptr;  ///< of a result: for instances, which are not kept then

  void append(const CMPIData& data);
};

template <class FaceType, class BodyType, auto* Table>
struct Handle : FaceType {
  using Face = FaceType;
  using Body = BodyType;
  static constexpr auto* kTable = Table;

  Arena* arena;
  bool owned;  ///< made by `clone`: the arena goes with the handle

  Body& body() const { return *const_cast<Body*>(static_cast<const Body*>(this->hdl)); }
};

extern const CMPIStringFT kStringFT;
extern const CMPIDateTimeFT kDateTimeFT;
extern const CMPIArrayFT kArrayFT;
extern const CMPIObjectPathFT kObjectPathFT;
extern const CMPIInstanceFT kInstanceFT;
extern const CMPIArgsFT kArgsFT;
extern const CMPIContextFT kContextFT;
extern const CMPIResultFT kResultFT;
extern const CMPIEnumerationFT kEnumerationFT;

using String = Handle<CMPIString, StringBody, &kStringFT>;
using DateTime = Handle<CMPIDateTime, DateTimeBody, &kDateTimeFT>;
using Array = Handle<CMPIArray, ArrayBody, &kArrayFT>;
using ObjectPath = Handle<CMPIObjectPath, PathBody, &kObjectPathFT>;
using Instance = Handle<CMPIInstance, InstanceBody, &kInstanceFT>;
using Args = Handle<CMPIArgs, ValuesBody, &kArgsFT>;
using Context = Handle<CMPIContext, ValuesBody, &kContextFT>;
using Result = Handle<CMPIResult, ListBody, &kResultFT>;
using Enumeration = Handle<CMPIEnumeration, ListBody, &kEnumerationFT>;

/// The handle behind a CMPI pointer; null for a null pointer and for an object that is not this broker's.
template <class H>
H* as(const typename H::Face* object) {
  if (!object || object->ft != H::kTable) return nullptr;
  return const_cast<H*>(static_cast<const H*>(object));
}

/// A handle in an arena for a body that lives as long.
template <class H>
H* makeHandle(Arena& arena, typename H::Body* body, bool owned = false) {
  H* const handle = arena.make<H>();
  handle->hdl = body;
  handle->ft = H::kTable;
  handle->arena = &arena;
  handle->owned = owned;
  return handle;
}

}  // namespace ZebManager
