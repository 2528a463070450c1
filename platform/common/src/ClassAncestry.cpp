#include "common/ClassAncestry.h"

#include "common/ZEBUtil.h"

namespace ZEB {

bool ClassAncestry::isA(std::string_view nameSpace, const CmpiCpp::CmpiName& className,
                        const CmpiCpp::CmpiName& ancestor) {
  if (className == ancestor) return true;
  Ancestors& ancestors = _known[className];
  const auto known = ancestors.find(ancestor);
  if (known != ancestors.end()) return known->second;
  // Clients may name anything: what is remembered must not grow with their inventions.
  constexpr std::size_t kMostAncestors = 256;
  if (ancestors.size() >= kMostAncestors) ancestors.clear();
  const bool isA = ZEBUtil::getBroker().classPathIsA({nameSpace, className}, ancestor);
  ancestors.emplace(ancestor, isA);
  return isA;
}

}  // namespace ZEB
