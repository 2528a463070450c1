#include "cimxml/ClassWriter.h"
#include "cimxml/Document.h"
#include "cimxml/Operations.h"
#include "cimxml/PropertyNames.h"
#include "cimxml/ValueWriter.h"

namespace ZebManager {
namespace {

/// What answers when an instance is asked, with and without the properties.
using InstancesAt = Reply (Namespace::*)(const CMPIObjectPath&, const AssociationFilter&, PropertyList);
using NamesAt = Reply (Namespace::*)(const CMPIObjectPath&, const AssociationFilter&);

bool appendClasses(const Request& request, ClassEnd end, const std::string& className, bool namesOnly,
                   std::string& out) {
  const ClassDef& asked = request.reader.classNamed(className);
  const ClassView view = classView(request.parameters, request.repository(), false);
  for (const ClassDef* found : classesAt(end, request.repository(), asked, associationFilterOf(request))) {
    out += namesOnly ? "<OBJECTPATH>" : "<VALUE.OBJECTWITHPATH>";
    appendClassPath(out, request.nameSpace, found->name);
    if (!namesOnly) appendClass(out, *found, view);
    out += namesOnly ? "</OBJECTPATH>" : "</VALUE.OBJECTWITHPATH>";
  }
  return true;
}

bool appendObjects(const Request& request, ClassEnd end, InstancesAt ask, std::string& out) {
  const pugi::xml_node object = request.parameters.required("ObjectName");
  if (isNamed(object, "CLASSNAME")) {
    return appendClasses(request, end, object.attribute("NAME").value(), false, out);
  }
  const AssociationFilter filter = associationFilterOf(request);
  const auto given = request.parameters.names("PropertyList");
  const NameList some(thoseOf(classesBelow(request.repository(), filter.resultClass),
                              given.value_or(std::vector<std::string>())));
  InstanceView view;
  view.properties = given ? some.get() : nullptr;
  view.classOrigin = request.parameters.flag("IncludeClassOrigin", false);
  view.qualifiers = request.parameters.flag("IncludeQualifiers", false);
  const ObjectPath& path = *request.reader.path(object);
  const Reply reply = (request.target.*ask)(path, filter, view.properties).orThrow();
  for (const CMPIData& item : reply.items()) {
    const Instance* const instance = as<Instance>(item.value.inst);
    if (!instance) continue;
    out += "<VALUE.OBJECTWITHPATH>";
    appendInstancePath(out, *instance->body().path);
    appendInstance(out, instance->body(), view);
    out += "</VALUE.OBJECTWITHPATH>";
  }
  return true;
}

bool appendNames(const Request& request, ClassEnd end, NamesAt ask, std::string& out) {
  const pugi::xml_node object = request.parameters.required("ObjectName");
  if (isNamed(object, "CLASSNAME")) {
    return appendClasses(request, end, object.attribute("NAME").value(), true, out);
  }
  const Reply reply =
      (request.target.*ask)(*request.reader.path(object), associationFilterOf(request)).orThrow();
  for (const CMPIData& item : reply.items()) {
    const ObjectPath* const path = as<ObjectPath>(item.value.ref);
    if (!path) continue;
    out += "<OBJECTPATH>";
    appendInstancePath(out, path->body());
    out += "</OBJECTPATH>";
  }
  return true;
}

}  // namespace

AssociationFilter associationFilterOf(const Request& request) {
  const Parameters& given = request.parameters;
  AssociationFilter filter{given.className("AssocClass"), given.className("ResultClass"), given.text("Role"),
                           given.text("ResultRole")};
  for (const std::string& name : {filter.associationClass, filter.resultClass}) {
    if (!name.empty() && !request.repository().find(name)) {
      throw CimError(CMPI_RC_ERR_INVALID_PARAMETER, "unknown class '" + name + "'");
    }
  }
  return filter;
}

bool associators(const Request& request, std::string& out) {
  return appendObjects(request, ClassEnd::Associators, &Namespace::associators, out);
}

bool associatorNames(const Request& request, std::string& out) {
  return appendNames(request, ClassEnd::Associators, &Namespace::associatorNames, out);
}

bool references(const Request& request, std::string& out) {
  return appendObjects(request, ClassEnd::References, &Namespace::references, out);
}

bool referenceNames(const Request& request, std::string& out) {
  return appendNames(request, ClassEnd::References, &Namespace::referenceNames, out);
}

}  // namespace ZebManager
