#pragma once

#include <fcntl.h>

#include <cerrno>
#include <system_error>

#include "posix/FileDescriptor.h"

namespace ZEB {

/// Both ends of a pipe, which programs that are started do not get.
struct Pipe {
  FileDescriptor reading;
  FileDescriptor writing;
};

/// Throws std::system_error.
inline Pipe makePipe() {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) throw std::system_error(errno, std::generic_category(), "pipe");
  return {FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

}  // namespace ZEB
