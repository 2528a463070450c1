// Answers as JSON for programs.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "values/Objects.h"

namespace ZebManager {

/// An array of objects with class, path and properties; paths in the list become their text.
std::string jsonOfItems(std::span<const CMPIData> items);
/// The same object of one instance, in one line without its end.
std::string jsonLineOfInstance(const Instance& instance);
std::string jsonOfClasses(const std::vector<const ClassDef*>& classes);
/// Return value and output arguments of a method.
std::string jsonOfMethod(const CMPIData& returned, const NamedValues& arguments);
/// An object that names the instance that was changed.
std::string jsonOfPath(const PathBody& path);

}  // namespace ZebManager
