#pragma once

#include <pthread.h>

#include <functional>
#include <memory>

#include "common/Logger.h"

namespace ZEB {

/// The pipe that stops the netlink thread: read end, write end; -1 while there is none. The thread makes it
/// and closes it.
extern int pipeFd[2];

/// Listens to the kernel's link messages on a thread of its own and runs a handler for each. Without a
/// socket, and when waiting or receiving fails, the whole process ends with status 1: a monitor that hears
/// nothing must not look healthy.
class NetlinkThread {
 public:
  /// Receives one message from `socket` and acts on it. The receiving is left to the handler so that it can
  /// hold a lock over receiving and acting. Answers what recv(2) answered.
  using Handler = std::function<long(int socket)>;

  NetlinkThread(const Logger& logger, Handler handler);
  NetlinkThread(const NetlinkThread&) = delete;
  NetlinkThread& operator=(const NetlinkThread&) = delete;

  /// Stops the thread: the byte 'S' into the pipe, then waits until the thread has left the library's code.
  /// When no byte reaches the pipe nothing waits, and the library stays in the process for good.
  ~NetlinkThread();

  /// Returns when the pipe exists or could not be made. Failing to start the thread is logged.
  void start();

  /// Whether the write end is still that of the thread's pipe, or there is none. Not beside a start or a
  /// stop.
  static bool canBeStopped();

 private:
  struct State;

  static void* run(void* state);
  bool writeStopByte();
  bool writeAround();
  void join();

  Logger _logger;
  std::shared_ptr<State> _state;
  pthread_t _thread{};
  bool _started = false;
};

}  // namespace ZEB
