#include "cimxml/ValueWriter.h"

#include <array>
#include <charconv>
#include <cmath>
#include <utility>

#include "broker/HostName.h"
#include "cimxml/QualifierWriter.h"
#include "cimxml/XmlText.h"
#include "values/DateTimeText.h"
#include "values/Values.h"

namespace ZebManager {
namespace {

template <class Number>
void appendNumber(std::string& out, Number number) {
  std::array<char, 40> digits;
  out.append(digits.begin(), std::to_chars(digits.begin(), digits.end(), number).ptr);
}

template <class Real>
void appendReal(std::string& out, Real number) {
  if (std::isnan(number)) {
    out += "NaN";
  } else if (std::isinf(number)) {
    out += number < 0 ? "-INF" : "INF";
  } else {
    appendNumber(out, number);
  }
}

/// A value that is no array, no reference and not null.
void appendText(std::string& out, const CMPIData& data) {
  if (isInteger(data.type)) {
    return isSigned(data.type) ? appendNumber(out, signedOf(data)) : appendNumber(out, unsignedOf(data));
  }
  switch (data.type) {
    case CMPI_boolean:
      out += data.value.boolean ? "TRUE" : "FALSE";
      return;
    case CMPI_real32:
      return appendReal(out, data.value.real32);
    case CMPI_real64:
      return appendReal(out, data.value.real64);
    case CMPI_char16:
      return appendEscaped(out, utf8Of(data.value.char16));
    case CMPI_dateTime:
      out += formatDateTime(as<DateTime>(data.value.dateTime)->body());
      return;
    case CMPI_instance: {
      std::string element;
      appendInstance(element, as<Instance>(data.value.inst)->body());
      return appendEscaped(out, element);
    }
    default:
      return appendEscaped(out, textOf(data.value.string));
  }
}

void appendReference(std::string& out, const CMPIData& data) {
  out += "<VALUE.REFERENCE>";
  appendInstancePath(out, as<ObjectPath>(data.value.ref)->body());
  out += "</VALUE.REFERENCE>";
}

void appendScalar(std::string& out, const CMPIData& data) {
  if (data.type == CMPI_ref) return appendReference(out, data);
  out += "<VALUE>";
  appendText(out, data);
  out += "</VALUE>";
}

void appendArray(std::string& out, const ArrayBody& array) {
  const std::string_view element = array.elementType == CMPI_ref ? "VALUE.REFARRAY" : "VALUE.ARRAY";
  out.append("<").append(element).append(">");
  for (CMPICount i = 0; i < array.count; ++i) {
    if (isNull(array.elements[i])) {
      out += "<VALUE.NULL/>";
    } else {
      appendScalar(out, array.elements[i]);
    }
  }
  out.append("</").append(element).append(">");
}

void appendKeyValue(std::string& out, const CMPIData& data) {
  if (data.type == CMPI_ref) return appendReference(out, data);
  const bool number = isInteger(data.type) || data.type == CMPI_real32 || data.type == CMPI_real64;
  const std::string_view kind = data.type == CMPI_boolean ? "boolean" : number ? "numeric" : "string";
  out += "<KEYVALUE";
  appendAttribute(out, "VALUETYPE", kind);
  appendAttribute(out, "TYPE", xmlTypeName(data.type));
  out += ">";
  if (!isNull(data)) appendText(out, data);
  out += "</KEYVALUE>";
}

void appendNameSpace(std::string& out, std::string_view host, std::string_view nameSpace) {
  out += "<NAMESPACEPATH><HOST>";
  appendEscaped(out, host.empty() ? std::string_view(hostName()) : host);
  out += "</HOST>";
  appendLocalNameSpace(out, nameSpace);
  out += "</NAMESPACEPATH>";
}

bool isWanted(const InstanceView& view, std::string_view name) {
  if (view.only && !view.only->property(name)) return false;
  if (!view.properties) return true;
  for (PropertyList wanted = view.properties; *wanted; ++wanted) {
    if (sameName(*wanted, name)) return true;
  }
  return false;
}

std::string_view propertyElement(CMPIType type) {
  return type == CMPI_ref ? "PROPERTY.REFERENCE" : isArray(type) ? "PROPERTY.ARRAY" : "PROPERTY";
}

/// The start tag, and the qualifiers behind it.
void appendPropertyStart(std::string& out, const ClassDef& classDef, const NamedValue& property,
                         const InstanceView& view) {
  const CMPIType type = elementType(property.data.type);
  const bool reference = property.data.type == CMPI_ref;
  const bool declared = reference || view.classOrigin || view.qualifiers;
  const PropertyDef* const def = declared ? classDef.property(property.name) : nullptr;
  out.append("<").append(propertyElement(property.data.type));
  appendAttribute(out, "NAME", property.name);
  if (!reference) appendAttribute(out, "TYPE", xmlTypeName(type));
  if (reference && def) appendAttribute(out, "REFERENCECLASS", def->referenceClass);
  if (view.classOrigin && def && def->origin) appendAttribute(out, "CLASSORIGIN", def->origin->name);
  if (type == CMPI_instance) appendAttribute(out, "EmbeddedObject", "instance");
  out += ">";
  if (view.qualifiers && def) appendQualifiers(out, *def, true);
}

void appendPropertyRest(std::string& out, const CMPIData& data) {
  appendValue(out, data);
  out.append("</").append(propertyElement(data.type)).append(">");
}

/// `appendStart`: called with each property that is written, for its start tag.
template <class AppendStart>
void appendInstanceBy(const AppendStart& appendStart, std::string& out, const InstanceBody& instance,
                      const InstanceView& view) {
  out += "<INSTANCE";
  appendAttribute(out, "CLASSNAME", instance.classDef->name);
  out += ">";
  if (view.qualifiers) appendQualifiers(out, *instance.classDef);
  for (const NamedValue& property : instance.properties) {
    if (!isWanted(view, property.name)) continue;
    appendStart(property);
    appendPropertyRest(out, property.data);
  }
  out += "</INSTANCE>";
}

}  // namespace

std::string_view xmlTypeName(CMPIType type) {
  return elementType(type) == CMPI_instance ? "string" : elementTypeName(type);
}

void appendLocalNameSpace(std::string& out, std::string_view nameSpace) {
  out += "<LOCALNAMESPACEPATH>";
  while (!nameSpace.empty()) {
    const std::size_t slash = std::min(nameSpace.find('/'), nameSpace.size());
    out += "<NAMESPACE";
    appendAttribute(out, "NAME", nameSpace.substr(0, slash));
    out += "/>";
    nameSpace.remove_prefix(std::min(slash + 1, nameSpace.size()));
  }
  out += "</LOCALNAMESPACEPATH>";
}

void appendInstanceName(std::string& out, const PathBody& path) {
  out += "<INSTANCENAME";
  appendAttribute(out, "CLASSNAME", path.className);
  out += ">";
  for (const NamedValue& key : path.keys) {
    out += "<KEYBINDING";
    appendAttribute(out, "NAME", key.name);
    out += ">";
    appendKeyValue(out, key.data);
    out += "</KEYBINDING>";
  }
  out += "</INSTANCENAME>";
}

void appendInstancePath(std::string& out, const PathBody& path) {
  out += "<INSTANCEPATH>";
  appendNameSpace(out, path.host, path.nameSpace);
  appendInstanceName(out, path);
  out += "</INSTANCEPATH>";
}

void appendClassPath(std::string& out, std::string_view nameSpace, std::string_view className) {
  out += "<CLASSPATH>";
  appendNameSpace(out, {}, nameSpace);
  out += "<CLASSNAME";
  appendAttribute(out, "NAME", className);
  out += "/></CLASSPATH>";
}

void appendInstance(std::string& out, const InstanceBody& instance, const InstanceView& view) {
  const auto start = [&](const NamedValue& property) {
    appendPropertyStart(out, *instance.classDef, property, view);
  };
  appendInstanceBy(start, out, instance, view);
}

void InstanceWriter::append(std::string& out, const InstanceBody& instance) {
  if (std::exchange(_class, instance.classDef) != instance.classDef) _starts.clear();
  std::size_t place = 0;
  appendInstanceBy([&](const NamedValue& property) { out += start(place++, property); }, out, instance,
                   _view);
}

const std::string& InstanceWriter::start(std::size_t place, const NamedValue& property) {
  if (place == _starts.size()) _starts.emplace_back();
  Start& start = _starts[place];
  if (start.name != property.name || start.type != property.data.type) {
    start = {std::string(property.name), property.data.type, {}};
    appendPropertyStart(start.tag, *_class, property, _view);
  }
  return start.tag;
}

void appendValue(std::string& out, const CMPIData& data) {
  if (isNull(data)) return;
  if (isArray(data.type)) return appendArray(out, as<Array>(data.value.array)->body());
  appendScalar(out, data);
}

void appendParameter(std::string& out, std::string_view element, std::string_view name,
                     const CMPIData& data) {
  out.append("<").append(element);
  if (!name.empty()) appendAttribute(out, "NAME", name);
  appendAttribute(out, "PARAMTYPE", xmlTypeName(data.type));
  if (elementType(data.type) == CMPI_instance) appendAttribute(out, "EmbeddedObject", "instance");
  out += ">";
  appendValue(out, data);
  out.append("</").append(element).append(">");
}

}  // namespace ZebManager
