#include "cli/StopSignals.h"

namespace ZebManager {
namespace {

/// Wakes the thread when nothing is to be waited for any more.
constexpr int kEndOfWait = SIGUSR2;

sigset_t stopSet() {
  sigset_t set;
  sigemptyset(&set);
  sigaddset(&set, kEndOfWait);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction action {};
    if (sigaction(signal, nullptr, &action) == 0 && action.sa_handler != SIG_IGN) sigaddset(&set, signal);
  }
  return set;
}

}  // namespace

StopSignals::StopSignals(std::function<void()> stop) : _stop(std::move(stop)) {
  sigset_t blocked = stopSet();
  sigaddset(&blocked, SIGPIPE);
  pthread_sigmask(SIG_BLOCK, &blocked, &_before);
  _thread = std::thread([this] { wait(); });
}

StopSignals::~StopSignals() {
  _done = true;
  pthread_kill(_thread.native_handle(), kEndOfWait);
  _thread.join();
  pthread_sigmask(SIG_SETMASK, &_before, nullptr);
}

void StopSignals::wait() {
  const sigset_t set = stopSet();
  int signal = 0;
  while (!_done) {
    if (sigwait(&set, &signal) != 0 || _done || signal == kEndOfWait) continue;
    if (!_requested.exchange(true)) _stop();
  }
}

}  // namespace ZebManager
