#pragma once

#include <filesystem>
#include <set>
#include <string>
#include <string_view>

#include "Connection.h"

namespace ZEB::guest {

/// The emulator's monitor: pulls cables, plugs cards. Throws GuestError on whatever the emulator refuses.
class Monitor {
 public:
  Monitor(const std::filesystem::path& socket, const Deadline& deadline);

  /// One command in the words of the emulator's own prompt, such as "set_link slot3a off".
  void command(std::string_view line);
  /// Waits until the guest has let go of a device after device_del.
  void awaitRemoval(const std::string& device, const Deadline& deadline);

 private:
  /// Takes note of events; returns anything else.
  std::string nextReply(const Deadline& deadline);

  Connection connection_;
  std::set<std::string> removed_;
};

}  // namespace ZEB::guest
