#pragma once

#include <unistd.h>

#include <utility>

namespace ZEB {

/// Owns a file descriptor; -1 is none.
class FileDescriptor {
 public:
  FileDescriptor() = default;
  explicit FileDescriptor(int number) : _number(number) {}
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  FileDescriptor(FileDescriptor&& other) noexcept : _number(std::exchange(other._number, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    std::swap(_number, other._number);
    return *this;
  }
  ~FileDescriptor() {
    if (_number >= 0) ::close(_number);
  }

  int get() const { return _number; }
  explicit operator bool() const { return _number >= 0; }

 private:
  int _number = -1;
};

}  // namespace ZEB
