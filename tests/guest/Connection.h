#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "Deadline.h"
#include "posix/FileDescriptor.h"

namespace ZEB::guest {

/// A stream to the emulator. Every wait has a deadline; what fails or is late throws GuestError.
class Connection {
 public:
  /// Connects to the socket at `path` as soon as it is there.
  Connection(const std::filesystem::path& path, const Deadline& deadline);

  void send(std::string_view text, const Deadline& deadline);
  /// Up to the next line end, which is left out.
  std::string readLine(const Deadline& deadline);
  std::string read(size_t length, const Deadline& deadline);

 private:
  void receive(const Deadline& deadline);
  void awaitReady(short events, const Deadline& deadline) const;

  FileDescriptor socket_;
  std::string received_;
};

}  // namespace ZEB::guest
