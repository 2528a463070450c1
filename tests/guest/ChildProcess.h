#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "posix/FileDescriptor.h"

namespace ZEB::guest {

/// A program that this process started, held by a descriptor, so that no other process can be meant.
/// Killed and reaped when the object goes, and killed by the kernel when the thread that started it ends.
class ChildProcess {
 public:
  /// Starts `arguments[0]`, found along PATH, with standard output and error appended to `log`.
  ChildProcess(const std::vector<std::string>& arguments, const std::filesystem::path& log);
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;
  ~ChildProcess();

  /// The exit status (128 and the signal when killed), or nothing when it still runs at the end of `limit`.
  std::optional<int> wait(std::chrono::milliseconds limit);
  bool running() { return !wait(std::chrono::milliseconds(0)); }

 private:
  FileDescriptor handle_;
  std::optional<int> status_;
};

}  // namespace ZEB::guest
