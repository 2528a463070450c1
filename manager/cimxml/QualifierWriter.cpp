#include "cimxml/QualifierWriter.h"

#include <array>
#include <utility>
#include <vector>

#include "cimxml/XmlText.h"

namespace ZebManager {
namespace {

/// A qualifier is told with what makes it unlike others: the standard's own defaults are left out.
void appendFlavours(std::string& out, const QualifierType& type) {
  if (!type.overridable) appendAttribute(out, "OVERRIDABLE", "false");
  if (!type.toSubclass) appendAttribute(out, "TOSUBCLASS", "false");
  if (type.translatable) appendAttribute(out, "TRANSLATABLE", "true");
}

std::string_view typeOf(const QualifierType& type) {
  return type.shape == QualifierShape::Flag ? "boolean" : "string";
}

/// The qualifiers of one element.
class Writer {
 public:
  Writer(std::string& out, bool local) : _out(out), _local(local) {}

  void flag(std::string_view name, bool present) {
    if (!present) return;
    open(name);
    appendTextValue(_out, "TRUE");
    close();
  }

  void text(std::string_view name, const std::string& text) {
    if (text.empty()) return;
    open(name);
    appendTextValue(_out, text);
    close();
  }

  void all(const ElementDef& element) {
    text("ArrayType", element.arrayType);
    text("Description", element.description);
    text("Units", element.units);
    if (element.values.empty()) return;
    list("ValueMap", element.values, &MappedValue::number);
    list("Values", element.values, &MappedValue::text);
  }

 private:
  void open(std::string_view name) {
    const QualifierType& type = *findQualifierType(name);
    _out += "<QUALIFIER";
    appendAttribute(_out, "NAME", type.name);
    appendAttribute(_out, "TYPE", typeOf(type));
    if (!_local) appendAttribute(_out, "PROPAGATED", "true");
    appendFlavours(_out, type);
    _out += ">";
  }
  void close() { _out += "</QUALIFIER>"; }

  void list(std::string_view name, const std::vector<MappedValue>& values, std::string MappedValue::*member) {
    open(name);
    _out += "<VALUE.ARRAY>";
    for (const MappedValue& value : values) appendTextValue(_out, value.*member);
    _out += "</VALUE.ARRAY>";
    close();
  }

  std::string& _out;
  const bool _local;
};

constexpr std::array<std::pair<unsigned, std::string_view>, 7> kScopes = {{{kOnClass, "CLASS"},
                                                                           {kOnAssociation, "ASSOCIATION"},
                                                                           {kOnReference, "REFERENCE"},
                                                                           {kOnProperty, "PROPERTY"},
                                                                           {kOnMethod, "METHOD"},
                                                                           {kOnParameter, "PARAMETER"},
                                                                           {kOnIndication, "INDICATION"}}};

}  // namespace

void appendQualifiers(std::string& out, const ClassDef& classDef) {
  Writer writer(out, true);
  writer.flag("Abstract", classDef.abstract);
  writer.flag("Association", classDef.association);
  writer.flag("Indication", classDef.indication);
  writer.text("Description", classDef.description);
  writer.text("Version", classDef.version);
}

void appendQualifiers(std::string& out, const PropertyDef& property, bool local) {
  Writer writer(out, local);
  writer.flag("Key", property.key);
  writer.flag("Required", property.required);
  writer.flag("Write", property.writable);
  if (local && property.overrides) writer.text("Override", property.name);
  writer.all(property);
}

void appendQualifiers(std::string& out, const MethodDef& method, bool local) {
  Writer writer(out, local);
  writer.flag("Static", method.isStatic);
  if (local && method.overrides) writer.text("Override", method.name);
  writer.all(method);
}

void appendQualifiers(std::string& out, const ParameterDef& parameter, bool local) {
  Writer writer(out, local);
  writer.flag("In", parameter.in);
  writer.flag("Out", parameter.out);
  writer.flag("Required", parameter.required);
  writer.all(parameter);
}

void appendDeclaration(std::string& out, const QualifierType& type) {
  out += "<QUALIFIER.DECLARATION";
  appendAttribute(out, "NAME", type.name);
  appendAttribute(out, "TYPE", typeOf(type));
  appendAttribute(out, "ISARRAY", type.shape == QualifierShape::List ? "true" : "false");
  appendFlavours(out, type);
  out += "><SCOPE";
  for (const auto& [scope, name] : kScopes) {
    if (type.scopes & scope) appendAttribute(out, name, "true");
  }
  out += "/>";
  if (type.shape == QualifierShape::Flag) appendTextValue(out, type.byDefault ? "TRUE" : "FALSE");
  out += "</QUALIFIER.DECLARATION>";
}

}  // namespace ZebManager
