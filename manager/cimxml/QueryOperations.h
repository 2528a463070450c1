// Queries over instances.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "cimxml/Operations.h"
#include "query/Condition.h"

namespace ZebManager {

/// The query of a request, held against the classes of its namespace.
class AskedQuery {
 public:
  /// The names are those of the parameters. Throws CimError.
  AskedQuery(const Request& request, std::string_view language, std::string_view query);

  const Query& query() const { return _query->query(); }
  const OwnedQuery& owned() const { return *_query; }

 private:
  std::optional<OwnedQuery> _query;
};

/// Those that a query selects, each once; nothing for all.
std::optional<std::vector<std::string>> selectedProperties(const Query& query);

/// The class that the results of OpenQueryInstances are of, as a CLASS element, when the request asks for it.
std::string queryResultClass(const Request& request);

}  // namespace ZebManager
