#pragma once

#include <net/if.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include <cstring>

#include "posix/FileDescriptor.h"

namespace ZEB::test {

/// Puts the calling thread, and those that it starts, into a new network namespace that has nothing but a
/// loopback interface. It goes with the last thread in it. False where that is not allowed.
inline bool enterNewNetworkNamespace() {
  return unshare(CLONE_NEWNET) == 0;
}

/// Takes the loopback interface of the current namespace up or down: either is announced as a link message.
inline bool setLoopback(bool up) {
  const FileDescriptor socket(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
  if (!socket) return false;
  ifreq request{};
  std::strcpy(request.ifr_name, "lo");
  bool done = ioctl(socket.get(), SIOCGIFFLAGS, &request) == 0;
  request.ifr_flags = static_cast<short>(up ? request.ifr_flags | IFF_UP : request.ifr_flags & ~IFF_UP);
  done = done && ioctl(socket.get(), SIOCSIFFLAGS, &request) == 0;
  return done;
}

}  // namespace ZEB::test
