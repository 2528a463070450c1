#include "ChildProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>

// The C library's header of version 2.36 forgets to say this for C++.
extern "C" {
#include <sys/pidfd.h>
}

#include "Deadline.h"
#include "GuestError.h"

namespace ZEB::guest {
namespace {

[[noreturn]] void becomeProgram(char* const* arguments, int log, pid_t parent) {
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (::getppid() != parent) ::_exit(127);
  const int nothing = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
  ::dup2(nothing, STDIN_FILENO);
  ::dup2(log, STDOUT_FILENO);
  ::dup2(log, STDERR_FILENO);
  ::execvp(arguments[0], arguments);
  ::_exit(127);
}

}  // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& arguments, const std::filesystem::path& log) {
  const FileDescriptor output(::open(log.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644));
  if (!output) throw GuestError::fromErrno(log.string());
  std::vector<char*> pointers;
  for (const std::string& argument : arguments) pointers.push_back(const_cast<char*>(argument.c_str()));
  pointers.push_back(nullptr);

  const pid_t parent = ::getpid();
  const pid_t child = ::fork();
  if (child < 0) throw GuestError::fromErrno("fork");
  if (child == 0) becomeProgram(pointers.data(), output.get(), parent);
  // Nobody else reaps this child, so the number still means it.
  handle_ = FileDescriptor(::pidfd_open(child, 0));
  if (!handle_) {
    const GuestError error = GuestError::fromErrno("pidfd_open");
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    throw error;
  }
}

ChildProcess::~ChildProcess() {
  if (status_) return;
  ::pidfd_send_signal(handle_.get(), SIGKILL, nullptr, 0);
  siginfo_t info{};
  ::waitid(P_PIDFD, static_cast<id_t>(handle_.get()), &info, WEXITED);
}

std::optional<int> ChildProcess::wait(std::chrono::milliseconds limit) {
  if (status_) return status_;
  const Deadline deadline(limit);
  pollfd event{.fd = handle_.get(), .events = POLLIN, .revents = 0};
  while (::poll(&event, 1, deadline.milliseconds()) < 0 && errno == EINTR) {
  }
  if (event.revents == 0) return std::nullopt;
  siginfo_t info{};
  if (::waitid(P_PIDFD, static_cast<id_t>(handle_.get()), &info, WEXITED) != 0) {
    throw GuestError::fromErrno("waitid");
  }
  status_ = info.si_code == CLD_EXITED ? info.si_status : 128 + info.si_status;
  return status_;
}

}  // namespace ZEB::guest
