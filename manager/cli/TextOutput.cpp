#include "cli/TextOutput.h"

#include <algorithm>

#include "cli/InterfaceNames.h"
#include "cli/Printable.h"
#include "cli/Words.h"
#include "values/DateTimeText.h"
#include "values/ObjectPathText.h"
#include "values/Values.h"

namespace ZebManager {
namespace {

std::string heading(const std::string& text, bool colour) {
  return colour ? "\x1b[1m" + text + "\x1b[0m" : text;
}

std::string scalarText(const CMPIData& data, const ElementDef* element) {
  if (isNull(data)) return "null";
  switch (data.type) {
    case CMPI_string:
      return printable(textOf(data.value.string));
    case CMPI_dateTime:
      return formatDateTime(as<DateTime>(data.value.dateTime)->body());
    case CMPI_ref:
      return printable(formatPath(as<ObjectPath>(data.value.ref)->body()));
    case CMPI_instance:
      return printable(formatPath(*as<Instance>(data.value.inst)->body().path));
    default:
      break;
  }
  const std::string text = formatKeyValue(data);
  const auto meaning = element && integerRange(data.type) ? element->valueText(signedOf(data)) : std::nullopt;
  return meaning ? text + " (" + std::string(*meaning) + ")" : text;
}

std::string valueText(const CMPIData& data, const ElementDef* element) {
  if (isNull(data) || !isArray(data.type)) return scalarText(data, element);
  std::string list;
  const ArrayBody& array = as<Array>(data.value.array)->body();
  for (CMPICount i = 0; i < array.count; ++i) {
    list += (i == 0 ? "" : ", ") + scalarText(array.elements[i], element);
  }
  return "[" + list + "]";
}

void appendLine(std::string& out, const std::string& name, std::size_t width, const std::string& value) {
  std::string line = "  " + padded(name, width) + "  " + value;
  line.erase(line.find_last_not_of(' ') + 1);
  out += line + "\n";
}

/// The path, and what the operating system calls the thing.
std::string pathText(const PathBody& path, const InterfaceNames* names) {
  const std::string text = formatPath(path);
  const std::string name = names ? names->nameOf(text) : "";
  return printable(name.empty() ? text : text + "  " + name);
}

void appendInstance(std::string& out, const Instance& instance, bool colour, const InterfaceNames* names) {
  const InstanceBody& body = instance.body();
  std::size_t width = 0;
  for (const NamedValue& value : body.properties) width = std::max(width, value.name.size());
  if (!out.empty()) out += "\n";
  out += heading(pathText(*body.path, names), colour) + "\n";
  for (const NamedValue& value : body.properties) {
    const PropertyDef* const property = body.classDef->property(value.name);
    appendLine(out, std::string(value.name), width, valueText(value.data, property));
  }
}

}  // namespace

std::string textOfItems(std::span<const CMPIData> items, bool colour, const InterfaceNames* names) {
  std::string out;
  for (const CMPIData& item : items) {
    if (item.type == CMPI_instance) {
      appendInstance(out, *as<Instance>(item.value.inst), colour, names);
    } else if (item.type == CMPI_ref) {
      out += pathText(as<ObjectPath>(item.value.ref)->body(), names) + "\n";
    } else {
      out += scalarText(item, nullptr) + "\n";
    }
  }
  return out;
}

std::string textOfValue(const CMPIData& data) {
  return valueText(data, nullptr);
}

std::string textOfClasses(const std::vector<const ClassDef*>& classes, bool colour) {
  std::size_t width = 0;
  for (const ClassDef* def : classes) width = std::max(width, def->name.size());
  std::string out;
  for (const ClassDef* def : classes) {
    const char* const kind = def->association ? "association" : def->indication ? "indication" : "class";
    out += heading(padded(def->name, width), colour) + "  " + padded(kind, 11) + "  " +
           (def->superclass ? def->superclass->name : "") + "\n";
  }
  return out;
}

std::string textOfMethod(const MethodDef& method, const CMPIData& returned, const NamedValues& arguments) {
  std::size_t width = method.name.size();
  for (const NamedValue& value : arguments) width = std::max(width, value.name.size());
  std::string out;
  appendLine(out, method.name, width, valueText(returned, &method));
  for (const NamedValue& value : arguments) {
    appendLine(out, std::string(value.name), width, valueText(value.data, method.parameter(value.name)));
  }
  return out;
}

}  // namespace ZebManager
