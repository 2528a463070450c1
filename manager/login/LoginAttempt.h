// What the server asks the process that checks passwords, and what it is told.
#pragma once

#include <optional>
#include <string>

#include "isolation/Frame.h"

namespace ZebManager {

struct LoginAttempt {
  std::string user;
  std::optional<std::string> password;  ///< nothing: the user has shown a certificate
  std::string host;                     ///< address of the client
};

enum class Verdict { Refused, MayRead, MayWrite };

/// Throws FrameError for what is no attempt.
LoginAttempt attemptOf(const Frame& frame);
Frame frameOf(const LoginAttempt& attempt);

Verdict verdictOf(const Frame& frame);
Frame frameOf(Verdict verdict);

}  // namespace ZebManager
