#include "values/KeptMemory.h"

#include <malloc.h>

namespace ZebManager {

void keepMemory() {
  constexpr int kKept = 64 << 20;
  constexpr int kHeaps = 2;  // each of which keeps as much
  mallopt(M_ARENA_MAX, kHeaps);
  mallopt(M_MMAP_THRESHOLD, kKept / 2);
  mallopt(M_TRIM_THRESHOLD, kKept);
}

}  // namespace ZebManager
