#include "cimxml/PropertyNames.h"

#include <algorithm>
#include <set>
#include <unordered_set>

#include "schema/Caseless.h"

namespace ZebManager {

/// What clients choose is only looked up, so that no choice of names makes a look-up slow.
std::vector<std::string> thoseOf(const std::vector<const ClassDef*>& classes,
                                 const std::vector<std::string>& names) {
  std::unordered_set<std::string_view, NameHash, NameEqual> left;
  for (const ClassDef* const classDef : classes) {
    for (const PropertyDef& property : classDef->properties) left.insert(property.name);
  }
  std::vector<std::string> found;
  for (const std::string& name : names) {
    if (const auto known = left.find(name); known != left.end()) {
      left.erase(known);
      found.push_back(name);
    }
  }
  return found;
}

std::vector<std::string> distinct(const std::vector<std::string>& names) {
  std::set<std::string> seen;
  std::vector<std::string> found;
  for (const std::string& name : names) {
    std::string folded = name;
    std::transform(folded.begin(), folded.end(), folded.begin(), foldCase);
    if (seen.insert(std::move(folded)).second) found.push_back(name);
  }
  return found;
}

std::vector<const ClassDef*> classesBelow(const ClassRepository& repository, const std::string& className) {
  if (const ClassDef* const root = repository.find(className)) return repository.instantiable(*root);
  std::vector<const ClassDef*> all;
  for (const auto& classDef : repository.classes()) all.push_back(classDef.get());
  return all;
}

}  // namespace ZebManager
