#pragma once

#include <unistd.h>

#include <utility>

namespace ZEB::ethernet {

/// The one owner of a file descriptor.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int number) : _number(number) {}
  Descriptor(Descriptor&& other) noexcept : _number(std::exchange(other._number, -1)) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(_number, other._number);
    return *this;
  }
  ~Descriptor() {
    if (_number >= 0) ::close(_number);
  }

  int get() const { return _number; }
  explicit operator bool() const { return _number >= 0; }

 private:
  int _number = -1;
};

}  // namespace ZEB::ethernet
