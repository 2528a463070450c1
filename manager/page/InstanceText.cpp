#include "page/InstanceText.h"

#include <nlohmann/json.hpp>

#include "broker/Broker.h"
#include "cli/TextOutput.h"
#include "tree/PropertyView.h"
#include "values/ObjectPathText.h"
#include "values/Values.h"

namespace ZebManager {
namespace {

using Json = nlohmann::ordered_json;

/// What the schema says of the numbers in a value, one by one; empty where it says nothing.
Json wordsOf(const PropertyDef* def, const CMPIData& data) {
  Json words = Json::array();
  if (!def || def->values.empty() || isNull(data)) return words;
  const auto add = [&](const CMPIData& one) {
    const auto text = isNull(one) ? std::nullopt : def->valueText(signedOf(one));
    words.push_back(text ? Json(*text) : Json(nullptr));
  };
  if (!isArray(data.type)) {
    if (integerRange(data.type)) add(data);
    return words;
  }
  const ArrayBody& array = as<Array>(data.value.array)->body();
  for (CMPICount i = 0; i < array.count && integerRange(array.elementType); ++i) add(array.elements[i]);
  return words;
}

Json propertiesOf(const InstanceBody& body) {
  Json properties = Json::array();
  for (const NamedValue& one : body.properties) {
    const PropertyDef* const def = body.classDef->property(one.name);
    const bool isPath = !isNull(one.data) && one.data.type == CMPI_ref;
    properties.push_back(
        {{"name", one.name},
         {"type", typeName(one.data.type)},
         {"value", isNull(one.data) ? Json(nullptr) : Json(textOfValue(one.data))},
         {"path", isPath ? Json(formatPath(as<ObjectPath>(one.data.value.ref)->body())) : Json(nullptr)},
         {"words", wordsOf(def, one.data)},
         {"key", def && def->key},
         {"writable", def && def->writable},
         {"description", def ? def->description : ""}});
  }
  return properties;
}

/// The ends of associations other than the instance itself, with what they are to it.
Json associationsOf(Namespace& model, const CMPIObjectPath& path, const std::string& own) {
  Json all = Json::array();
  const Reply reply = model.references(path, {}, nullptr);
  if (reply.code != CMPI_RC_OK) return all;
  for (const CMPIData& item : reply.items()) {
    const InstanceBody& body = as<Instance>(item.value.inst)->body();
    for (const NamedValue& end : body.properties) {
      if (isNull(end.data) || end.data.type != CMPI_ref) continue;
      const PathBody& other = as<ObjectPath>(end.data.value.ref)->body();
      const std::string text = formatPath(other);
      if (text == own) continue;
      all.push_back({{"association", body.classDef->name},
                     {"instance", formatPath(*body.path)},
                     {"role", end.name},
                     {"class", other.className},
                     {"path", text}});
    }
  }
  return all;
}

}  // namespace

std::string jsonOfInstance(Namespace& model, const std::string& path) {
  Arena arena;
  const ObjectPath& named = *parsePath(arena, model.repository(), kNameSpace, path);
  const Reply reply = model.getInstance(named, nullptr);
  if (reply.code != CMPI_RC_OK) throw CimError(reply.code, reply.message);
  if (reply.items().empty()) throw CimError(CMPI_RC_ERR_NOT_FOUND, "");
  const InstanceBody& body = as<Instance>(reply.items()[0].value.inst)->body();
  const Json json = {{"class", body.classDef->name},
                     {"description", body.classDef->description},
                     {"path", path},
                     {"properties", propertiesOf(body)},
                     {"associations", associationsOf(model, named, path)}};
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace ZebManager
