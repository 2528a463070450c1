// A running service, as a command sees it.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>

#include "isolation/Frame.h"
#include "posix/FileDescriptor.h"

namespace ZebManager {

/// A message of a command's that is no document of XML.
inline constexpr char kAskForRecording[] = "recording";

/// One connection. For one thread, `wake` aside.
class ServiceLink {
 public:
  /// Null when no service runs that uses the run directory. Throws ManagerError when one cannot be asked.
  static std::unique_ptr<ServiceLink> find(const std::string& runFolder);

  /// The answer to a request. Throws ManagerError when the service does not give any.
  std::string ask(const std::string& request);

  /// The recording that the service serves, by its whole path; empty when it serves this machine. Throws
  /// ManagerError.
  std::string recording();

  /// The path of what may be called so, which has to be looked at; empty when the service knows none.
  /// `again`: it is not what the service said last. Throws ManagerError.
  std::string pathOf(const std::string& name, bool again);

  /// From now on alerts that satisfy the query come. Throws ManagerError.
  void subscribe(const std::string& query);
  /// The INSTANCE element of the next one; nothing when none comes within the time or `wake` was called.
  /// Throws ManagerError when the service has gone.
  std::optional<std::string> next(std::chrono::milliseconds patience);
  /// Ends the wait for alerts, for good. From any thread.
  void wake();

 private:
  explicit ServiceLink(ZEB::FileDescriptor socket);
  void send(Frame::Kind kind, std::string body, std::uint64_t number = 0);
  Frame receive();

  const ZEB::FileDescriptor _socket;
  const ZEB::FileDescriptor _woken;
  FrameReader _reader;
};

}  // namespace ZebManager
