#include "schema/CimType.h"

#include <array>
#include <charconv>
#include <limits>

#include "schema/Caseless.h"

namespace ZebManager {
namespace {

struct TypeRow {
  std::string_view name;
  CMPIType code;
  std::optional<IntegerRange> range;
};

template <class T>
constexpr IntegerRange rangeOf() {
  using Limits = std::numeric_limits<T>;
  return {static_cast<std::int64_t>(Limits::min()), static_cast<std::uint64_t>(Limits::max())};
}

constexpr std::array kTypes = {
    TypeRow{"boolean", CMPI_boolean, {}},
    TypeRow{"char16", CMPI_char16, {}},
    TypeRow{"real32", CMPI_real32, {}},
    TypeRow{"real64", CMPI_real64, {}},
    TypeRow{"uint8", CMPI_uint8, rangeOf<std::uint8_t>()},
    TypeRow{"uint16", CMPI_uint16, rangeOf<std::uint16_t>()},
    TypeRow{"uint32", CMPI_uint32, rangeOf<std::uint32_t>()},
    TypeRow{"uint64", CMPI_uint64, rangeOf<std::uint64_t>()},
    TypeRow{"sint8", CMPI_sint8, rangeOf<std::int8_t>()},
    TypeRow{"sint16", CMPI_sint16, rangeOf<std::int16_t>()},
    TypeRow{"sint32", CMPI_sint32, rangeOf<std::int32_t>()},
    TypeRow{"sint64", CMPI_sint64, rangeOf<std::int64_t>()},
    TypeRow{"string", CMPI_string, {}},
    TypeRow{"datetime", CMPI_dateTime, {}},
};

const TypeRow* rowOf(CMPIType type) {
  for (const TypeRow& row : kTypes) {
    if (row.code == elementType(type)) return &row;
  }
  return nullptr;
}

int takeBase(std::string_view& digits) {
  if (digits.size() > 2 && digits[0] == '0' && foldCase(digits[1]) == 'x') {
    digits.remove_prefix(2);
    return 16;
  }
  if (digits.size() > 1 && foldCase(digits.back()) == 'b') {
    digits.remove_suffix(1);
    return 2;
  }
  return digits.size() > 1 && digits[0] == '0' ? 8 : 10;
}

}  // namespace

std::optional<CMPIType> typeFromName(std::string_view name) {
  for (const TypeRow& row : kTypes) {
    if (sameName(row.name, name)) return row.code;
  }
  return std::nullopt;
}

std::string_view elementTypeName(CMPIType type) {
  const TypeRow* row = rowOf(type);
  return row ? row->name : elementType(type) == CMPI_ref ? "reference" : "unknown";
}

std::string typeName(CMPIType type) {
  const std::string name(elementTypeName(type));
  return isArray(type) ? name + "[]" : name;
}

std::optional<IntegerRange> integerRange(CMPIType type) {
  const TypeRow* row = isArray(type) ? nullptr : rowOf(type);
  return row ? row->range : std::nullopt;
}

std::optional<IntegerLiteral> parseInteger(std::string_view text) {
  IntegerLiteral literal;
  if (!text.empty() && (text[0] == '-' || text[0] == '+')) {
    literal.negative = text[0] == '-';
    text.remove_prefix(1);
  }
  const int base = takeBase(text);
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, literal.magnitude, base);
  if (text.empty() || error != std::errc{} || stop != end) return std::nullopt;
  return literal;
}

}  // namespace ZebManager
