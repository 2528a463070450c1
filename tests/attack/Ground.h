// Where the attacks take place.
#pragma once

#include <sys/types.h>

#include <string>

namespace ZebManager {

/// A user that the server of a unit runs as, and what the tests' users are called.
inline constexpr uid_t kServerUser = 64001;

/// Whether the test's process has files and a network of its own: a loopback interface, 192.0.2.1/24, an
/// empty /run, and the users "writer" (of the group "zebcim"), "reader", "expired" (since long), "aged"
/// (whose password has to be changed) and "locked", with the password "secret", and "blank" with an empty
/// one. They go with the process.
bool groundIsOwn();

/// Skips the test where that is not allowed.
#define REQUIRE_GROUND() \
  if (!::ZebManager::groundIsOwn()) GTEST_SKIP() << "not allowed to make namespaces"

}  // namespace ZebManager
