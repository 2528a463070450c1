#include "values/CallMemory.h"

namespace ZebManager {
namespace {

thread_local Arena* threadArena = nullptr;

}  // namespace

Arena* currentArena() {
  return threadArena;
}

Arena* exchangeCurrentArena(Arena* arena) {
  return std::exchange(threadArena, arena);
}

}  // namespace ZebManager
