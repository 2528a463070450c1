#include "cimxml/MessageNamespace.h"

#include <utility>

#include "broker/Broker.h"
#include "cimxml/AnswerReader.h"
#include "cimxml/RequestWriter.h"
#include "values/Values.h"

namespace ZebManager {
namespace {

const PathBody& bodyOf(const CMPIObjectPath& path) {
  return as<ObjectPath>(&path)->body();
}

/// An instance comes without its path: it is the one that was asked for, keys in that order.
void nameAs(const Instance& instance, const PathBody& asked) {
  const PathBody& made = *instance.body().path;
  ObjectPath& path = *makeHandle<ObjectPath>(*instance.arena, copyPath(*instance.arena, asked));
  path.body().host = made.host;
  path.body().className = made.className;
  instance.ft->setObjectPath(&instance, &path);
}

RequestWriter request(std::string_view operation) {
  return {operation, kNameSpace};
}

RequestWriter associationRequest(std::string_view operation, const CMPIObjectPath& path,
                                 const AssociationFilter& filter, PropertyList properties) {
  RequestWriter writer = request(operation);
  writer.path("ObjectName", bodyOf(path))
      .className("AssocClass", filter.associationClass)
      .className("ResultClass", filter.resultClass)
      .text("Role", filter.role)
      .text("ResultRole", filter.resultRole)
      .names("PropertyList", properties);
  return writer;
}

}  // namespace

Reply MessageNamespace::ask(const std::string& request) {
  return readAnswer(send(request), _repository, kNameSpace);
}

Reply MessageNamespace::enumerateInstances(std::string_view className, PropertyList properties) {
  return ask(request("EnumerateInstances")
                 .className("ClassName", className)
                 .names("PropertyList", properties)
                 .finish());
}

Reply MessageNamespace::enumerateInstanceNames(std::string_view className) {
  return ask(request("EnumerateInstanceNames").className("ClassName", className).finish());
}

Reply MessageNamespace::getInstance(const CMPIObjectPath& path, PropertyList properties) {
  Reply reply = ask(
      request("GetInstance").path("InstanceName", bodyOf(path)).names("PropertyList", properties).finish());
  if (!reply.items().empty()) nameAs(*as<Instance>(reply.items()[0].value.inst), bodyOf(path));
  return reply;
}

Reply MessageNamespace::createInstance(const CMPIObjectPath&, const CMPIInstance& instance) {
  return ask(request("CreateInstance").instance("NewInstance", as<Instance>(&instance)->body()).finish());
}

Reply MessageNamespace::modifyInstance(const CMPIObjectPath&, const CMPIInstance& instance,
                                       PropertyList properties) {
  return ask(request("ModifyInstance")
                 .namedInstance("ModifiedInstance", as<Instance>(&instance)->body())
                 .names("PropertyList", properties)
                 .finish());
}

Reply MessageNamespace::deleteInstance(const CMPIObjectPath& path) {
  return ask(request("DeleteInstance").path("InstanceName", bodyOf(path)).finish());
}

Reply MessageNamespace::associators(const CMPIObjectPath& path, const AssociationFilter& filter,
                                    PropertyList properties) {
  return ask(associationRequest("Associators", path, filter, properties).finish());
}

Reply MessageNamespace::associatorNames(const CMPIObjectPath& path, const AssociationFilter& filter) {
  return ask(associationRequest("AssociatorNames", path, filter, nullptr).finish());
}

Reply MessageNamespace::references(const CMPIObjectPath& path, const AssociationFilter& filter,
                                   PropertyList properties) {
  return ask(associationRequest("References", path, filter, properties).finish());
}

Reply MessageNamespace::referenceNames(const CMPIObjectPath& path, const AssociationFilter& filter) {
  return ask(associationRequest("ReferenceNames", path, filter, nullptr).finish());
}

Reply MessageNamespace::invokeMethod(const CMPIObjectPath& path, const char* method, const CMPIArgs& in,
                                     CMPIArgs& out) {
  const PathBody& target = bodyOf(path);
  const ClassDef* const classDef = _repository.find(target.className);
  const MethodDef* const def = classDef ? classDef->method(method) : nullptr;
  if (!def) return ask(methodRequest(target, method, as<Args>(&in)->body().values));
  std::string answer = send(methodRequest(target, method, as<Args>(&in)->body().values));
  return readAnswer(std::move(answer), _repository, kNameSpace, def, as<Args>(&out));
}

}  // namespace ZebManager
