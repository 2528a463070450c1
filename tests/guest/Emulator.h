#pragma once

#include <filesystem>
#include <string>

#include "Deadline.h"
#include "FirstProgram.h"
#include "Hardware.h"
#include "Program.h"
#include "posix/FileDescriptor.h"
#include "posix/TemporaryFolder.h"

namespace ZEB::guest {

/// The emulator's process, with the folder that its sockets and logs are in. Gone when the object is. One at
/// a time on a machine, since emulators side by side would spoil each other's deadlines: a second one waits
/// for its turn.
class Emulator {
 public:
  /// Starts it with the kernel and the initial file system in `files`.
  Emulator(const std::filesystem::path& files, const Hardware& hardware, FirstProgram first);

  std::filesystem::path agentSocket() const { return folder_.path() / "agent"; }
  std::filesystem::path monitorSocket() const { return folder_.path() / "monitor"; }
  const std::filesystem::path& results() const { return results_; }

  /// How emulator and kernel explain themselves when something went wrong.
  std::string lastWords() const;
  /// Waits for it to end by itself.
  void awaitEnd(std::chrono::milliseconds limit) { process_.wait(limit); }

 private:
  FileDescriptor turn_;
  TemporaryFolder folder_;
  std::filesystem::path results_;
  ChildProcess process_;
};

}  // namespace ZEB::guest
