#include "cmpicpp/CmpiContext.h"

#include "BrokerValues.h"

namespace CmpiCpp {

std::optional<std::string> CmpiContext::getText(const char* name) const {
  if (!_context || !_context->ft || !_context->ft->getEntry) return std::nullopt;
  CMPIStatus status{CMPI_RC_OK, nullptr};
  const CMPIData entry = _context->ft->getEntry(_context, name, &status);
  if (status.rc != CMPI_RC_OK || entry.state != CMPI_goodValue) return std::nullopt;
  if (entry.type == CMPI_chars && entry.value.chars) return entry.value.chars;
  if (entry.type == CMPI_string && entry.value.string) {
    const char* text = entry.value.string->ft->getCharPtr(entry.value.string, nullptr);
    if (text) return text;
  }
  return std::nullopt;
}

}  // namespace CmpiCpp
