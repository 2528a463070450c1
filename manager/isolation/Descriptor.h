// The one owner of a descriptor.
#pragma once

#include <unistd.h>

#include <utility>

namespace ZebManager {

class Descriptor {
 public:
  explicit Descriptor(int number = -1) : _number(number) {}
  Descriptor(Descriptor&& other) noexcept : _number(std::exchange(other._number, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(_number, other._number);
    return *this;
  }
  ~Descriptor() {
    if (_number >= 0) close(_number);
  }

  int number() const { return _number; }
  explicit operator bool() const { return _number >= 0; }

 private:
  int _number;
};

}  // namespace ZebManager
