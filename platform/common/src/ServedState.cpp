#include "common/ServedState.h"

#include <atomic>

namespace ZEB {
namespace {

std::atomic<std::uint64_t> changes{0};

}  // namespace

void ServedState::changed() {
  ++changes;
}

std::uint64_t ServedState::number() {
  return changes;
}

}  // namespace ZEB
