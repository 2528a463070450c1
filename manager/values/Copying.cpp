// Copying and sharing of values: between arenas everything is copied, within one what can change is shared
// until it does.
#include <algorithm>

#include "values/Values.h"

namespace ZebManager {
namespace {

/// Properties that an instance comes to have, as a rule.
constexpr std::uint32_t kUsual = 32;

bool isText(CMPIType type) {
  return type == CMPI_chars || type == CMPI_charsptr;
}

/// A handle for the same body when the arena is the same, otherwise a copy.
template <class H, class CopyBody>
H* shareOrCopy(Arena& arena, const typename H::Face* object, CopyBody copyBody) {
  const H& handle = *as<H>(object);
  if (handle.arena != &arena) return makeHandle<H>(arena, copyBody(arena, handle.body()));
  handle.body().shared = true;
  return makeHandle<H>(arena, &handle.body());
}

NamedValues copyNamed(Arena& arena, const NamedValues& values) {
  NamedValues copy;
  copy.items = arena.makeArray<NamedValue>(values.count);
  copy.count = copy.capacity = values.count;
  for (std::uint32_t i = 0; i < values.count; ++i) {
    copy.items[i] = {arena.copy(values.items[i].name), copyData(arena, values.items[i].data)};
  }
  return copy;
}

NamedValues copyShallow(Arena& arena, const NamedValues& values) {
  NamedValues copy = values;
  copy.capacity = std::max<std::uint32_t>(values.count, 4);
  copy.items = arena.makeArray<NamedValue>(copy.capacity);
  std::copy(values.begin(), values.end(), copy.items);
  return copy;
}

CMPIrc takeText(Arena& arena, const CMPIValue* value, CMPIType type, CMPIData& out) {
  if (type == CMPI_chars) {
    // By the interface's rule the value pointer is the text itself.
    out = dataOf(makeString(arena, reinterpret_cast<const char*>(value)));
  } else if (!value->dataPtr.ptr) {
    out = nullOf(CMPI_string);
  } else {
    out = dataOf(makeString(arena, {static_cast<const char*>(value->dataPtr.ptr), value->dataPtr.length}));
  }
  return CMPI_RC_OK;
}

/// Whether an object is there and is this broker's.
CMPIrc checkObject(const CMPIValue& value, CMPIType type, bool& present) {
  const auto check = [&present](auto* handle, const void* object) {
    present = object != nullptr;
    return handle || !object ? CMPI_RC_OK : CMPI_RC_ERR_INVALID_HANDLE;
  };
  if (isArray(type)) return check(as<Array>(value.array), value.array);
  switch (type) {
    case CMPI_string:
      return check(as<String>(value.string), value.string);
    case CMPI_dateTime:
      return check(as<DateTime>(value.dateTime), value.dateTime);
    case CMPI_ref:
      return check(as<ObjectPath>(value.ref), value.ref);
    case CMPI_instance:
      return check(as<Instance>(value.inst), value.inst);
    default:
      return CMPI_RC_ERR_INVALID_DATA_TYPE;
  }
}

bool isPlain(CMPIType type) {
  return type == CMPI_boolean || type == CMPI_char16 || type == CMPI_real32 || type == CMPI_real64 ||
         isInteger(type);
}

}  // namespace

Instance* makeInstance(Arena& arena, const ObjectPath& path, const ClassDef& classDef, RefusalLog* refusals) {
  auto* body = arena.make<InstanceBody>();
  body->classDef = &classDef;
  body->refusals = refusals;
  body->path = &shareOrCopy<ObjectPath>(arena, &path, copyPath)->body();
  body->path->shared = true;
  body->positions = arena.makeArray<std::uint16_t>(classDef.properties.size());
  body->properties.reserve(
      arena, std::min<std::uint32_t>(static_cast<std::uint32_t>(classDef.properties.size()), kUsual));
  return makeHandle<Instance>(arena, body);
}

CMPIData copyData(Arena& arena, const CMPIData& data) {
  CMPIData copy = data;
  if (isNull(data)) return copy;
  if (isArray(data.type)) {
    copy.value.array = shareOrCopy<Array>(arena, data.value.array, copyArray);
  } else if (data.type == CMPI_ref) {
    copy.value.ref = shareOrCopy<ObjectPath>(arena, data.value.ref, copyPath);
  } else if (data.type == CMPI_instance) {
    copy.value.inst = shareOrCopy<Instance>(arena, data.value.inst, copyInstance);
  } else if (data.type == CMPI_string && as<String>(data.value.string)->arena != &arena) {
    copy.value.string = makeString(arena, textOf(data.value.string));
  } else if (data.type == CMPI_dateTime && as<DateTime>(data.value.dateTime)->arena != &arena) {
    copy.value.dateTime = makeDateTime(arena, as<DateTime>(data.value.dateTime)->body());
  }
  return copy;
}

CMPIrc takeValue(Arena& arena, const CMPIValue* value, CMPIType type, CMPIData& out) {
  if (!value) {
    out = nullOf(isText(type) ? CMPI_string : type);
    return CMPI_RC_OK;
  }
  if (isText(type)) return takeText(arena, value, type, out);
  out = dataOf(type, *value);
  if (isPlain(type)) return CMPI_RC_OK;
  bool present = false;
  if (const CMPIrc error = checkObject(*value, type, present); error != CMPI_RC_OK) return error;
  if (!present) {
    out = nullOf(type);
    return CMPI_RC_OK;
  }
  if (isArray(type) && as<Array>(value->array)->body().elementType != elementType(type)) {
    return CMPI_RC_ERR_INVALID_DATA_TYPE;
  }
  out = copyData(arena, out);
  return CMPI_RC_OK;
}

ArrayBody& writable(Array& array) {
  if (array.body().shared) array.hdl = copyArray(*array.arena, array.body());
  return array.body();
}

PathBody& writable(ObjectPath& path) {
  if (path.body().shared) {
    auto* copy = path.arena->make<PathBody>(path.body());
    copy->keys = copyShallow(*path.arena, copy->keys);
    copy->shared = false;
    path.hdl = copy;
  }
  return path.body();
}

InstanceBody& writable(Instance& instance) {
  if (instance.body().shared) {
    auto* copy = instance.arena->make<InstanceBody>(instance.body());
    const std::size_t count = copy->classDef->properties.size();
    copy->properties = copyShallow(*instance.arena, copy->properties);
    copy->positions = instance.arena->makeArray<std::uint16_t>(count);
    std::copy_n(instance.body().positions, count, copy->positions);
    copy->shared = false;
    instance.hdl = copy;
  }
  return instance.body();
}

PathBody* copyPath(Arena& arena, const PathBody& path) {
  return arena.make<PathBody>(arena.copy(path.host), arena.copy(path.nameSpace), arena.copy(path.className),
                              copyNamed(arena, path.keys));
}

InstanceBody* copyInstance(Arena& arena, const InstanceBody& instance) {
  auto* copy = arena.make<InstanceBody>();
  const std::size_t count = instance.classDef->properties.size();
  copy->classDef = instance.classDef;
  copy->refusals = instance.refusals;
  copy->path = copyPath(arena, *instance.path);
  copy->path->shared = true;
  copy->properties = copyNamed(arena, instance.properties);
  copy->positions = arena.makeArray<std::uint16_t>(count);
  std::copy_n(instance.positions, count, copy->positions);
  return copy;
}

ArrayBody* copyArray(Arena& arena, const ArrayBody& array) {
  auto* copy = arena.make<ArrayBody>(array.elementType, array.count, arena.makeArray<CMPIData>(array.count));
  for (CMPICount i = 0; i < array.count; ++i) copy->elements[i] = copyData(arena, array.elements[i]);
  return copy;
}

ValuesBody* copyValues(Arena& arena, const ValuesBody& values) {
  return arena.make<ValuesBody>(copyNamed(arena, values.values));
}

}  // namespace ZebManager
