// How long tests go on that could go on for ever.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

namespace ZEB::test {

#if defined(ZEB_SANITIZE_ADDRESS) || defined(ZEB_SANITIZE_THREAD)
inline constexpr bool kSanitized = true;
#else
inline constexpr bool kSanitized = false;
#endif

/// Whether ./test --soak asks for the long versions.
inline bool isSoak() {
  const char* const wanted = std::getenv("ZEB_SOAK");
  return wanted && std::string_view(wanted) == "1";
}

/// `soak` where the long versions are wanted, else `usual`.
template <class Length>
Length length(Length usual, Length soak) {
  return isSoak() ? soak : usual;
}

/// What falls to the kind of object manager that a test runs with.
struct Share {
  std::size_t number = 0;  ///< from 0
  std::size_t of = 1;
};

/// Under a sanitizer, where everything takes many times as long, each kind of object manager has a share of
/// its own of the usual length. Otherwise, and in the long versions, each has all of it.
Share shareOfManager();

/// Of rounds 0 to `count` - 1, which do not need each other, those of the share.
std::vector<std::uint64_t> sharedRounds(std::uint64_t count);

}  // namespace ZEB::test
