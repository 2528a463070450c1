// Reading properties of an instance whose class is known.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "values/Objects.h"

namespace ZebManager {

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
