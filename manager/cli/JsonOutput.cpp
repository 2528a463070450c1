#include "cli/JsonOutput.h"

#include <nlohmann/json.hpp>

#include "values/DateTimeText.h"
#include "values/ObjectPathText.h"
#include "values/Values.h"

namespace ZebManager {
namespace {

using Json = nlohmann::ordered_json;

/// One member of an object.
using Member = Json::object_t::value_type;

/// What an initializer list gives too, but through an array for each member.
template <class... Members>
Json objectOf(Members&&... members) {
  Json object = Json::object();
  auto& list = object.get_ref<Json::object_t&>();
  list.reserve(sizeof...(members));
  (list.push_back(std::forward<Members>(members)), ...);
  return object;
}

Json instanceJson(const Instance& instance);

Json scalarJson(const CMPIData& data) {
  if (isNull(data)) return nullptr;
  if (const auto range = integerRange(data.type)) {
    return range->min < 0 ? Json(signedOf(data)) : Json(unsignedOf(data));
  }
  switch (data.type) {
    case CMPI_boolean:
      return data.value.boolean != 0;
    case CMPI_real32:
      return data.value.real32;
    case CMPI_real64:
      return data.value.real64;
    case CMPI_char16:
      return utf8Of(data.value.char16);
    case CMPI_dateTime:
      return formatDateTime(as<DateTime>(data.value.dateTime)->body());
    case CMPI_ref:
      return formatPath(as<ObjectPath>(data.value.ref)->body());
    case CMPI_instance:
      return instanceJson(*as<Instance>(data.value.inst));
    default:
      return textOf(data.value.string);
  }
}

Json valueJson(const CMPIData& data) {
  if (isNull(data) || !isArray(data.type)) return scalarJson(data);
  Json list = Json::array();
  const ArrayBody& array = as<Array>(data.value.array)->body();
  for (CMPICount i = 0; i < array.count; ++i) list.push_back(scalarJson(array.elements[i]));
  return list;
}

Json namedJson(const NamedValues& values) {
  Json list = Json::array();
  for (const NamedValue& value : values) {
    list.push_back(objectOf(Member("name", value.name), Member("type", typeName(value.data.type)),
                            Member("value", valueJson(value.data))));
  }
  return list;
}

Json instanceJson(const Instance& instance) {
  const InstanceBody& body = instance.body();
  return objectOf(Member("class", body.classDef->name), Member("path", formatPath(*body.path)),
                  Member("properties", namedJson(body.properties)));
}

/// Text that is no UTF-8 is shown with replacement characters: better than no answer.
std::string text(const Json& json) {
  return json.dump(2, ' ', false, Json::error_handler_t::replace);
}

/// Appends text with its lines moved right; a line end in JSON text is never part of a value.
void appendIndented(std::string& out, std::string_view lines) {
  while (!lines.empty()) {
    const std::size_t length = std::min(lines.find('\n'), lines.size() - 1) + 1;
    out.append("  ").append(lines.substr(0, length));
    lines.remove_prefix(length);
  }
}

}  // namespace

std::string jsonOfItems(std::span<const CMPIData> items) {
  // One item at a time: the tree of a large answer would take many times the memory of its text.
  std::string out = "[";
  for (const CMPIData& item : items) {
    out += out.size() == 1 ? "\n" : ",\n";
    appendIndented(out, text(scalarJson(item)));
  }
  return out + (items.empty() ? "]\n" : "\n]\n");
}

std::string jsonLineOfInstance(const Instance& instance) {
  return instanceJson(instance).dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string jsonOfClasses(const std::vector<const ClassDef*>& classes) {
  Json list = Json::array();
  for (const ClassDef* def : classes) {
    Json keys = Json::array();
    for (const PropertyDef* key : def->keys()) keys.push_back(key->name);
    list.push_back({{"class", def->name},
                    {"superclass", def->superclass ? Json(def->superclass->name) : Json(nullptr)},
                    {"association", def->association},
                    {"indication", def->indication},
                    {"keys", keys},
                    {"description", def->description}});
  }
  return text(list) + "\n";
}

std::string jsonOfMethod(const CMPIData& returned, const NamedValues& arguments) {
  return text({{"returnValue", {{"type", typeName(returned.type)}, {"value", valueJson(returned)}}},
               {"parameters", namedJson(arguments)}}) +
         "\n";
}

std::string jsonOfPath(const PathBody& path) {
  return text({{"path", formatPath(path)}}) + "\n";
}

}  // namespace ZebManager
