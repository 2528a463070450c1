#pragma once

#include <csignal>

namespace ZEB {

/// Blocks every signal in the calling thread for its lifetime. A thread that is started meanwhile inherits
/// that for good, so that no signal that is meant for the object manager is ever taken on it.
class SignalsBlocked {
 public:
  SignalsBlocked() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &_before);
  }
  ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &_before, nullptr); }
  SignalsBlocked(const SignalsBlocked&) = delete;
  SignalsBlocked& operator=(const SignalsBlocked&) = delete;

 private:
  sigset_t _before;
};

}  // namespace ZEB
