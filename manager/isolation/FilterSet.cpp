#include "isolation/FilterSet.h"

namespace ZebManager {

FilterSet::FilterSet(const std::vector<IndicationFilter>& filters, const ClassRepository& repository)
    : _repository(repository) {
  for (const IndicationFilter& filter : filters) {
    try {
      _rows.push_back({filter.name, OwnedQuery(filter.query)});
    } catch (const QueryError&) {
      // Whoever keeps the filters has refused such a query already.
    }
  }
}

std::vector<std::string> FilterSet::matching(const Instance& indication) const {
  std::vector<std::string> names;
  for (const Row& row : _rows) {
    if (row.query.matches(indication, _repository)) names.push_back(row.name);
  }
  return names;
}

}  // namespace ZebManager
