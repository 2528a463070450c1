// What the schema did not allow.
#pragma once

#include <mutex>
#include <string>
#include <vector>

namespace ZebManager {

/// Values that a provider wanted to give to a property and that were refused. Providers tend not to look at
/// the answer, and the property is then missing without a word; this is where it can be seen. Keeps the first
/// hundred. Safe from any thread.
class RefusalLog {
 public:
  void note(std::string refusal) {
    const std::lock_guard lock(_mutex);
    if (_refusals.size() < kMost) _refusals.push_back(std::move(refusal));
  }
  /// What came since it was taken last.
  std::vector<std::string> take() {
    const std::lock_guard lock(_mutex);
    return std::exchange(_refusals, {});
  }

 private:
  static constexpr std::size_t kMost = 100;

  std::mutex _mutex;
  std::vector<std::string> _refusals;
};

}  // namespace ZebManager
