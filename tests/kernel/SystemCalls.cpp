#include "SystemCalls.h"

#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

namespace ZEB::test {
namespace {

/// A call that nothing else here makes, to mark where the work begins and ends.
void mark() {
  syscall(SYS_getppid);
}

[[noreturn]] void runChild(const std::function<void()>& prepare, const std::function<void()>& work) {
  if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) _exit(1);
  raise(SIGSTOP);
  prepare();
  mark();
  work();
  mark();
  _exit(0);
}

}  // namespace

std::optional<SystemCalls> traced(const std::function<void()>& prepare, const std::function<void()>& work) {
  const pid_t child = fork();
  if (child < 0) return std::nullopt;
  if (child == 0) runChild(prepare, work);

  SystemCalls calls;
  int status = 0;
  int marks = 0;
  bool entering = true;
  waitpid(child, &status, 0);
  ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
  while (!WIFEXITED(status) && !WIFSIGNALED(status)) {
    ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
    if (waitpid(child, &status, 0) < 0) break;
    if (!WIFSTOPPED(status) || WSTOPSIG(status) != (SIGTRAP | 0x80)) continue;
    user_regs_struct registers{};
    ptrace(PTRACE_GETREGS, child, nullptr, &registers);
    const auto number = static_cast<long>(registers.orig_rax);
    const auto result = static_cast<long>(registers.rax);
    if (entering && number == SYS_getppid) ++marks;
    if (marks == 1 && entering && number != SYS_getppid) ++calls.count[number];
    if (marks == 1 && !entering && number == SYS_recvfrom && result > 0) {
      calls.bytesReceived += static_cast<std::size_t>(result);
    }
    entering = !entering;
  }
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0 || marks != 2) return std::nullopt;
  return calls;
}

}  // namespace ZEB::test
