// What a client subscribed to.
#pragma once

#include <string>

namespace ZebManager {

struct IndicationFilter {
  std::string name;  ///< given back with each indication that satisfies the query
  std::string query;
  std::string queryLanguage;

  bool operator==(const IndicationFilter&) const = default;
};

}  // namespace ZebManager
