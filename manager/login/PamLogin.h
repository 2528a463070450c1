// A login as PAM judges it.
#pragma once

#include "login/LoginAttempt.h"
#include "login/LoginSettings.h"

namespace ZebManager {

/// Runs the service's modules in this process. Whoever they let in may read, and members of the group may
/// write.
Verdict askPam(const LoginSettings& settings, const LoginAttempt& attempt);

}  // namespace ZebManager
