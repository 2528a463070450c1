// Answers as JSON for programs.
#pragma once

#include <functional>
#include <iosfwd>
#include <span>
#include <string>
#include <vector>

#include "values/Objects.h"

namespace ZebManager {

/// How properties and arguments are written.
enum class JsonForm {
  Plain,  ///< an object of values
  Typed   ///< a list of objects with name, type and value
};

/// An array of objects with class, path and properties; paths in the list become their text.
void writeItems(std::ostream& out, std::span<const CMPIData> items, JsonForm form);
/// The same of the instances that `forEach` hands over, in one piece.
std::string jsonOfInstances(JsonForm form, const std::function<void(const TakeInstance&)>& forEach);
std::string jsonOfClasses(const std::vector<const ClassDef*>& classes);
/// The object of one instance, in one line without its end.
std::string jsonLineOfInstance(const Instance& instance, JsonForm form);
/// Return value and output arguments of a method.
std::string jsonOfMethod(const CMPIData& returned, const NamedValues& arguments, JsonForm form);
/// An object that names the instance that was changed.
std::string jsonOfPath(const PathBody& path);

}  // namespace ZebManager
