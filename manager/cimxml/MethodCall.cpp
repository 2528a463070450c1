#include "cimxml/MethodCall.h"

#include "cimxml/Document.h"
#include "cimxml/ValueWriter.h"
#include "values/Values.h"

namespace ZebManager {
namespace {

ObjectPath& targetOf(pugi::xml_node object, const ValueReader& reader, std::string_view nameSpace) {
  if (!isNamed(object, "LOCALCLASSPATH")) return *reader.path(object);
  const char* const name = object.child("CLASSNAME").attribute("NAME").value();
  return *makePath(reader.arena(), nameSpace, reader.classNamed(name).name);
}

const MethodDef& methodOf(const ClassDef& classDef, const std::string& name) {
  if (const MethodDef* const found = classDef.method(name)) return *found;
  throw CimError(CMPI_RC_ERR_METHOD_NOT_FOUND, classDef.name + " has no method '" + name + "'");
}

void takeArguments(pugi::xml_node call, const MethodDef& method, const ValueReader& reader, const Args& in) {
  for (const pugi::xml_node value : call.children("PARAMVALUE")) {
    const std::string name = value.attribute("NAME").value();
    const ParameterDef* const parameter = method.parameter(name);
    if (!parameter || !parameter->in) {
      throw CimError(CMPI_RC_ERR_INVALID_PARAMETER, method.name + " takes no argument '" + name + "'");
    }
    if (in.body().values.find(name)) {
      throw CimError(CMPI_RC_ERR_INVALID_PARAMETER, "argument '" + name + "' is given twice");
    }
    const CMPIData data = reader.value(value, parameter->type, {"argument ", name});
    in.ft->addArg(&in, parameter->name.c_str(), isNull(data) ? nullptr : &data.value, data.type);
  }
}

}  // namespace

void performMethod(pugi::xml_node call, Namespace& target, const ValueReader& reader,
                   std::string_view nameSpace, std::string& out) {
  const ObjectPath& path = targetOf(firstElement(call), reader, nameSpace);
  const MethodDef& method =
      methodOf(reader.classNamed(path.body().className), call.attribute("NAME").value());
  const Args& in = *makeArgs(reader.arena());
  Args& results = *makeArgs(reader.arena());
  takeArguments(call, method, reader, in);
  const Reply reply = target.invokeMethod(path, method.name.c_str(), in, results).orThrow();
  if (!reply.items().empty()) appendParameter(out, "RETURNVALUE", {}, reply.items().front());
  for (const NamedValue& result : results.body().values) {
    appendParameter(out, "PARAMVALUE", result.name, result.data);
  }
}

}  // namespace ZebManager
