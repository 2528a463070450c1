// The process that checks passwords, which alone sees those that are kept.
#pragma once

#include "login/LoginSettings.h"

namespace ZebManager {

/// Judges the attempts that come through the socket, one after the other, until the other end closes. Each is
/// judged in a process of its own, so that no module of PAM leaves anything behind: one that crashes or does
/// not return within a minute refuses. Returns the exit status.
int runLoginProcess(int socket, const LoginSettings& settings);

}  // namespace ZebManager
