#pragma once

#include <cstdint>

namespace ZEB {

/// How much of a record a refresh is wanted for. What is asked for is as new as with `Everything`; the rest
/// may be, may stay as it was, or may not be known until it is asked for.
enum class RefreshPart : std::uint8_t {
  Everything,
  Link,      ///< the interface and what ethtool says of it: all but addresses and the default gateway
  Counters,  ///< the counters and when they were read
};

}  // namespace ZEB
