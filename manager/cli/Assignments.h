// Values that the command line gives to properties and parameters.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "values/Objects.h"

namespace ZebManager {

struct Assignment {
  std::string name;
  std::string value;
};

/// Splits Name=Value at the first '='. Throws ManagerError.
Assignment splitAssignment(const std::string& text);

/// A value of the element's type. Elements of arrays stand between commas; a backslash takes away the meaning
/// of the character behind it. Throws ManagerError that names the element and what was expected.
CMPIData parseValue(Arena& arena, const ClassRepository& repository, std::string_view nameSpace,
                    const ElementDef& element, const std::string& text);

}  // namespace ZebManager
