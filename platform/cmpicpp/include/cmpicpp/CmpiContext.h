#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "cmpi/cmpi.h"

namespace CmpiCpp {

/// The context of one call. A handle: valid as long as the call, and empty where the system speaks for
/// itself.
class CmpiContext {
 public:
  CmpiContext() = default;
  explicit CmpiContext(const CMPIContext* context) : _context(context) {}

  /// The object manager's own context; null for an empty one.
  const CMPIContext* get() const { return _context; }

  /// A text entry, such as the principal; nothing when there is none or its text is a null pointer, as some
  /// object managers have it.
  std::optional<std::string> getText(const char* name) const;
  /// An entry of type uint64.
  std::optional<std::uint64_t> getNumber(const char* name) const;
  /// Leaves an entry of that type for the object manager; an empty context stays empty.
  void setNumber(const char* name, std::uint64_t number) const;
  /// Puts a text into an entry, for the object manager to find there after the call.
  void setText(const CMPIBroker* broker, const char* name, const std::string& text) const;

 private:
  void set(const char* name, const CMPIValue& value, CMPIType type) const;

  const CMPIContext* _context = nullptr;
};

}  // namespace CmpiCpp
