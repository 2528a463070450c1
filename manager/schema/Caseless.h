// Names of CIM compare without regard to the case of ASCII letters.
#pragma once

#include <cstddef>
#include <string_view>

namespace ZebManager {

constexpr char foldCase(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

constexpr bool sameName(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (a[i] != b[i] && foldCase(a[i]) != foldCase(b[i])) return false;
  }
  return true;
}

/// Hash and equality for containers that are keyed by a CIM name; they take a `std::string_view` for
/// look-ups.
struct NameHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view name) const {
    std::size_t hash = 14695981039346656037U;
    for (const char c : name) hash = (hash ^ static_cast<unsigned char>(foldCase(c))) * 1099511628211U;
    return hash;
  }
};

struct NameEqual {
  using is_transparent = void;
  bool operator()(std::string_view a, std::string_view b) const { return sameName(a, b); }
};

}  // namespace ZebManager
