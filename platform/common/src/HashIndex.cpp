#include "common/HashIndex.h"

#include <algorithm>

namespace ZEB {
namespace {

std::uint32_t folded(std::size_t hash) {
  return static_cast<std::uint32_t>(hash ^ hash >> 32);
}

}  // namespace

void HashIndex::add(std::size_t hash, std::uint32_t number) {
  const std::uint32_t kept = folded(hash);
  if (!_entries.empty() && _entries.back().hash == kept && _entries.back().number == number) return;
  _sorted = _sorted && (_entries.empty() || _entries.back().hash <= kept);
  _entries.push_back({kept, number});
}

std::span<const HashIndex::Entry> HashIndex::find(std::size_t hash) {
  const auto before = [](const Entry& a, const Entry& b) { return a.hash < b.hash; };
  if (!_sorted) {
    std::stable_sort(_entries.begin(), _entries.end(), before);
    _sorted = true;
  }
  const auto [first, last] =
      std::equal_range(_entries.begin(), _entries.end(), Entry{folded(hash), 0}, before);
  return {first, last};
}

void HashIndex::clear() {
  _entries.clear();
  _sorted = true;
}

}  // namespace ZEB
