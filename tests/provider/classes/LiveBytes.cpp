#include "LiveBytes.h"

#include <malloc.h>

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

// Beside what can be used, each block has a word of the heap's.
constexpr std::size_t kBlockOverhead = sizeof(std::size_t);

std::atomic<std::size_t> live{0};

/// Null when there is no memory.
void* tryToTake(std::size_t size) noexcept {
  void* memory = std::malloc(size == 0 ? 1 : size);
  if (memory) live += malloc_usable_size(memory) + kBlockOverhead;
  return memory;
}

void* take(std::size_t size) {
  void* memory = tryToTake(size);
  if (!memory) throw std::bad_alloc();
  return memory;
}

void give(void* memory) noexcept {
  if (!memory) return;
  live -= malloc_usable_size(memory) + kBlockOverhead;
  std::free(memory);
}

}  // namespace

std::size_t ZEB::test::liveBytes() {
  return live;
}

void* operator new(std::size_t size) {
  return take(size);
}
void* operator new[](std::size_t size) {
  return take(size);
}
void operator delete(void* memory) noexcept {
  give(memory);
}
void operator delete[](void* memory) noexcept {
  give(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  give(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  give(memory);
}
// A sanitizer brings these itself, and would find its own memory given back here.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return tryToTake(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return tryToTake(size);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
  give(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept {
  give(memory);
}
