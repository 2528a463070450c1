// What goes wrong in the object manager, as one line that names the thing and what was expected.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "cmpi/cmpi.h"

namespace ZebManager {

/// Text on one line: line ends and other control characters become blanks, what is very long is cut.
std::string oneLine(std::string_view text);

/// Text that a client made up, for the log: in quotation marks, where it ends without doubt, and cut short.
std::string quotedForLog(std::string_view text);

class ManagerError : public std::runtime_error {
 public:
  explicit ManagerError(const std::string& text) : std::runtime_error(oneLine(text)) {}
};

/// An operation that the plug-in refused. The text is the plug-in's message, or what the code means.
class CimError : public ManagerError {
 public:
  CimError(CMPIrc errorCode, const std::string& message);
  CMPIrc code;
};

/// What a return code means, in words.
std::string codeText(CMPIrc code);

}  // namespace ZebManager
