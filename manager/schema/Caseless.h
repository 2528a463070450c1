// Names of CIM compare without regard to the case of ASCII letters.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace ZebManager {

constexpr char foldCase(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

constexpr bool sameName(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  if (a == b) return true;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (a[i] != b[i] && foldCase(a[i]) != foldCase(b[i])) return false;
  }
  return true;
}

/// Hash and equality for containers that are keyed by a CIM name; they take a `std::string_view` for
/// look-ups.
struct NameHash {
  using is_transparent = void;
  /// Eight characters at once, each with the bit set that makes a letter lower case. That a few other
  /// characters become the same is for the equality to tell.
  std::size_t operator()(std::string_view name) const {
    constexpr std::uint64_t kLowerCase = 0x2020202020202020U;
    std::uint64_t hash = name.size();
    for (; !name.empty(); name.remove_prefix(std::min(name.size(), sizeof hash))) {
      std::uint64_t word = 0;
      std::memcpy(&word, name.data(), std::min(name.size(), sizeof word));
      hash = (hash ^ (word | kLowerCase)) * 0x9e3779b97f4a7c15U;
      hash ^= hash >> 32U;
    }
    return hash;
  }
};

struct NameEqual {
  using is_transparent = void;
  bool operator()(std::string_view a, std::string_view b) const { return sameName(a, b); }
};

}  // namespace ZebManager
