#pragma once

#include <sys/types.h>

#include <functional>

namespace ZEB::test {

/// A child of this process that runs a function and ends with what it returns as its exit status. It is
/// killed when this goes before it has ended.
class ChildProcess {
 public:
  explicit ChildProcess(const std::function<int()>& body);
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  pid_t id() const { return _id; }
  void kill();
  /// The exit status; minus the signal's number when a signal ended it.
  int wait();
  /// Whether it has ended by now.
  bool ended();

 private:
  pid_t _id;
  bool _reaped = false;
  int _status = 0;
};

}  // namespace ZEB::test
