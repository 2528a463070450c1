#include <algorithm>

#include "cimxml/ClassWriter.h"
#include "cimxml/Operations.h"
#include "cimxml/QualifierWriter.h"
#include "cimxml/XmlText.h"

namespace ZebManager {
namespace {

void collect(const ClassDef& parent, bool deep, std::vector<const ClassDef*>& found) {
  for (const ClassDef* child : parent.subclasses) {
    found.push_back(child);
    if (deep) collect(*child, deep, found);
  }
}

/// Without a class: all of them, or those without a superclass.
std::vector<const ClassDef*> askedClasses(const Request& request) {
  const std::string name = request.parameters.className("ClassName");
  const bool deep = request.parameters.flag("DeepInheritance", false);
  std::vector<const ClassDef*> found;
  if (!name.empty()) {
    collect(request.reader.classNamed(name), deep, found);
    return found;
  }
  for (const auto& def : request.repository().classes()) {
    if (deep || !def->superclass) found.push_back(def.get());
  }
  return found;
}

bool hasRole(const PropertyDef& end, const std::string& role) {
  return role.empty() || sameName(end.name, role);
}

bool narrowsTo(const ClassDef& classDef, const std::string& wanted, const ClassRepository& repository) {
  const ClassDef* const ancestor = wanted.empty() ? nullptr : repository.find(wanted);
  return wanted.empty() || (ancestor && classDef.isA(*ancestor));
}

void add(std::vector<const ClassDef*>& found, const ClassDef* def) {
  if (def && std::find(found.begin(), found.end(), def) == found.end()) found.push_back(def);
}

}  // namespace

std::vector<const ClassDef*> classesAt(ClassEnd end, const ClassRepository& repository, const ClassDef& asked,
                                       const AssociationFilter& filter) {
  const bool associations = end == ClassEnd::References;
  std::vector<const ClassDef*> found;
  for (const auto& association : repository.classes()) {
    const std::string& wanted = associations ? filter.resultClass : filter.associationClass;
    if (!association->association || !narrowsTo(*association, wanted, repository)) continue;
    for (const PropertyDef& near : association->properties) {
      const ClassDef* const target = near.type == CMPI_ref ? repository.find(near.referenceClass) : nullptr;
      if (!target || !asked.isA(*target) || !hasRole(near, filter.role)) continue;
      if (associations) add(found, association.get());
      if (associations) continue;
      for (const PropertyDef& far : association->properties) {
        if (&far == &near || far.type != CMPI_ref || !hasRole(far, filter.resultRole)) continue;
        const ClassDef* const other = repository.find(far.referenceClass);
        if (other && narrowsTo(*other, filter.resultClass, repository)) add(found, other);
      }
    }
  }
  return found;
}

bool getClass(const Request& request, std::string& out) {
  static_cast<void>(request.parameters.required("ClassName"));
  const std::string name = request.parameters.className("ClassName");
  const ClassDef* const found = request.repository().find(name);
  if (!found) throw CimError(CMPI_RC_ERR_NOT_FOUND, "there is no class '" + name + "'");
  appendClass(out, *found, classView(request.parameters, request.repository(), true));
  return true;
}

bool enumerateClasses(const Request& request, std::string& out) {
  const ClassView view = classView(request.parameters, request.repository(), true);
  for (const ClassDef* def : askedClasses(request)) appendClass(out, *def, view);
  return true;
}

bool enumerateClassNames(const Request& request, std::string& out) {
  for (const ClassDef* def : askedClasses(request)) {
    out += "<CLASSNAME";
    appendAttribute(out, "NAME", def->name);
    out += "/>";
  }
  return true;
}

bool getQualifier(const Request& request, std::string& out) {
  static_cast<void>(request.parameters.required("QualifierName"));
  const std::string name = request.parameters.text("QualifierName");
  const QualifierType* const found = findQualifierType(name);
  if (!found) throw CimError(CMPI_RC_ERR_NOT_FOUND, "there is no qualifier '" + name + "'");
  appendDeclaration(out, *found);
  return true;
}

bool enumerateQualifiers(const Request&, std::string& out) {
  for (const QualifierType& type : qualifierTypes()) appendDeclaration(out, type);
  return true;
}

}  // namespace ZebManager
