#pragma once

#include <string_view>

namespace ZEB::test {

/// The value of a property in a list of them, as `zebcim --json=typed` writes it; null when it is not there.
template <class Json>
Json propertyOf(const Json& properties, std::string_view name) {
  for (const Json& property : properties) {
    if (property.at("name") == name) return property.at("value");
  }
  return nullptr;
}

}  // namespace ZEB::test
