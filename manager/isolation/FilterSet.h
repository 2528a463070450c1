// What is subscribed to, as it is asked of each indication.
#pragma once

#include <string>
#include <vector>

#include "isolation/IndicationFilter.h"
#include "query/Condition.h"
#include "values/Objects.h"

namespace ZebManager {

/// Constant once made. A filter whose query cannot be read selects nothing.
class FilterSet {
 public:
  FilterSet(const std::vector<IndicationFilter>& filters, const ClassRepository& repository);

  /// Names of the filters that the indication satisfies.
  std::vector<std::string> matching(const Instance& indication) const;

 private:
  struct Row {
    std::string name;
    OwnedQuery query;
  };

  const ClassRepository& _repository;
  std::vector<Row> _rows;
};

}  // namespace ZebManager
