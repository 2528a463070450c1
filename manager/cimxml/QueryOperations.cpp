#include "cimxml/QueryOperations.h"

#include "cimxml/ClassWriter.h"
#include "cimxml/PropertyNames.h"
#include "cimxml/ValueWriter.h"

namespace ZebManager {

AskedQuery::AskedQuery(const Request& request, std::string_view language, std::string_view query) {
  static_cast<void>(request.parameters.required(language));
  static_cast<void>(request.parameters.required(query));
  const std::string name = request.parameters.text(language);
  if (!isQueryLanguage(name)) {
    throw CimError(CMPI_RC_ERR_QUERY_LANGUAGE_NOT_SUPPORTED,
                   "query language '" + name + "' is not known: expected WQL or DMTF:CQL");
  }
  try {
    _query.emplace(request.parameters.text(query));
    checkQuery(_query->query(), request.repository(), Selects::Instances);
  } catch (const QueryError& error) {
    throw CimError(CMPI_RC_ERR_INVALID_QUERY, error.what());
  }
}

std::optional<std::vector<std::string>> selectedProperties(const Query& query) {
  if (query.properties.empty()) return std::nullopt;
  return distinct({query.properties.begin(), query.properties.end()});
}

std::string queryResultClass(const Request& request) {
  if (!request.parameters.flag("ReturnQueryResultClass", false)) return {};
  const AskedQuery asked(request, "FilterQueryLanguage", "FilterQuery");
  ClassView view;
  view.localOnly = false;
  view.properties = selectedProperties(asked.query());
  std::string out;
  appendClass(out, request.reader.classNamed(asked.query().className), view);
  return out;
}

bool execQuery(const Request& request, std::string& out) {
  const AskedQuery asked(request, "QueryLanguage", "Query");
  const auto selected = selectedProperties(asked.query());
  const NameList names(selected.value_or(std::vector<std::string>()));
  InstanceView view;
  view.properties = selected ? names.get() : nullptr;
  const Reply reply = request.target.enumerateInstances(asked.query().className, nullptr).orThrow();
  for (const CMPIData& item : reply.items()) {
    const Instance* const instance = as<Instance>(item.value.inst);
    if (!instance || !asked.owned().matches(*instance, request.repository())) continue;
    out += "<VALUE.OBJECT>";
    appendInstance(out, instance->body(), view);
    out += "</VALUE.OBJECT>";
  }
  return true;
}

}  // namespace ZebManager
