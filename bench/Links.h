#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <string>
#include <thread>

#include "posix/FileDescriptor.h"

namespace ZebBench {

/// Takes links of another network namespace up and down.
class Links {
 public:
  /// `nameSpace` is one of ip-netns(8).
  explicit Links(const std::string& nameSpace);

  std::uint32_t indexOf(const std::string& name) const;
  void set(std::uint32_t index, bool up) { change(index, 0, up); }
  void setGroup(std::uint32_t group, bool up) { change(0, group, up); }

 private:
  void change(std::uint32_t index, std::uint32_t group, bool up);

  ZEB::FileDescriptor _socket;
};

/// Hears the kernel's link messages in this process's namespace and notes when the first one came.
class LinkMessages {
 public:
  using Time = std::chrono::system_clock::time_point;

  LinkMessages();
  ~LinkMessages();
  LinkMessages(const LinkMessages&) = delete;
  LinkMessages& operator=(const LinkMessages&) = delete;

  /// Forgets what came so far.
  void forget() { _first = 0; }
  /// When the first one came since; the epoch when none did.
  Time first() const { return Time(Time::duration(_first)); }

 private:
  void listen();

  ZEB::FileDescriptor _socket;
  std::atomic<bool> _stop{false};
  std::atomic<Time::rep> _first{0};
  std::thread _thread;
};

}  // namespace ZebBench
