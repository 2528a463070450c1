#include "common/PerfmonDecorator.h"

#include <algorithm>

namespace ZEB {

PerfmonDecorator::~PerfmonDecorator() {
  for (const auto& [operation, sum] : _sums) {
    logger().info("perfmon %s: %d calls, %d failed, %d us in all, %d us at most", operation, sum.calls,
                  sum.failures, sum.total.count() / 1000, sum.longest.count() / 1000);
  }
}

std::map<std::string, PerfmonDecorator::Sum> PerfmonDecorator::sums() const {
  const std::lock_guard lock(_mutex);
  return _sums;
}

void PerfmonDecorator::around(const char* operation, const CmpiCpp::CmpiObjectPath& /*subject*/,
                              const std::function<void()>& call) {
  const auto began = std::chrono::steady_clock::now();
  const auto note = [&](bool failed) {
    const std::chrono::nanoseconds took = std::chrono::steady_clock::now() - began;
    const std::lock_guard lock(_mutex);
    Sum& sum = _sums[operation];
    ++sum.calls;
    sum.failures += failed ? 1 : 0;
    sum.total += took;
    sum.longest = std::max(sum.longest, took);
  };
  try {
    call();
  } catch (...) {
    note(true);
    throw;
  }
  note(false);
}

}  // namespace ZEB
