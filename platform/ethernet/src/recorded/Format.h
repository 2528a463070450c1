#pragma once

namespace ZEB::ethernet {

inline constexpr const char* kSnapshotFormat = "zeb-host-snapshot";
inline constexpr const char* kTimelineFormat = "zeb-host-timeline";
inline constexpr int kFormatVersion = 1;

}  // namespace ZEB::ethernet
