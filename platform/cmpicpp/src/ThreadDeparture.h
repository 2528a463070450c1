#pragma once

#include <sys/types.h>

#include <set>

namespace CmpiCpp {

/// Returns when threads of this process, whose way out of the library has nothing on it to wait for, have
/// left the library's code: when each has been seen to sleep somewhere, or is no more. Those that go on
/// running are given a second, all together.
void awaitDeparture(std::set<pid_t> threads);

}  // namespace CmpiCpp
