#pragma once

#include <string>
#include <vector>

#include "snapshot/HostSnapshot.h"
#include "snapshot/Outcome.h"

namespace ZEB::ethernet {

/// A snapshot and the time from which it holds, in seconds after playback began.
struct TimedSnapshot {
  double at = 0;
  HostSnapshot snapshot;
};

/// The largest text that is taken for a snapshot file: some 40,000 ports.
inline constexpr std::size_t kLargestSnapshotFile = std::size_t{64} * 1024 * 1024;

/// Reads the text of a snapshot file, which is one moment, or of a timeline, which is several in the order of
/// their times. A key that is not known is passed over and one that is missing leaves its value unknown; a
/// value of the wrong kind makes the file bad, and the failure names its place.
Outcome<std::vector<TimedSnapshot>> readSnapshots(const std::string& text);

}  // namespace ZEB::ethernet
