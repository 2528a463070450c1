#pragma once

#include <string>

#include "Machine.h"
#include "posix/FileDescriptor.h"

namespace ZEB::test {

/// A machine of the kernel's, in the network namespace of the thread that constructs it. Ports are ends of
/// cables whose other ends are in a namespace of their own.
class KernelMachine {
 public:
  KernelMachine();

  /// Whether this kernel has interfaces of that kind.
  static bool has(const std::string& kind);

  /// Makes of the machine that is there another one, as far as the kernel lets that be. The roles of a team's
  /// members are the kernel's affair, and whether a team or a VLAN has its link; of settings it has the frame
  /// size.
  void play(const Machine& before, const Machine& now);

 private:
  const bool _renamesWhileUp;
  FileDescriptor _farEnds;  ///< their namespace
};

}  // namespace ZEB::test
