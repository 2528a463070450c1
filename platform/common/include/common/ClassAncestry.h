#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

#include "cmpicpp/CmpiName.h"

namespace ZEB {

/// Whether one class descends from another, as the object manager's schema has it; each pair is asked for
/// once.
class ClassAncestry {
 public:
  /// True also for a class itself.
  bool isA(std::string_view nameSpace, const CmpiCpp::CmpiName& className, const CmpiCpp::CmpiName& ancestor);

 private:
  using Ancestors = std::unordered_map<CmpiCpp::CmpiName, bool>;
  std::unordered_map<CmpiCpp::CmpiName, Ancestors> _known;
};

}  // namespace ZEB
