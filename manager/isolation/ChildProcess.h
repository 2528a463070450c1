// A process at the other end of a socket.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "posix/FileDescriptor.h"

namespace ZebManager {

/// Where a process comes from.
struct ProcessSource {
  std::string program = "/proc/self/exe";  ///< started with these arguments
  std::vector<std::string> arguments = {};
  /// Path of a socket; when it is given, whoever listens there starts a process of its own for each that
  /// connects. It cannot be killed from here, and has to end when the connection does.
  std::string socket = {};
};

/// The process that was started has no descriptors of ours but the three standard ones and its end of the
/// socket pair. It is gone and reaped when the object goes.
class ChildProcess {
 public:
  /// `childSocket`: number that its end gets when it is started. Throws ManagerError.
  ChildProcess(const ProcessSource& source, int childSocket);
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;
  /// Ends it with SIGKILL when it still runs.
  ~ChildProcess();

  /// Our end; does not block.
  int socket() const { return _socket.get(); }
  /// Readable once the process has ended; negative when only the socket tells.
  int ending() const { return _ending.get(); }

  /// Ends it, or what there is between it and this process.
  void kill();
  /// Lets the process know that nothing more is asked of it.
  void closeSending();
  /// Waits for the end, and says how it came: "exit status 1", "signal 11", "its connection closed".
  std::string reap();

 private:
  void start(const ProcessSource& source, int childSocket);
  void connect(const std::string& path);

  pid_t _id = -1;
  ZEB::FileDescriptor _socket;
  ZEB::FileDescriptor _ending;
};

}  // namespace ZebManager
