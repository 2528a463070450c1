#pragma once

#include <exception>
#include <string>

#include "cmpi/cmpi.h"

namespace CmpiCpp {

/// How a CIM operation failed: thrown by providers, turned into a CMPI status where the call leaves the
/// library.
class CmpiStatus : public std::exception {
 public:
  explicit CmpiStatus(CMPIrc rc) : _rc(rc), _text(defaultText(rc)) {}
  CmpiStatus(CMPIrc rc, std::string message)
      : _rc(rc), _message(std::move(message)), _text(_message.empty() ? defaultText(rc) : _message) {}

  CMPIrc rc() const { return _rc; }
  /// What goes to the client beside the code; may be empty.
  const std::string& msg() const { return _message; }
  /// The message, or the code's own text where there is none.
  const char* what() const noexcept override { return _text.c_str(); }

 private:
  static std::string defaultText(CMPIrc rc);

  CMPIrc _rc;
  std::string _message;
  std::string _text;
};

}  // namespace CmpiCpp
