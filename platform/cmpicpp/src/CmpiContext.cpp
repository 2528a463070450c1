#include "cmpicpp/CmpiContext.h"

#include "BrokerValues.h"

namespace CmpiCpp {
namespace {

/// Without a type when there is none.
CMPIData entryOf(const CMPIContext* context, const char* name) {
  constexpr CMPIData kNone{};
  if (!context || !context->ft || !context->ft->getEntry) return kNone;
  CMPIStatus status{CMPI_RC_OK, nullptr};
  const CMPIData entry = context->ft->getEntry(context, name, &status);
  return status.rc == CMPI_RC_OK && entry.state == CMPI_goodValue ? entry : kNone;
}

}  // namespace

std::optional<std::string> CmpiContext::getText(const char* name) const {
  const CMPIData entry = entryOf(_context, name);
  if (entry.type == CMPI_chars && entry.value.chars) return entry.value.chars;
  if (entry.type == CMPI_string && entry.value.string) {
    const char* text = entry.value.string->ft->getCharPtr(entry.value.string, nullptr);
    if (text) return text;
  }
  return std::nullopt;
}

std::optional<std::uint64_t> CmpiContext::getNumber(const char* name) const {
  const CMPIData entry = entryOf(_context, name);
  return entry.type == CMPI_uint64 ? std::optional(entry.value.uint64) : std::nullopt;
}

void CmpiContext::set(const char* name, const CMPIValue& value, CMPIType type) const {
  if (_context && _context->ft && _context->ft->addEntry)
    _context->ft->addEntry(_context, name, &value, type);
}

void CmpiContext::setText(const CMPIBroker* broker, const char* name, const std::string& text) const {
  if (!_context) return;
  CMPIValue value{};
  value.string = toBroker(broker, text);
  set(name, value, CMPI_string);
}

void CmpiContext::setNumber(const char* name, std::uint64_t number) const {
  CMPIValue value{};
  value.uint64 = number;
  set(name, value, CMPI_uint64);
}

}  // namespace CmpiCpp
