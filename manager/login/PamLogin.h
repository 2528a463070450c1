// A login as PAM judges it.
#pragma once

#include "login/LoginAttempt.h"
#include "login/LoginSettings.h"

namespace ZebManager {

/// Runs the service's modules in this process: all, or for a user who has shown a certificate those alone
/// that judge the account, if nobody has locked it. Whoever they let in may read, and members of the group
/// may write.
Verdict askPam(const LoginSettings& settings, const LoginAttempt& attempt);

}  // namespace ZebManager
