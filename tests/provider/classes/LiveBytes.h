#pragma once

#include <cstddef>

namespace ZEB::test {

/// Bytes that `new` has taken from the heap in this binary and that are still in use, with the heap's own
/// overhead as far as `malloc_usable_size` tells it.
std::size_t liveBytes();

}  // namespace ZEB::test
