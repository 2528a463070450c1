// The types of CIM, by the codes of the CMPI interface.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "cmpi/cmpi.h"

namespace ZebManager {

/// Limits of an integer type. `max` is unsigned so that uint64 fits.
struct IntegerRange {
  std::int64_t min;
  std::uint64_t max;
};

/// Code of a type that MOF names, without arrays and references.
std::optional<CMPIType> typeFromName(std::string_view name);

/// MOF name of a type, of its elements for an array; "reference" for a reference.
std::string_view elementTypeName(CMPIType type);
/// The same with `[]` behind it for an array.
std::string typeName(CMPIType type);

/// False for an array.
constexpr bool isInteger(CMPIType type) {
  return (type & ~0x70) == CMPI_uint8;
}
constexpr bool isSigned(CMPIType integer) {
  return integer >= CMPI_sint8;
}
static_assert(isInteger(CMPI_uint64) && isInteger(CMPI_sint64) && !isInteger(CMPI_string));

/// Nothing when the type is no integer, or an array.
std::optional<IntegerRange> integerRange(CMPIType type);

/// What an integer literal means: decimal, hexadecimal (0x), binary (…b) or octal (0…), with a sign.
struct IntegerLiteral {
  bool negative = false;
  std::uint64_t magnitude = 0;
};

std::optional<IntegerLiteral> parseInteger(std::string_view text);

constexpr CMPIType elementType(CMPIType type) {
  return static_cast<CMPIType>(type & ~CMPI_ARRAY);
}
constexpr CMPIType arrayOf(CMPIType type) {
  return static_cast<CMPIType>(type | CMPI_ARRAY);
}
constexpr bool isArray(CMPIType type) {
  return (type & CMPI_ARRAY) != 0;
}

constexpr bool fits(const IntegerLiteral& literal, const IntegerRange& range) {
  if (!literal.negative) return literal.magnitude <= range.max;
  return literal.magnitude <= ~static_cast<std::uint64_t>(range.min) + 1;
}

}  // namespace ZebManager
