#include "cmpicpp/CmpiName.h"

#include <cstdint>
#include <cstring>

namespace CmpiCpp {
namespace {

// CIM names are ASCII, whatever locale the object manager runs in.
constexpr char lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

/// Eight characters at once: of each byte from 'A' to 'Z', and of no other, the bit of lower case is set.
constexpr std::uint64_t lowered(std::uint64_t word) {
  constexpr std::uint64_t kEach = 0x0101010101010101;
  const std::uint64_t low = word & kEach * 0x7f;
  const std::uint64_t fromA =
      low + kEach * (0x80 - 'A');  // the high bit of a byte says whether it is reached
  const std::uint64_t beyondZ = low + kEach * (0x7f - 'Z');
  const std::uint64_t upper = fromA & ~beyondZ & ~word & kEach * 0x80;
  return word | upper >> 2;
}
static_assert(lowered(0x405a417a615bda41) == 0x407a617a615bda61);

constexpr std::uint64_t mixed(std::uint64_t hash, std::uint64_t word) {
  hash = (hash ^ word) * 0x9e3779b97f4a7c15;
  return hash ^ hash >> 32;
}

}  // namespace

bool CmpiName::equal(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  if (std::memcmp(a.data(), b.data(), a.size()) == 0) return true;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (a[i] != b[i] && lower(a[i]) != lower(b[i])) return false;
  }
  return true;
}

std::size_t CmpiName::hash(std::string_view name) {
  std::uint64_t hash = name.size();
  std::uint64_t word = 0;
  if (name.size() < sizeof word) {
    std::memcpy(&word, name.data(), name.size());
    return mixed(hash, lowered(word));
  }
  // The last word may begin within the one before.
  const char* const last = name.data() + name.size() - sizeof word;
  for (const char* at = name.data(); at < last; at += sizeof word) {
    std::memcpy(&word, at, sizeof word);
    hash = mixed(hash, lowered(word));
  }
  std::memcpy(&word, last, sizeof word);
  return mixed(hash, lowered(word));
}

}  // namespace CmpiCpp
