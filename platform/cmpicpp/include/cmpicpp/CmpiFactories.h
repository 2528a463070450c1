#pragma once

#include "cmpicpp/CmpiArray.h"
#include "cmpicpp/CmpiBroker.h"
#include "cmpicpp/CmpiInstance.h"

namespace CmpiCpp {

// Values need no object manager to be made; the factories take one all the same, so that a value can come to
// be made differently without a change to those who ask for it.

inline CmpiObjectPath makeCmpiObjectPath(const CmpiBroker& /*broker*/) {
  return {};
}
inline CmpiObjectPath makeCmpiObjectPath(const CmpiBroker& /*broker*/, std::string_view nameSpace,
                                         const CmpiName& className) {
  return {nameSpace, className};
}

inline CmpiInstance makeCmpiInstance(const CmpiBroker& /*broker*/, const CmpiObjectPath& path) {
  return CmpiInstance(path);
}

inline CmpiArray makeCmpiArray(const CmpiBroker& /*broker*/, std::size_t size, CMPIType elementType) {
  return {size, elementType};
}

/// A point in time, in seconds since the epoch; one before the epoch is the epoch.
inline CmpiDateTime makeCmpiDateTime(const CmpiBroker& /*broker*/, std::int64_t seconds) {
  constexpr std::uint64_t kMicrosecondsPerSecond = 1'000'000;
  return {seconds > 0 ? static_cast<std::uint64_t>(seconds) * kMicrosecondsPerSecond : 0, false};
}

/// A point in time or an interval, in microseconds.
inline CmpiDateTime makeCmpiDateTime(const CmpiBroker& /*broker*/, std::uint64_t microseconds,
                                     bool interval) {
  return {microseconds, interval};
}

}  // namespace CmpiCpp
