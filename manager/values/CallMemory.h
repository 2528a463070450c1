// The arena that takes what the broker makes on the current thread.
#pragma once

#include "values/Arena.h"

namespace ZebManager {

/// Null on a thread that is in no call and not attached.
Arena* currentArena();

/// Makes an arena the current one of this thread; null takes it away. Returns the one before.
Arena* exchangeCurrentArena(Arena* arena);

/// Makes an arena the current one for the length of a scope.
class ArenaScope {
 public:
  explicit ArenaScope(Arena& arena) : _previous(exchangeCurrentArena(&arena)) {}
  ArenaScope(const ArenaScope&) = delete;
  ArenaScope& operator=(const ArenaScope&) = delete;
  ~ArenaScope() { exchangeCurrentArena(_previous); }

 private:
  Arena* _previous;
};

}  // namespace ZebManager
