#pragma once

#include <array>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "cmpicpp/CmpiArray.h"
#include "cmpicpp/CmpiData.h"
#include "cmpicpp/CmpiDateTime.h"
#include "cmpicpp/CmpiName.h"

namespace ZEB {

// The columns of a property table: where a value comes from, what stands in when it is not known, and how a
// value of the data library becomes one of CIM.

struct Omit {};
struct Always {};
template <class Value>
struct OrElse {
  Value value;
};
template <class Value>
struct Constant {
  Value value;
};
struct SameAs {
  CmpiCpp::NameLiteral property;
};

/// The property is left out when its value is not known.
inline constexpr Omit orOmit;
/// The value is always known.
inline constexpr Always always;
/// The value that stands in for one that is not known; for a list, its only element.
template <class Value>
constexpr OrElse<Value> orElse(Value value) {
  return {value};
}
template <class Value>
constexpr Constant<Value> constant(Value value) {
  return {value};
}
template <class... Values>
constexpr auto constantList(Values... values) {
  return constant(std::array{values...});
}
/// The value of a property further up.
constexpr SameAs sameAs(CmpiCpp::NameLiteral property) {
  return {property};
}

namespace detail {

template <class T>
inline constexpr bool kIsVector = false;
template <class T>
inline constexpr bool kIsVector<std::vector<T>> = true;
template <class T>
inline constexpr bool kIsOptional = false;
template <class T>
inline constexpr bool kIsOptional<std::optional<T>> = true;
template <class T>
inline constexpr bool kMayBeUnknown = kIsVector<T> || kIsOptional<T>;

/// A single value is a list of one, one that is not known an empty list.
template <class T>
std::vector<T> asList(std::vector<T> list) {
  return list;
}
template <class T>
std::vector<T> asList(std::optional<T> value) {
  return value ? std::vector<T>{std::move(*value)} : std::vector<T>{};
}
template <class T>
std::vector<T> asList(T value) {
  return {std::move(value)};
}

/// The CIM value of type `Cim` for whatever the data library holds it in.
template <class Cim, class Value>
CmpiCpp::CmpiData toData(const Value& value) {
  if constexpr (std::is_same_v<Cim, std::string>) {
    return std::string(value);
  } else if constexpr (std::is_same_v<Cim, CmpiCpp::CmpiDateTime>) {
    return value;
  } else {
    return static_cast<Cim>(value);
  }
}

template <class Cim>
CMPIType cimType() {
  if constexpr (std::is_same_v<Cim, std::string>) {
    return CMPI_string;
  } else if constexpr (std::is_same_v<Cim, CmpiCpp::CmpiDateTime>) {
    return CMPI_dateTime;
  } else {
    return CmpiCpp::CmpiData(Cim{}).type();
  }
}

template <class Cim>
CMPIType arrayType() {
  return static_cast<CMPIType>(cimType<Cim>() | CMPI_ARRAY);
}

template <class Cim, class List>
CmpiCpp::CmpiData toArray(const List& list) {
  CmpiCpp::CmpiArray array(std::size(list), cimType<Cim>());
  std::size_t index = 0;
  for (const auto& element : list) array.setElementAt(index++, toData<Cim>(element));
  return array;
}

}  // namespace detail

}  // namespace ZEB
