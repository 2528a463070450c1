#include "cli/JsonOutput.h"

#include <functional>
#include <nlohmann/json.hpp>
#include <ostream>

#include "cli/JsonWriter.h"
#include "values/DateTimeText.h"
#include "values/ObjectPathText.h"
#include "values/TextRoom.h"
#include "values/Values.h"

namespace ZebManager {
namespace {

class ValueWriter {
 public:
  ValueWriter(JsonWriter& json, JsonForm form) : _json(json), _form(form) {}

  void scalar(const CMPIData& data) {
    if (isNull(data)) return _json.word("null");
    if (const auto range = integerRange(data.type)) {
      return _json.word(range->min < 0 ? std::to_string(signedOf(data)) : std::to_string(unsignedOf(data)));
    }
    switch (data.type) {
      case CMPI_boolean:
        return _json.word(data.value.boolean ? "true" : "false");
      case CMPI_real32:
        return _json.word(nlohmann::json(data.value.real32).dump());
      case CMPI_real64:
        return _json.word(nlohmann::json(data.value.real64).dump());
      case CMPI_char16:
        return _json.text(utf8Of(data.value.char16));
      case CMPI_dateTime:
        return _json.text(formatDateTime(as<DateTime>(data.value.dateTime)->body()));
      case CMPI_ref:
        return _json.text(formatPath(as<ObjectPath>(data.value.ref)->body()));
      case CMPI_instance:
        return instance(as<Instance>(data.value.inst)->body());
      default:
        return _json.text(textOf(data.value.string));
    }
  }

  void value(const CMPIData& data) {
    if (isNull(data) || !isArray(data.type)) return scalar(data);
    const ArrayBody& array = as<Array>(data.value.array)->body();
    _json.open('[');
    for (CMPICount i = 0; i < array.count; ++i) scalar(array.elements[i]);
    _json.close(']');
  }

  void typed(const CMPIData& data) {
    _json.key("type");
    _json.text(typeName(data.type));
    _json.key("value");
    value(data);
  }

  void named(const NamedValues& values) {
    const bool plain = _form == JsonForm::Plain;
    _json.open(plain ? '{' : '[');
    for (const NamedValue& one : values) {
      if (plain) {
        _json.key(one.name);
        value(one.data);
        continue;
      }
      _json.open('{');
      _json.key("name");
      _json.text(one.name);
      typed(one.data);
      _json.close('}');
    }
    _json.close(plain ? '}' : ']');
  }

  void instance(const InstanceBody& body) {
    _json.open('{');
    _json.key("class");
    _json.text(body.classDef->name);
    _json.key("path");
    _json.text(formatPath(*body.path));
    _json.key("properties");
    named(body.properties);
    _json.close('}');
  }

 private:
  JsonWriter& _json;
  const JsonForm _form;
};

}  // namespace

void writeItems(std::ostream& out, std::span<const CMPIData> items, JsonForm form) {
  // Piece by piece: the text of a large answer takes more memory than the answer.
  constexpr std::size_t kPiece = 64U << 10;
  std::string text;
  JsonWriter json(text);
  json.open('[');
  for (const CMPIData& item : items) {
    ValueWriter(json, form).scalar(item);
    if (text.size() < kPiece) continue;
    out << text;
    text.clear();
  }
  json.close(']');
  out << text << '\n';
}

std::string jsonOfInstances(JsonForm form, const std::function<void(const TakeInstance&)>& forEach) {
  std::string text;
  JsonWriter json(text);
  json.open('[');
  forEach([&](const InstanceBody& instance) {
    makeRoom(text);
    ValueWriter(json, form).instance(instance);
  });
  json.close(']');
  return text += '\n';
}

std::string jsonLineOfInstance(const Instance& instance, JsonForm form) {
  std::string out;
  JsonWriter json(out, false);
  ValueWriter(json, form).instance(instance.body());
  return out;
}

std::string jsonOfClasses(const std::vector<const ClassDef*>& classes) {
  using Json = nlohmann::ordered_json;
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
  return list.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::string jsonOfMethod(const CMPIData& returned, const NamedValues& arguments, JsonForm form) {
  std::string out;
  JsonWriter json(out);
  ValueWriter values(json, form);
  json.open('{');
  json.key("returnValue");
  if (form == JsonForm::Plain) {
    values.value(returned);
  } else {
    json.open('{');
    values.typed(returned);
    json.close('}');
  }
  json.key("parameters");
  values.named(arguments);
  json.close('}');
  return out + "\n";
}

std::string jsonOfPath(const PathBody& path) {
  std::string out;
  JsonWriter json(out);
  json.open('{');
  json.key("path");
  json.text(formatPath(path));
  json.close('}');
  return out + "\n";
}

}  // namespace ZebManager
