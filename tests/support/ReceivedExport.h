// An export as the listener that received it reads it.
#pragma once

#include <map>
#include <string>

namespace ZebManager {

struct ReceivedExport {
  std::string className;
  /// Of an array: its values, each in a line.
  std::map<std::string, std::string> properties;

  std::string operator[](const std::string& property) const;
};

/// Of the body of a request. Throws when that is anything but one export of one indication.
ReceivedExport readExport(const std::string& body);

}  // namespace ZebManager
