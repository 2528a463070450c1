#pragma once

#include <cstdint>

namespace ZEB {

/// Counts what makes instances say something else though the facts behind them are the same: they were built
/// anew, remember something else, or are shown or hidden. Safe from any thread.
class ServedState {
 public:
  /// To be called after the change, so that who has read the number before it sees another one.
  static void changed();
  static std::uint64_t number();
};

}  // namespace ZEB
