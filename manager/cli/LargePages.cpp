#include "cli/LargePages.h"

#include <malloc.h>
#include <sys/mman.h>

#include <cstdint>
#include <cstdlib>

namespace ZebManager {

void useLargePages() {
  constexpr int kReserve = 64 << 20;
  constexpr std::size_t kLargePage = 2U << 20;
  mallopt(M_MMAP_THRESHOLD, kReserve / 2);
  mallopt(M_TRIM_THRESHOLD, 4 * kReserve);
  mallopt(M_TOP_PAD, kReserve);
  // More than the heap has left, so that it grows by the reserve, which costs nothing until it is used.
  void* const grown = std::malloc(kLargePage);
  const auto begin = (reinterpret_cast<std::uintptr_t>(grown) + kLargePage - 1) / kLargePage * kLargePage;
  madvise(reinterpret_cast<void*>(begin), kReserve, MADV_HUGEPAGE);
  std::free(grown);
}

}  // namespace ZebManager
