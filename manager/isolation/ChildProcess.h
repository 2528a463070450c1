// A process that was started with one end of a socket pair.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "posix/FileDescriptor.h"

namespace ZebManager {

/// The process has no descriptors of ours but the three standard ones and its end of the socket pair. It is
/// gone and reaped when the object goes.
class ChildProcess {
 public:
  /// `childSocket`: number that its end gets. Throws ManagerError.
  ChildProcess(const std::string& program, const std::vector<std::string>& arguments, int childSocket);
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;
  /// Ends it with SIGKILL when it still runs.
  ~ChildProcess();

  /// Our end; does not block.
  int socket() const { return _socket.get(); }
  /// Readable once the process has ended.
  int ending() const { return _ending.get(); }
  pid_t id() const { return _id; }

  void kill();
  /// Lets the process know that nothing more is asked of it.
  void closeSending();
  /// Waits for the end, and says how it came: "exit status 1", "signal 11".
  std::string reap();

 private:
  pid_t _id = -1;
  ZEB::FileDescriptor _socket;
  ZEB::FileDescriptor _ending;
};

}  // namespace ZebManager
