#include "values/Values.h"

#include <algorithm>

#include "schema/Utf8.h"
#include "values/CallMemory.h"

namespace ZebManager {
namespace {

constexpr CMPIData kNoData{};

}  // namespace

NamedValue* NamedValues::find(std::string_view name) const {
  for (std::uint32_t i = 0; i < count; ++i) {
    if (sameName(items[i].name, name)) return &items[i];
  }
  return nullptr;
}

NamedValue& NamedValues::append(Arena& arena, std::string_view name) {
  if (count == capacity) {
    capacity = std::max<std::uint32_t>(8, capacity * 2);
    NamedValue* const larger = arena.makeArray<NamedValue>(capacity);
    std::copy_n(items, count, larger);
    items = larger;
  }
  items[count] = {name, kNoData};
  return items[count++];
}

void NamedValues::reserve(Arena& arena, std::uint32_t values) {
  items = arena.makeArray<NamedValue>(values);
  capacity = values;
}

void ListBody::append(const CMPIData& data) {
  if (count == capacity) {
    capacity = std::max<std::uint32_t>(16, capacity * 2);
    CMPIData* const larger = keep->makeArray<CMPIData>(capacity);
    std::copy_n(items, count, larger);
    items = larger;
  }
  items[count++] = data;
}

CMPIStatus statusOf(CMPIrc code, std::string_view message) {
  Arena* const arena = message.empty() ? nullptr : currentArena();
  return {code, arena ? makeString(*arena, message) : nullptr};
}

void put(CMPIStatus* status, CMPIrc code, std::string_view message) {
  if (status) *status = statusOf(code, message);
}

String* makeString(Arena& arena, std::string_view text) {
  return makeHandle<String>(arena, arena.make<StringBody>(arena.copy(text)));
}

DateTime* makeDateTime(Arena& arena, const DateTimeBody& value) {
  return makeHandle<DateTime>(arena, arena.make<DateTimeBody>(value));
}

Array* makeArray(Arena& arena, CMPICount count, CMPIType elementType) {
  auto* body = arena.make<ArrayBody>(elementType, count, arena.makeArray<CMPIData>(count));
  std::fill_n(body->elements, count, nullOf(elementType));
  return makeHandle<Array>(arena, body);
}

ObjectPath* makePath(Arena& arena, std::string_view nameSpace, std::string_view className) {
  auto* body = arena.make<PathBody>();
  body->nameSpace = arena.copy(nameSpace);
  body->className = arena.copy(className);
  body->host = arena.copy({});
  return makeHandle<ObjectPath>(arena, body);
}

Args* makeArgs(Arena& arena) {
  return makeHandle<Args>(arena, arena.make<ValuesBody>());
}

Context* makeContext(Arena& arena) {
  return makeHandle<Context>(arena, arena.make<ValuesBody>());
}

Result* makeResult(Arena& keep) {
  auto* body = keep.make<ListBody>();
  body->keep = &keep;
  return makeHandle<Result>(keep, body);
}

Enumeration* makeEnumeration(Arena& arena, const CMPIData* items, std::uint32_t count) {
  auto* body = arena.make<ListBody>();
  body->items = arena.makeArray<CMPIData>(count);
  body->count = body->capacity = count;
  for (std::uint32_t i = 0; i < count; ++i) body->items[i] = copyData(arena, items[i]);
  return makeHandle<Enumeration>(arena, body);
}

CMPIData dataOf(CMPIType type, const CMPIValue& value) {
  return {type, CMPI_goodValue, value};
}

CMPIData nullOf(CMPIType type) {
  return {type, CMPI_nullValue, {}};
}

CMPIData dataOf(String* text) {
  CMPIValue value{};
  value.string = text;
  return dataOf(CMPI_string, value);
}

CMPIData dataOf(ObjectPath* path) {
  CMPIValue value{};
  value.ref = path;
  return dataOf(CMPI_ref, value);
}

CMPIData dataOf(Instance* instance) {
  CMPIValue value{};
  value.inst = instance;
  return dataOf(CMPI_instance, value);
}

CMPIData dataOf(DateTime* dateTime) {
  CMPIValue value{};
  value.dateTime = dateTime;
  return dataOf(CMPI_dateTime, value);
}

CMPIData dataOf(Array* array) {
  CMPIValue value{};
  value.array = array;
  return dataOf(arrayOf(array->body().elementType), value);
}

std::string_view textOf(const CMPIString* string) {
  const String* const own = as<String>(string);
  return own ? own->body().text : std::string_view();
}

std::uint64_t unsignedOf(const CMPIData& data) {
  switch (data.type) {
    case CMPI_uint8:
      return data.value.uint8;
    case CMPI_uint16:
      return data.value.uint16;
    case CMPI_uint32:
      return data.value.uint32;
    default:
      return data.value.uint64;
  }
}

std::int64_t signedOf(const CMPIData& data) {
  switch (data.type) {
    case CMPI_sint8:
      return data.value.sint8;
    case CMPI_sint16:
      return data.value.sint16;
    case CMPI_sint32:
      return data.value.sint32;
    case CMPI_sint64:
      return data.value.sint64;
    default:
      return static_cast<std::int64_t>(unsignedOf(data));
  }
}

std::string utf8Of(CMPIChar16 character) {
  std::string out;
  appendUtf8(out, character);
  return out;
}

CMPIData valueAt(const NamedValues& values, CMPICount index, CMPIString** name, CMPIStatus* status) {
  if (index >= values.count) {
    put(status, CMPI_RC_ERR_NOT_FOUND);
    return {CMPI_null, CMPI_notFound, {}};
  }
  const NamedValue& found = values.items[index];
  if (name) {
    Arena* const arena = currentArena();
    *name = arena ? makeString(*arena, found.name) : nullptr;
  }
  put(status, CMPI_RC_OK);
  return found.data;
}

CMPIData valueNamed(const NamedValues& values, const char* name, CMPIrc missing, CMPIStatus* status) {
  const NamedValue* const found = name ? values.find(name) : nullptr;
  put(status, found ? CMPI_RC_OK : missing);
  return found ? found->data : CMPIData{CMPI_null, CMPI_notFound, {}};
}

}  // namespace ZebManager
