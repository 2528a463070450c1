// Reading properties of an instance whose class is known.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "values/Objects.h"

namespace ZebManager {

/// Properties of one class, to be looked for by their names once for many instances.
class PropertyPlaces {
 public:
  explicit PropertyPlaces(std::span<const char* const> names) : _names(names) {}

  /// What each property has in an instance, in the order of the names: a number, as `PropertyView::number`.
  template <class Take>
  void forEachNumber(const Instance& instance, Take take) {
    if (_class != instance.body().classDef) lookUp(*instance.body().classDef);
    for (std::size_t i = 0; i < _places.size(); ++i) take(i, numberAt(instance.body(), _places[i]));
  }

 private:
  void lookUp(const ClassDef& classDef);
  static std::optional<std::uint64_t> numberAt(const InstanceBody& body, std::optional<std::uint16_t> place);

  const std::span<const char* const> _names;
  const ClassDef* _class = nullptr;
  std::vector<std::optional<std::uint16_t>> _places;  ///< in the class; none of what it does not have
};

/// A look at an instance that is not longer than the instance lives. A property that is not there or null is
/// an empty text, no number, no element.
class PropertyView {
 public:
  explicit PropertyView(const Instance& instance) : _body(instance.body()) {}

  std::string path() const;
  std::string text(std::string_view name) const;
  /// The elements of an array.
  std::vector<std::string> texts(std::string_view name) const;
  /// The first element of an array counts as the property.
  std::optional<std::uint64_t> number(std::string_view name) const;
  std::optional<bool> flag(std::string_view name) const;
  /// A point in time, in seconds since the epoch.
  std::optional<double> time(std::string_view name) const;
  /// Text form of the path that a reference holds.
  std::string reference(std::string_view name) const;
  /// What the schema says of a number, the number itself where it says nothing.
  std::string meaning(std::string_view name) const;

 private:
  /// The value, or the first element of an array; null when there is none.
  const CMPIData* find(std::string_view name) const;

  const InstanceBody& _body;
};

}  // namespace ZebManager
