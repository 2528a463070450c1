#include "posix/ChildProcess.h"

#include <poll.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <exception>
#include <system_error>

namespace ZEB {
namespace {

std::system_error errorOf(const char* what, int error = errno) {
  return {error, std::generic_category(), what};
}

pid_t forkFor(const std::function<int()>& body) {
  const pid_t parent = getpid();
  const pid_t id = fork();
  if (id < 0) throw errorOf("fork");
  if (id > 0) return id;
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  int status = 99;
  try {
    if (getppid() == parent) status = body();
  } catch (const std::exception& error) {
    std::fprintf(stderr, "child: %s\n", error.what());
  }
  _exit(status);
}

}  // namespace

// The C library's own declarations of the two calls have no C linkage in some versions.
ChildProcess::ChildProcess(pid_t id) : _id(id), _handle(static_cast<int>(syscall(SYS_pidfd_open, id, 0))) {
  if (_handle) return;
  const int reason = errno;
  ::kill(id, SIGKILL);
  while (waitpid(id, nullptr, 0) < 0 && errno == EINTR) {
  }
  throw errorOf("pidfd_open", reason);
}

ChildProcess::ChildProcess(const std::function<int()>& body) : ChildProcess(forkFor(body)) {}

ChildProcess::~ChildProcess() {
  kill();
  wait();
}

void ChildProcess::kill(int signal) {
  if (!_status) syscall(SYS_pidfd_send_signal, _handle.get(), signal, nullptr, 0);
}

int ChildProcess::wait() {
  while (!_status) {
    siginfo_t info{};
    if (waitid(P_PIDFD, static_cast<id_t>(_handle.get()), &info, WEXITED) == 0) {
      _status = info.si_code == CLD_EXITED ? info.si_status : -info.si_status;
    } else if (errno != EINTR) {
      _status = 0;  // the kernel keeps none where SIGCHLD is ignored
    }
  }
  return *_status;
}

std::optional<int> ChildProcess::wait(std::chrono::milliseconds limit) {
  using Clock = std::chrono::steady_clock;
  const auto end = Clock::now() + limit;
  while (!_status) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now()).count();
    pollfd event{_handle.get(), POLLIN, 0};
    const int ready = poll(&event, 1, static_cast<int>(std::max<decltype(left)>(left, 0)));
    if (ready == 0) return std::nullopt;
    if (ready > 0) return wait();
    if (errno != EINTR) throw errorOf("poll");
  }
  return _status;
}

}  // namespace ZEB
