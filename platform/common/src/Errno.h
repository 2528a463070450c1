// What the system says of a call that has just failed.
#pragma once

#include <cerrno>
#include <string>
#include <system_error>

namespace ZEB {

[[noreturn]] inline void throwErrno(const std::string& what) {
  throw std::system_error(errno, std::generic_category(), what);
}

}  // namespace ZEB
