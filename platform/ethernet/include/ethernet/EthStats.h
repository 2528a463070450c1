#pragma once

#include <cstdint>
#include <string>

namespace ZEB {

/// Counters of one port since its driver was loaded. The 32-bit ones are the low half of what the kernel
/// counts, so they wrap. A counter that was not read stays as the caller left it and has no bit in `known`.
struct ethStats_st {
  /// One bit for each counter, in the order of the members.
  enum Counter : std::uint32_t {
    kBytesTransmitted = 1u << 0,
    kBytesReceived = 1u << 1,
    kPacketsTransmitted = 1u << 2,
    kPacketsReceived = 1u << 3,
    kAlignmentErrors = 1u << 4,
    kFcsErrors = 1u << 5,
    kSingleCollisionFrames = 1u << 6,
    kMultipleCollisionFrames = 1u << 7,
    kDeferredTransmissions = 1u << 8,
    kLateCollisions = 1u << 9,
    kExcessiveCollisions = 1u << 10,
    kInternalMacTransmitErrors = 1u << 11,
    kInternalMacReceiveErrors = 1u << 12,
  };

  std::uint64_t bytesTransmitted = 0;
  std::uint64_t bytesReceived = 0;
  std::uint64_t packetsTransmitted = 0;
  std::uint64_t packetsReceived = 0;
  std::uint32_t alignmentErrors = 0;
  std::uint32_t fcsErrors = 0;
  std::uint32_t singleCollisionFrames = 0;
  std::uint32_t multipleCollisionFrames = 0;
  std::uint32_t deferredTransmissions = 0;
  std::uint32_t lateCollisions = 0;
  std::uint32_t excessiveCollisions = 0;
  std::uint32_t internalMacTransmitErrors = 0;
  std::uint32_t internalMacReceiveErrors = 0;
  std::string interfaceName;
  std::int64_t sampleTime = 0;  ///< seconds since the epoch
  std::uint32_t known = 0;      ///< which counters were read
};

}  // namespace ZEB
