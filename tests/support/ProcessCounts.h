// What the process of a test has open and running.
#pragma once

#include <sys/syscall.h>
#include <unistd.h>

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <thread>

namespace ZEB::test {

inline std::size_t entriesOf(const char* folder) {
  const std::filesystem::directory_iterator entries(folder);
  return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

inline std::size_t residentBytes() {
  std::size_t all = 0, resident = 0;
  std::ifstream("/proc/self/statm") >> all >> resident;
  return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

inline std::size_t openDescriptors() {
  return entriesOf("/proc/self/fd");
}

/// A sanitizer starts a thread of its own beside the first one that a program starts, so a first one comes
/// and goes before anything is counted. It goes a moment after it was joined.
inline std::size_t threads() {
  [[maybe_unused]] static const bool firstThreadGone = [] {
    pid_t id = 0;
    std::thread([&id] { id = gettid(); }).join();
    while (syscall(SYS_tgkill, getpid(), id, 0) == 0)
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return true;
  }();
  return entriesOf("/proc/self/task");
}

}  // namespace ZEB::test
