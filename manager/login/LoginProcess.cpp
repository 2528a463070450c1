#include "login/LoginProcess.h"

#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <iostream>

#include "login/PamLogin.h"
#include "posix/FileDescriptor.h"
#include "values/ManagerError.h"

namespace ZebManager {
namespace {

constexpr unsigned kLongestSeconds = 60;
/// More than any attempt that the server takes to here.
constexpr std::size_t kLongestAttempt = 16U << 10;

/// Exit statuses that let in; none that a module would take that ends its process.
constexpr int kMayRead = 101;
constexpr int kMayWrite = 102;

/// What stops the server stops it: then the other end of the socket closes.
void set(sighandler_t handler) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE}) ::signal(signal, handler);
}

[[noreturn]] void judge(ZEB::FileDescriptor& socket, const LoginSettings& settings,
                        const LoginAttempt& attempt) {
  socket = {};
  set(SIG_DFL);
  alarm(kLongestSeconds);
  const Verdict verdict = askPam(settings, attempt);
  _exit(verdict == Verdict::MayRead ? kMayRead : verdict == Verdict::MayWrite ? kMayWrite : 0);
}

void say(const std::string& what) {
  std::cerr << "zebcim: " << oneLine(what) << std::endl;
}

Verdict verdictOf(pid_t judging) {
  int status = 0;
  while (waitpid(judging, &status, 0) < 0 && errno == EINTR) {
  }
  if (WIFSIGNALED(status)) {
    say("a login is refused: PAM's modules ended with signal " + std::to_string(WTERMSIG(status)));
    return Verdict::Refused;
  }
  const int code = WEXITSTATUS(status);
  return code == kMayRead ? Verdict::MayRead : code == kMayWrite ? Verdict::MayWrite : Verdict::Refused;
}

Verdict judgeApart(ZEB::FileDescriptor& socket, const LoginSettings& settings, const LoginAttempt& attempt) {
  const pid_t judging = fork();
  if (judging == 0) judge(socket, settings, attempt);
  if (judging > 0) return verdictOf(judging);
  say(std::string("a login is refused: no process for it: ") + std::strerror(errno));
  return Verdict::Refused;
}

void serve(ZEB::FileDescriptor& socket, const LoginSettings& settings) {
  FrameReader reader(kLongestAttempt);
  FrameSender sender(socket.get());
  while (reader.receive(socket.get()) == Transfer::Done) {
    while (const auto frame = reader.next()) {
      if (!sender.send(frameOf(judgeApart(socket, settings, attemptOf(*frame))))) return;
    }
  }
}

}  // namespace

int runLoginProcess(int socket, const LoginSettings& settings) {
  ZEB::FileDescriptor owned(socket);
  prctl(PR_SET_DUMPABLE, 0);
  prctl(PR_SET_NAME, "zebcim-login");
  set(SIG_IGN);
  try {
    serve(owned, settings);
    return 0;
  } catch (const FrameError& error) {
    say(error.what());
    return 1;
  }
}

}  // namespace ZebManager
