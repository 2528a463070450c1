// Memory that is given out piece by piece and taken back at once.
#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace ZebManager {

/// Everything that a call makes lives in one of these and dies with it. Not for use by two threads at a time.
class Arena {
 public:
  Arena() = default;
  Arena(const Arena&) = delete;
  Arena& operator=(const Arena&) = delete;
  ~Arena() = default;

  void* allocate(std::size_t size, std::size_t alignment = alignof(std::max_align_t));

  /// The object is never destroyed, so it must not need to be.
  template <class T, class... Arguments>
  T* make(Arguments&&... arguments) {
    static_assert(std::is_trivially_destructible_v<T>);
    return ::new (allocate(sizeof(T), alignof(T))) T{std::forward<Arguments>(arguments)...};
  }

  template <class T>
  T* makeArray(std::size_t count) {
    static_assert(std::is_trivially_destructible_v<T>);
    return ::new (allocate(sizeof(T) * count, alignof(T))) T[count]();
  }

  /// A copy with a null byte behind it.
  std::string_view copy(std::string_view text);

  /// Remembers how much is in use. The mark belongs to the arena.
  const void* mark();
  /// Takes back what was given out after the mark, later marks included; false when there is no such mark.
  bool release(const void* mark);
  bool marked() const { return _lastMark != nullptr; }

 private:
  struct Block {
    std::unique_ptr<std::byte[]> bytes;
    std::size_t size;
  };
  struct Mark {
    const Mark* previous;
    std::size_t block;
    std::size_t used;
  };

  void* allocateInNewBlock(std::size_t size);

  std::vector<Block> _blocks;
  std::size_t _block = 0;  // the one in use
  std::size_t _used = 0;   // bytes of it
  const Mark* _lastMark = nullptr;
};

}  // namespace ZebManager
