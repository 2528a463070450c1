// Answers as text for people.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "values/Objects.h"

namespace ZebManager {

class InterfaceNames;

/// Instances with one property a line, or paths one a line, with the name of an interface beside its path.
/// Numbers that the schema explains carry their meaning. Control characters are replaced, so that no value
/// can steer the terminal.
std::string textOfItems(std::span<const CMPIData> items, bool colour, const InterfaceNames* names = nullptr);
/// Of one value, without what the schema says of it.
std::string textOfValue(const CMPIData& data);
std::string textOfClasses(const std::vector<const ClassDef*>& classes, bool colour);
std::string textOfMethod(const MethodDef& method, const CMPIData& returned, const NamedValues& arguments);

}  // namespace ZebManager
