#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>

namespace ZEB::test {

/// The system calls of a piece of work, by number.
struct SystemCalls {
  std::map<long, int> count;
  std::size_t bytesReceived = 0;  ///< by recvfrom

  int of(long number) const {
    const auto found = count.find(number);
    return found == count.end() ? 0 : found->second;
  }
};

/// Runs `prepare` and then `work` in a child process and counts the system calls that `work` makes. Nothing
/// where tracing is not allowed or the child failed.
std::optional<SystemCalls> traced(const std::function<void()>& prepare, const std::function<void()>& work);

}  // namespace ZEB::test
