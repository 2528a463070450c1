#include "cimxml/Document.h"
#include "cimxml/Operations.h"
#include "cimxml/PropertyNames.h"
#include "cimxml/ValueWriter.h"
#include "values/TextRoom.h"
#include "values/Values.h"

namespace ZebManager {
namespace {

/// Of a request that asks for instances. LocalOnly is not looked at: instances come with what they inherit.
class Wanted {
 public:
  Wanted(const Parameters& parameters, const std::vector<const ClassDef*>& classes) {
    if (const auto given = parameters.names("PropertyList")) _names.emplace(thoseOf(classes, *given));
    view.properties = list();
    view.classOrigin = parameters.flag("IncludeClassOrigin", false);
    view.qualifiers = parameters.flag("IncludeQualifiers", false);
  }

  PropertyList list() const { return _names ? _names->get() : nullptr; }

  InstanceView view;

 private:
  std::optional<NameList> _names;
};

const Instance& onlyInstance(const Reply& reply, const std::string& what) {
  const Instance* const instance =
      reply.items().empty() ? nullptr : as<Instance>(reply.items().front().value.inst);
  if (!instance) throw CimError(CMPI_RC_ERR_NOT_FOUND, what);
  return *instance;
}

const PropertyDef& askedProperty(const Request& request, const ObjectPath& path) {
  const std::string name = request.parameters.text("PropertyName");
  const ClassDef& classDef = request.reader.classNamed(path.body().className);
  if (const PropertyDef* const found = classDef.property(name)) return *found;
  throw CimError(CMPI_RC_ERR_NO_SUCH_PROPERTY, classDef.name + " has no property '" + name + "'");
}

}  // namespace

const ClassDef& askedClass(const Request& request) {
  static_cast<void>(request.parameters.required("ClassName"));
  return request.reader.classNamed(request.parameters.className("ClassName"));
}

const ObjectPath& askedPath(const Request& request) {
  return *request.reader.path(request.parameters.required("InstanceName"));
}

bool getInstance(const Request& request, std::string& out) {
  const ObjectPath& path = askedPath(request);
  const Wanted wanted(request.parameters, {&request.reader.classNamed(path.body().className)});
  const Reply reply = request.target.getInstance(path, wanted.list()).orThrow();
  appendInstance(out, onlyInstance(reply, "").body(), wanted.view);
  return true;
}

bool enumerateInstances(const Request& request, std::string& out) {
  const ClassDef& asked = askedClass(request);
  Wanted wanted(request.parameters, classesBelow(request.repository(), asked.name));
  if (!request.parameters.flag("DeepInheritance", true)) wanted.view.only = &asked;
  InstanceWriter writer(wanted.view);
  const auto append = [&](const InstanceBody& instance) {
    makeRoom(out);
    out += "<VALUE.NAMEDINSTANCE>";
    appendInstanceName(out, *instance.path);
    writer.append(out, instance);
    out += "</VALUE.NAMEDINSTANCE>";
  };
  static_cast<void>(request.target.forEachInstance(asked.name, wanted.list(), append).orThrow());
  return true;
}

bool enumerateInstanceNames(const Request& request, std::string& out) {
  const Reply reply = request.target.enumerateInstanceNames(askedClass(request).name).orThrow();
  for (const CMPIData& item : reply.items()) {
    if (const ObjectPath* const path = as<ObjectPath>(item.value.ref)) appendInstanceName(out, path->body());
  }
  return true;
}

bool createInstance(const Request& request, std::string& out) {
  const Instance& instance = *request.reader.instance(request.parameters.required("NewInstance"), nullptr);
  ObjectPath& path = *makeHandle<ObjectPath>(request.reader.arena(), instance.body().path);
  const Reply reply = request.target.createInstance(path, instance).orThrow();
  const ObjectPath* const made =
      reply.items().empty() ? nullptr : as<ObjectPath>(reply.items().front().value.ref);
  appendInstanceName(out, made ? made->body() : path.body());
  return true;
}

bool modifyInstance(const Request& request, std::string&) {
  const auto listed = request.parameters.names("PropertyList");
  const NameList names(distinct(listed.value_or(std::vector<std::string>())));
  const pugi::xml_node named = request.parameters.required("ModifiedInstance");
  if (!isNamed(named, "VALUE.NAMEDINSTANCE")) {
    throw CimError(CMPI_RC_ERR_INVALID_PARAMETER, "an instance with its name is expected");
  }
  const pugi::xml_node name = firstElement(named);
  const ObjectPath& path = *request.reader.path(name);
  const Instance& instance = *request.reader.instance(nextElement(name), &path);
  static_cast<void>(request.target.modifyInstance(path, instance, listed ? names.get() : nullptr).orThrow());
  return false;
}

bool deleteInstance(const Request& request, std::string&) {
  static_cast<void>(request.target.deleteInstance(askedPath(request)).orThrow());
  return false;
}

bool getProperty(const Request& request, std::string& out) {
  const ObjectPath& path = askedPath(request);
  const PropertyDef& property = askedProperty(request, path);
  const NameList names({property.name});
  const Reply reply = request.target.getInstance(path, names.get()).orThrow();
  const NamedValue* const found = onlyInstance(reply, "").body().properties.find(property.name);
  if (found) appendValue(out, found->data);
  return true;
}

/// The instance with one property changed, and that one alone named: what others change meanwhile stays as it
/// is.
bool setProperty(const Request& request, std::string&) {
  const ObjectPath& path = askedPath(request);
  const PropertyDef& property = askedProperty(request, path);
  const CMPIData data =
      request.reader.value(request.parameters.holder("NewValue"), property.type, {"", property.name});
  const Reply current = request.target.getInstance(path, nullptr).orThrow();
  Instance& changed = *makeHandle<Instance>(
      request.reader.arena(), copyInstance(request.reader.arena(), onlyInstance(current, "").body()));
  changed.ft->setProperty(&changed, property.name.c_str(), isNull(data) ? nullptr : &data.value, data.type);
  static_cast<void>(request.target.modifyInstance(path, changed, NameList({property.name}).get()).orThrow());
  return false;
}

}  // namespace ZebManager
