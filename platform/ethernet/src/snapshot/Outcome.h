#pragma once

#include <optional>
#include <string>
#include <utility>
#include <variant>

namespace ZEB::ethernet {

/// Why something could not be read: an errno value where the system said one, else 0, and what was being
/// done.
struct Failure {
  int code = 0;
  std::string what;
};

/// A value, or why there is none.
template <class T>
class [[nodiscard]] Outcome {
 public:
  Outcome(T value) : _state(std::move(value)) {}
  Outcome(Failure failure) : _state(std::move(failure)) {}

  explicit operator bool() const { return std::holds_alternative<T>(_state); }
  T& operator*() { return std::get<T>(_state); }
  const T& operator*() const { return std::get<T>(_state); }
  T* operator->() { return &std::get<T>(_state); }
  const T* operator->() const { return &std::get<T>(_state); }
  const Failure& failure() const { return std::get<Failure>(_state); }

 private:
  std::variant<T, Failure> _state;
};

}  // namespace ZEB::ethernet
