// A process at the other end of a socket.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "posix/ChildProcess.h"

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
class ConnectedProcess {
 public:
  /// `childSocket`: number that its end gets when it is started. Throws ManagerError.
  ConnectedProcess(const ProcessSource& source, int childSocket);

  /// Our end; does not block.
  int socket() const { return _socket.get(); }
  /// Readable once the process has ended; negative when only the socket tells.
  int ending() const { return _process ? _process->ending() : -1; }

  /// Ends it, or what there is between it and this process.
  void kill();
  /// Lets the process know that nothing more is asked of it.
  void closeSending();
  /// Waits for the end, and says how it came: "exit status 1", "signal 11", "its connection closed".
  std::string reap();

 private:
  void start(const ProcessSource& source, int childSocket);
  void connect(const std::string& path);

  ZEB::FileDescriptor _socket;
  std::optional<ZEB::ChildProcess> _process;  ///< none when it was connected to
};

}  // namespace ZebManager
