#pragma once

#include <functional>
#include <memory>

#include "common/Logger.h"
#include "ethernet/LayerChange.h"

namespace ZEB {

/// Tells of what the kernel announces beside links: addresses, default routes and the rules by which they are
/// chosen. Listens on a thread of its own, in the network namespace of the thread that constructs it.
class ChangeWatch {
 public:
  /// `changed` is called on the watch's thread, once for whatever has gathered. A kernel that cannot be
  /// listened to, or not any more, is not watched: that is logged once.
  ChangeWatch(const Logger& logger, std::function<void(const LayerChange&)> changed);
  /// Waits for a call that is under way.
  ~ChangeWatch();
  ChangeWatch(const ChangeWatch&) = delete;
  ChangeWatch& operator=(const ChangeWatch&) = delete;

 private:
  class Thread;
  std::unique_ptr<Thread> _thread;
};

}  // namespace ZEB
