#pragma once

#include <sys/types.h>

#include <chrono>
#include <csignal>
#include <functional>
#include <optional>

#include "posix/FileDescriptor.h"

namespace ZEB {

/// A child of this process, held by a descriptor, so that no other process can be meant. It is killed and
/// reaped when the object goes before it has ended. For use by one thread.
class ChildProcess {
 public:
  /// Takes a child over, which nobody else reaps. Throws std::system_error, and the child is gone then.
  explicit ChildProcess(pid_t id);
  /// A child that runs a function and ends with what it returns as its exit status. The kernel kills it when
  /// the thread that started it ends. Throws std::system_error.
  explicit ChildProcess(const std::function<int()>& body);
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;
  ~ChildProcess();

  pid_t id() const { return _id; }
  /// Readable once it has ended.
  int ending() const { return _handle.get(); }
  /// Does nothing once it is reaped.
  void kill(int signal = SIGKILL);
  /// Waits for its end: the exit status, or minus the signal's number when a signal ended it.
  int wait();
  /// The same, or nothing when it still runs at the end of `limit`.
  std::optional<int> wait(std::chrono::milliseconds limit);
  bool ended() { return wait(std::chrono::milliseconds(0)).has_value(); }

 private:
  pid_t _id;
  FileDescriptor _handle;
  std::optional<int> _status;
};

}  // namespace ZEB
