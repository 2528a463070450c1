#include "values/Arena.h"

#include <algorithm>

namespace ZebManager {
namespace {

constexpr std::size_t kFirstBlock = 1U << 12;
constexpr std::size_t kLargestStep = 1U << 16;

}  // namespace

void* Arena::allocate(std::size_t size, std::size_t alignment) {
  const std::size_t start = (_used + alignment - 1) & ~(alignment - 1);
  if (_block < _blocks.size() && start + size <= _blocks[_block].size) {
    _used = start + size;
    return _blocks[_block].bytes.get() + start;
  }
  return allocateInNewBlock(size);
}

void* Arena::allocateInNewBlock(std::size_t size) {
  if (!_blocks.empty()) ++_block;
  // Blocks that a release left behind are used again when they are large enough.
  if (_block == _blocks.size() || _blocks[_block].size < size) {
    _blocks.resize(_block);
    const std::size_t step = _blocks.empty() ? kFirstBlock : std::min(_blocks.back().size * 2, kLargestStep);
    const std::size_t bytes = std::max(step, size);
    _blocks.push_back({std::make_unique_for_overwrite<std::byte[]>(bytes), bytes});
  }
  _used = size;
  return _blocks[_block].bytes.get();
}

std::string_view Arena::copy(std::string_view text) {
  char* const bytes = static_cast<char*>(allocate(text.size() + 1, 1));
  *std::copy(text.begin(), text.end(), bytes) = '\0';
  return {bytes, text.size()};
}

const void* Arena::mark() {
  const std::size_t block = _block;
  const std::size_t used = _used;
  _lastMark = make<Mark>(_lastMark, block, used);
  return _lastMark;
}

bool Arena::release(const void* mark) {
  const Mark* found = _lastMark;
  while (found && found != mark) found = found->previous;
  if (!found) return false;
  const Mark kept = *found;
  _lastMark = kept.previous;
  _block = kept.block;
  _used = kept.used;
  return true;
}

}  // namespace ZebManager
