// As whom alerts are sent.
#pragma once

#include <string>

namespace ZebManager {

/// The line of a head that a file with "Basic USER:PASSWORD" or "Bearer TOKEN" stands for; empty without a
/// file. Throws ManagerError that says what the file should be.
std::string authorizationIn(const std::string& file);

}  // namespace ZebManager
