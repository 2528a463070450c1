#pragma once

#include <cerrno>
#include <stdexcept>
#include <string>
#include <system_error>

namespace ZEB::guest {

/// The bed itself failed, or a script that had to succeed did not.
class GuestError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;

  /// What a system call that just failed has to say.
  static GuestError fromErrno(const std::string& what) {
    return GuestError(what + ": " + std::generic_category().message(errno));
  }
};

}  // namespace ZEB::guest
