#include "ChildProcess.h"

#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <exception>
#include <system_error>

namespace ZEB::test {

ChildProcess::ChildProcess(const std::function<int()>& body) : _id(fork()) {
  if (_id < 0) throw std::system_error(errno, std::generic_category(), "fork");
  if (_id > 0) return;
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  int status = 99;
  try {
    status = body();
  } catch (const std::exception& error) {
    std::fprintf(stderr, "child: %s\n", error.what());
  }
  _exit(status);
}

ChildProcess::~ChildProcess() {
  if (_reaped) return;
  kill();
  wait();
}

void ChildProcess::kill() {
  if (!_reaped) ::kill(_id, SIGKILL);
}

int ChildProcess::wait() {
  while (!_reaped) {
    const pid_t got = waitpid(_id, &_status, 0);
    if (got < 0 && errno != EINTR) throw std::system_error(errno, std::generic_category(), "waitpid");
    _reaped = got == _id;
  }
  return WIFEXITED(_status) ? WEXITSTATUS(_status) : -WTERMSIG(_status);
}

bool ChildProcess::ended() {
  if (!_reaped) _reaped = waitpid(_id, &_status, WNOHANG) == _id;
  return _reaped;
}

}  // namespace ZEB::test
