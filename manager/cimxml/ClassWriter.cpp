#include "cimxml/ClassWriter.h"

#include <algorithm>

#include "cimxml/PropertyNames.h"
#include "cimxml/QualifierWriter.h"
#include "cimxml/ValueWriter.h"
#include "cimxml/XmlText.h"

namespace ZebManager {
namespace {

/// NAME, TYPE or REFERENCECLASS of an element whose name for one value is `kind`. Returns the element's name.
std::string openElement(std::string& out, std::string kind, const ElementDef& element) {
  if (element.type == CMPI_ref) {
    kind += ".REFERENCE";
  } else if (isArray(element.type)) {
    kind += elementType(element.type) == CMPI_ref ? ".REFARRAY" : ".ARRAY";
  }
  out.append("<").append(kind);
  appendAttribute(out, "NAME", element.name);
  if (elementType(element.type) == CMPI_ref) {
    appendAttribute(out, "REFERENCECLASS", element.referenceClass);
  } else {
    appendAttribute(out, "TYPE", xmlTypeName(element.type));
  }
  return kind;
}

void appendDefault(std::string& out, const PropertyDef& property) {
  if (isArray(property.type)) out += "<VALUE.ARRAY>";
  for (const std::string& value : *property.defaultValues) appendTextValue(out, value);
  if (isArray(property.type)) out += "</VALUE.ARRAY>";
}

void appendProperty(std::string& out, const PropertyDef& property, const ClassView& view, bool local) {
  const std::string kind = openElement(out, "PROPERTY", property);
  if (view.classOrigin) appendAttribute(out, "CLASSORIGIN", property.origin->name);
  if (!local) appendAttribute(out, "PROPAGATED", "true");
  out += ">";
  if (view.qualifiers) appendQualifiers(out, property, local);
  if (property.defaultValues && property.type != CMPI_ref) appendDefault(out, property);
  out.append("</").append(kind).append(">");
}

void appendParameterDef(std::string& out, const ParameterDef& parameter, const ClassView& view, bool local) {
  const std::string kind = openElement(out, "PARAMETER", parameter);
  out += ">";
  if (view.qualifiers) appendQualifiers(out, parameter, local);
  out.append("</").append(kind).append(">");
}

void appendMethod(std::string& out, const MethodDef& method, const ClassDef& origin, const ClassView& view,
                  bool local) {
  out += "<METHOD";
  appendAttribute(out, "NAME", method.name);
  if (method.type != CMPI_null) appendAttribute(out, "TYPE", xmlTypeName(method.type));
  if (view.classOrigin) appendAttribute(out, "CLASSORIGIN", origin.name);
  if (!local) appendAttribute(out, "PROPAGATED", "true");
  out += ">";
  if (view.qualifiers) appendQualifiers(out, method, local);
  for (const ParameterDef& parameter : method.parameters) appendParameterDef(out, parameter, view, local);
  out += "</METHOD>";
}

/// Whether the class says something of its own about what it could have inherited.
bool isLocal(const ClassDef& classDef, const PropertyDef& property) {
  if (property.origin == &classDef || !classDef.superclass) return true;
  const PropertyDef& above = *classDef.superclass->property(property.name);
  return above.description != property.description || above.defaultValues != property.defaultValues ||
         above.required != property.required || above.writable != property.writable ||
         above.values.size() != property.values.size() || above.referenceClass != property.referenceClass;
}

bool isLocal(const ClassDef& classDef, const MethodDef& method) {
  const MethodDef* const above = classDef.superclass ? classDef.superclass->method(method.name) : nullptr;
  return !above || above->description != method.description;
}

const ClassDef& originOf(const ClassDef& classDef, const MethodDef& method) {
  const ClassDef* origin = &classDef;
  while (origin->superclass && origin->superclass->method(method.name)) origin = origin->superclass;
  return *origin;
}

bool isWanted(const ClassView& view, const std::string& name) {
  return !view.properties || std::any_of(view.properties->begin(), view.properties->end(),
                                         [&](const std::string& wanted) { return sameName(wanted, name); });
}

}  // namespace

ClassView classView(const Parameters& parameters, const ClassRepository& repository, bool localOnly) {
  auto names = parameters.names("PropertyList");
  if (names) names = thoseOf(classesBelow(repository, {}), *names);
  return {parameters.flag("LocalOnly", localOnly), parameters.flag("IncludeQualifiers", localOnly),
          parameters.flag("IncludeClassOrigin", false), std::move(names)};
}

void appendClass(std::string& out, const ClassDef& classDef, const ClassView& view) {
  out += "<CLASS";
  appendAttribute(out, "NAME", classDef.name);
  if (classDef.superclass) appendAttribute(out, "SUPERCLASS", classDef.superclass->name);
  out += ">";
  if (view.qualifiers) appendQualifiers(out, classDef);
  for (const PropertyDef& property : classDef.properties) {
    const bool local = isLocal(classDef, property);
    if ((local || !view.localOnly) && isWanted(view, property.name))
      appendProperty(out, property, view, local);
  }
  for (const MethodDef& method : classDef.methods) {
    const bool local = isLocal(classDef, method);
    if (local || !view.localOnly) appendMethod(out, method, originOf(classDef, method), view, local);
  }
  out += "</CLASS>";
}

}  // namespace ZebManager
