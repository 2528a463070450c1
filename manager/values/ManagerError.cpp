#include "values/ManagerError.h"

#include <array>

namespace ZebManager {
namespace {

constexpr std::size_t kLongest = 1000;

struct CodeRow {
  CMPIrc code;
  const char* text;
};

constexpr std::array kCodes = {
    CodeRow{CMPI_RC_ERR_FAILED, "the provider failed"},
    CodeRow{CMPI_RC_ERR_ACCESS_DENIED, "access denied"},
    CodeRow{CMPI_RC_ERR_INVALID_NAMESPACE, "invalid namespace"},
    CodeRow{CMPI_RC_ERR_INVALID_PARAMETER, "invalid parameter"},
    CodeRow{CMPI_RC_ERR_INVALID_CLASS, "invalid class"},
    CodeRow{CMPI_RC_ERR_NOT_FOUND, "no such instance"},
    CodeRow{CMPI_RC_ERR_NOT_SUPPORTED, "not supported"},
    CodeRow{CMPI_RC_ERR_ALREADY_EXISTS, "exists already"},
    CodeRow{CMPI_RC_ERR_NO_SUCH_PROPERTY, "no such property"},
    CodeRow{CMPI_RC_ERR_TYPE_MISMATCH, "type mismatch"},
    CodeRow{CMPI_RC_ERR_METHOD_NOT_AVAILABLE, "method not available"},
    CodeRow{CMPI_RC_ERR_METHOD_NOT_FOUND, "no such method"},
    CodeRow{CMPI_RC_ERR_INVALID_HANDLE, "invalid handle"},
    CodeRow{CMPI_RC_ERR_INVALID_DATA_TYPE, "invalid data type"},
    CodeRow{CMPI_RC_ERROR_SYSTEM, "system error"},
};

std::string errorText(CMPIrc code, const std::string& message) {
  return (message.empty() ? codeText(code) : message) + " (CMPI code " + std::to_string(code) + ")";
}

}  // namespace

std::string oneLine(std::string_view text) {
  std::string line(text.substr(0, kLongest));
  for (char& c : line) {
    if (static_cast<unsigned char>(c) < ' ' || c == '\x7f') c = ' ';
  }
  if (text.size() > kLongest) line += "...";
  return line;
}

std::string quotedForLog(std::string_view text) {
  constexpr std::size_t kLongestQuoted = 100;
  constexpr char kDigits[] = "0123456789abcdef";
  std::string out = "'";
  for (const char c : text.substr(0, kLongestQuoted)) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < ' ' || byte >= 0x7f || c == '\'' || c == '\\') {
      out += {'\\', 'x', kDigits[byte >> 4], kDigits[byte & 15]};
    } else {
      out += c;
    }
  }
  return out + (text.size() > kLongestQuoted ? "'..." : "'");
}

CimError::CimError(CMPIrc errorCode, const std::string& message)
    : ManagerError(errorText(errorCode, message)), code(errorCode) {}

std::string codeText(CMPIrc code) {
  for (const CodeRow& row : kCodes) {
    if (row.code == code) return row.text;
  }
  return "error";
}

}  // namespace ZebManager
