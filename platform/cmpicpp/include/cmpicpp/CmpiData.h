#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

#include "cmpicpp/CmpiArray.h"
#include "cmpicpp/CmpiDateTime.h"
#include "cmpicpp/CmpiObjectPath.h"

namespace CmpiCpp {

/// A value with its CMPI type code; a value may be null and still has a type. Text is `CMPI_string`,
/// whichever of the two text codes it came with.
class CmpiData {
 public:
  CmpiData() = default;
  CmpiData(bool value) : _type(CMPI_boolean), _value(value) {}
  CmpiData(std::uint8_t value) : _type(CMPI_uint8), _value(std::uint64_t{value}) {}
  CmpiData(std::uint16_t value) : _type(CMPI_uint16), _value(std::uint64_t{value}) {}
  CmpiData(std::uint32_t value) : _type(CMPI_uint32), _value(std::uint64_t{value}) {}
  CmpiData(std::uint64_t value) : _type(CMPI_uint64), _value(value) {}
  CmpiData(std::int8_t value) : _type(CMPI_sint8), _value(std::int64_t{value}) {}
  CmpiData(std::int16_t value) : _type(CMPI_sint16), _value(std::int64_t{value}) {}
  CmpiData(std::int32_t value) : _type(CMPI_sint32), _value(std::int64_t{value}) {}
  CmpiData(std::int64_t value) : _type(CMPI_sint64), _value(value) {}
  CmpiData(double value) : _type(CMPI_real64), _value(value) {}
  CmpiData(const char* text) : _type(CMPI_string), _value(std::string(text)) {}
  CmpiData(std::string_view text) : _type(CMPI_string), _value(std::string(text)) {}
  CmpiData(std::string text) : _type(CMPI_string), _value(std::move(text)) {}
  CmpiData(CmpiDateTime value) : _type(CMPI_dateTime), _value(value) {}
  CmpiData(CmpiObjectPath path) : _type(CMPI_ref), _value(std::move(path)) {}
  CmpiData(CmpiArray array)
      : _type(static_cast<CMPIType>(array.elementType() | CMPI_ARRAY)), _value(std::move(array)) {}

  static CmpiData null(CMPIType type);

  CMPIType type() const { return _type; }
  bool isNull() const { return std::holds_alternative<std::monostate>(_value); }

  /// The value as what it is; each throws `CmpiStatus` with `CMPI_RC_ERR_TYPE_MISMATCH` when it is null or of
  /// another kind. Integers of every width answer `asUnsigned` or `asSigned`, by their sign.
  bool asBoolean() const { return as<bool>(); }
  std::uint64_t asUnsigned() const { return as<std::uint64_t>(); }
  std::int64_t asSigned() const { return as<std::int64_t>(); }
  double asReal() const { return as<double>(); }
  const std::string& asString() const { return as<std::string>(); }
  const CmpiDateTime& asDateTime() const { return as<CmpiDateTime>(); }
  const CmpiObjectPath& asReference() const { return as<CmpiObjectPath>(); }
  const CmpiArray& asArray() const { return as<CmpiArray>(); }

  /// Of the same type and value.
  friend bool operator==(const CmpiData&, const CmpiData&) = default;
  /// The same key value: integers are compared by value, whatever width and sign a client sent them with.
  static bool sameKey(const CmpiData& a, const CmpiData& b);
  std::size_t keyHash() const;

 private:
  using Value = std::variant<std::monostate, bool, std::uint64_t, std::int64_t, double, std::string,
                             CmpiDateTime, CmpiObjectPath, CmpiArray>;

  template <class T>
  const T& as() const {
    if (const T* value = std::get_if<T>(&_value)) return *value;
    throwMismatch();
  }
  [[noreturn]] static void throwMismatch();

  CMPIType _type = CMPI_null;
  Value _value;
};

struct CmpiObjectPath::Key {
  CmpiName name;
  CmpiData value;
};

}  // namespace CmpiCpp
