#include "ethernet/FactsHandle.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace ZEB::ethernet {

std::mutex& handleMutex(const void* handle) {
  constexpr std::size_t kMutexes = 64;
  static constinit std::array<std::mutex, kMutexes> mutexes{};
  // Handles are members of records of some dozens of bytes: the low bits say little.
  return mutexes[(reinterpret_cast<std::uintptr_t>(handle) >> 5) % kMutexes];
}

}  // namespace ZEB::ethernet
