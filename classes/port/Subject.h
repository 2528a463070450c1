#pragma once

#include <string>

#include "classes/port/Known.h"
#include "cmpicpp/CmpiName.h"

namespace ZEB {

/// Names an instance of a class for what is remembered of it: by its interface's name and number, so that
/// neither another interface that takes the name nor another number in the model is mistaken for it. Empty
/// for a record that knows neither.
template <class Record>
std::string subjectOf(CmpiCpp::NameLiteral className, const Record& record) {
  const auto name = known(record, &Record::getOsDeviceName);
  const auto number = known(record, &Record::getInterfaceNumber);
  if (!name || !number) return {};
  return std::string(className.view()) + ":" + *name + "#" + std::to_string(*number);
}

}  // namespace ZEB
