// How calls stand in the provider's process at one moment.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ZebManager {

struct Pulse {
  struct Performed {
    std::uint64_t number;         ///< of the call
    std::uint64_t processorTime;  ///< microseconds that it has used so far
    bool awake;  ///< it runs, would run if there were a processor for it, or waits for a disk
  };

  std::vector<Performed> calls;
  bool othersAwake = false;  ///< a thread of the process that performs no call, the one that tells left out

  bool anyAwake() const;
};

std::string pack(const Pulse& pulse);
/// Throws FrameError.
Pulse unpackPulse(std::string_view packed);

}  // namespace ZebManager
