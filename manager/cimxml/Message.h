// A request as it arrived, as far as it can be read without knowing any class.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "cmpi/cmpi.h"

namespace ZebManager {

struct CimMessage {
  std::string id;
  std::string protocolVersion = "1.0";
  std::string operation;  ///< name of the intrinsic or extrinsic method
  std::string nameSpace;  ///< with single slashes; empty when the request names none
  bool intrinsic = true;
  bool writes = false;  ///< creates, changes or deletes, or calls a method
};

/// A body that is no request that can be answered with a CIM error: an HTTP status and what stands in the
/// header CIMError, which may be empty.
class MessageError : public std::runtime_error {
 public:
  MessageError(int httpStatus, std::string cimError, const std::string& text)
      : std::runtime_error(text), status(httpStatus), header(std::move(cimError)) {}
  int status;
  std::string header;
};

/// How deep elements of a request may stand in each other, and what more a server can be told to take.
inline constexpr unsigned kDeepestElement = 64;
inline constexpr unsigned kDeepestOfAll = 256;

/// Throws MessageError.
CimMessage readMessage(std::string_view body, unsigned deepest = kDeepestElement);

/// A request that `readMessage` takes, with one namespace in the place of another, wherever it is named.
/// Throws MessageError.
std::string withNameSpace(std::string_view body, std::string_view from, std::string_view to);

}  // namespace ZebManager
