#include "DumpCounter.h"

#include <dlfcn.h>
#include <linux/netlink.h>
#include <sys/socket.h>

#include <atomic>
#include <cstring>

namespace {

std::atomic<int> dumps{0};

void count(const void* data, std::size_t size, const sockaddr* to) {
  nlmsghdr header;
  if (!to || to->sa_family != AF_NETLINK || size < sizeof header) return;
  std::memcpy(&header, data, sizeof header);
  if ((header.nlmsg_flags & NLM_F_DUMP) == NLM_F_DUMP) ++dumps;
}

}  // namespace

// A symbol of the program comes before the library's, also for what is loaded later.
extern "C" __attribute__((visibility("default"))) ssize_t sendto(int socket, const void* data, size_t size,
                                                                 int flags, const sockaddr* to,
                                                                 socklen_t toSize) {
  using Call = ssize_t(int, const void*, size_t, int, const sockaddr*, socklen_t);
  static auto* const real = reinterpret_cast<Call*>(dlsym(RTLD_NEXT, "sendto"));
  count(data, size, to);
  return real(socket, data, size, flags, to, toSize);
}

int ZebBench::dumpsAskedFor() {
  return dumps;
}
