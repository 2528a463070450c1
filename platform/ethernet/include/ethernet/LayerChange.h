#pragma once

#include <cstdint>
#include <set>

namespace ZEB {

/// Where the kernel has announced that addresses or default routes changed.
struct LayerChange {
  bool anywhere = false;               ///< nobody knows where else
  std::set<std::uint32_t> interfaces;  ///< numbers
};

}  // namespace ZEB
