#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace ZEB {

/// From a hash to the numbers that were added under it, in the order of adding; now and then to others as
/// well, because half of the hash is kept. One sorted vector, because it is filled at once and then asked: 8
/// bytes an entry. A look-up may sort, so it needs the same lock as a change.
class HashIndex {
 public:
  struct Entry {
    std::uint32_t hash;
    std::uint32_t number;
  };

  /// Adding the same number under the same hash twice in a row adds it once.
  void add(std::size_t hash, std::uint32_t number);
  std::span<const Entry> find(std::size_t hash);
  void clear();

 private:
  std::vector<Entry> _entries;
  bool _sorted = true;
};

}  // namespace ZEB
