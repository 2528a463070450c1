#include "model/RouteTables.h"

namespace ZEB::ethernet {

RouteTables::Use RouteTables::useOf(const RouteFacts& route) const {
  const IpFamily family = route.gateway.family;
  if (_rules.contains({family, route.table})) return Use::Named;
  if (_rules.contains({family, RuleFacts::kTableOfVrf})) return Use::OfAVrf;
  const auto first = _rules.lower_bound({family, 0});
  const bool known = first != _rules.end() && first->family == family;
  return known ? Use::None : Use::Named;
}

}  // namespace ZEB::ethernet
