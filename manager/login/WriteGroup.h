// Users of this machine.
#pragma once

#include <sys/types.h>

#include <string>

namespace ZebManager {

/// Whether a user belongs to a group, by the system's databases. Safe from any thread.
bool isMember(const std::string& user, const std::string& groupName);

/// The number where the user has no name.
std::string userName(uid_t user);

}  // namespace ZebManager
