#pragma once

#include <sys/types.h>

namespace CmpiCpp {

/// Returns when a thread of this process, whose way out of the library has nothing on it to wait for, has
/// left the library's code: when it sleeps somewhere, or is no more. One that goes on running is given a
/// second.
void awaitDeparture(pid_t thread);

}  // namespace CmpiCpp
