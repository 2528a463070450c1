#pragma once

#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <vector>

namespace ZebBench {

using Clock = std::chrono::steady_clock;

inline double millisecondsSince(Clock::time_point begin) {
  return std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
}

/// Milliseconds that the process, or those that it has waited for, have run on a processor, in the kernel and
/// outside.
inline double processorMilliseconds(int whose = RUSAGE_SELF) {
  rusage usage{};
  getrusage(static_cast<__rusage_who>(whose), &usage);
  const auto of = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) * 1e-3;
  };
  return of(usage.ru_utime) + of(usage.ru_stime);
}

/// Milliseconds of each of `rounds` rounds of `calls` calls, for one call.
template <class Call>
std::vector<double> timed(int rounds, int calls, Call call) {
  std::vector<double> times;
  for (int round = 0; round < rounds; ++round) {
    const auto begin = Clock::now();
    for (int i = 0; i < calls; ++i) call();
    times.push_back(millisecondsSince(begin) / calls);
  }
  return times;
}

inline double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values.empty() ? 0 : values[values.size() / 2];
}

}  // namespace ZebBench
