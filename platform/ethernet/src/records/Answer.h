#pragma once

#include <optional>
#include <utility>

namespace ZEB::ethernet {

inline constexpr int kKnown = 0;
inline constexpr int kNotKnown = 1;

/// A getter's answer: the value into `out` when there is one.
template <class T, class Out>
int answer(const std::optional<T>& value, Out& out) {
  if (!value) return kNotKnown;
  out = static_cast<Out>(*value);
  return kKnown;
}

/// An optional fact of a set of facts that may itself be missing.
template <class Pointer, class Get>
auto fact(const Pointer& facts, Get get) -> decltype(get(*facts)) {
  if (!facts) return std::nullopt;
  return get(*facts);
}

}  // namespace ZEB::ethernet
