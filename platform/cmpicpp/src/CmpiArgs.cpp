#include "cmpicpp/CmpiArgs.h"

#include <algorithm>

namespace CmpiCpp {

void CmpiArgs::setArg(CmpiName name, CmpiData value) {
  const auto there = std::find_if(_arguments.begin(), _arguments.end(),
                                  [&](const Argument& argument) { return argument.name == name; });
  if (there == _arguments.end()) {
    _arguments.push_back({std::move(name), std::move(value)});
  } else {
    there->value = std::move(value);
  }
}

const CmpiData* CmpiArgs::findArg(std::string_view name) const {
  const auto found = std::find_if(_arguments.begin(), _arguments.end(), [&](const Argument& argument) {
    return CmpiName::equal(argument.name.view(), name);
  });
  return found == _arguments.end() ? nullptr : &found->value;
}

}  // namespace CmpiCpp
