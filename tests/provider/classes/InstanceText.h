#pragma once

#include <string>
#include <utility>
#include <vector>

#include "cmpicpp/CmpiData.h"
#include "cmpicpp/CmpiInstance.h"

namespace ZEB::test {

/// A value with its type, such as `uint16 5`, `string "eth0"`, `uint16[] {2, 6}` or `reference …`.
std::string textOf(const CmpiCpp::CmpiData& value);

/// Names and values, in order.
using Table = std::vector<std::pair<std::string, std::string>>;

Table propertiesOf(const CmpiCpp::CmpiInstance& instance);
Table keysOf(const CmpiCpp::CmpiObjectPath& path);

/// The table with other values for the names given; an empty value takes the row out.
Table edited(Table table, const Table& changes);

/// What an endpoint shows when its status is not known, and what follows from its caption.
inline const Table kUnknownStatus{{"HealthState", "uint16 0"},
                                  {"OperationalStatus", "uint16[] {0}"},
                                  {"StatusDescriptions", "string[] {\"Unknown\"}"}};
inline Table captioned(const std::string& caption) {
  return {{"Caption", "string \"" + caption + "\""}, {"ElementName", "string \"" + caption + "\""}};
}

/// The name of the kernel's host, as paths have it.
std::string hostName();

}  // namespace ZEB::test
