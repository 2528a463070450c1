#include "server/LoginBackOff.h"

#include <algorithm>

namespace ZebManager {
namespace {

constexpr LoginBackOff::Seconds kLongest{30};
constexpr LoginBackOff::Seconds kForgotten{600};
/// Names come from clients.
constexpr std::size_t kMostRows = 4096;

}  // namespace

LoginBackOff::Seconds LoginBackOff::pauseOf(const std::string& name, Clock::time_point now) const {
  const auto found = _rows.find(name);
  if (found == _rows.end() || found->second.notBefore <= now) return Seconds(0);
  return std::chrono::ceil<Seconds>(found->second.notBefore - now);
}

bool LoginBackOff::failed(const std::string& name, Clock::time_point now) {
  if (_rows.size() >= kMostRows) forget(now);
  Row& row = _rows[name];
  row.last = now;
  if (++row.failures <= _freeFailures) return false;
  const unsigned paused = std::min(row.failures - _freeFailures - 1, 16U);
  row.notBefore = now + std::min(Seconds(1) * (1 << paused), kLongest);
  return paused == 0;
}

/// What has not failed for long, or else what has failed least lately.
void LoginBackOff::forget(Clock::time_point now) {
  std::erase_if(_rows, [&](const auto& row) { return now - row.second.last > kForgotten; });
  if (_rows.size() < kMostRows) return;
  _rows.erase(std::min_element(_rows.begin(), _rows.end(),
                               [](const auto& a, const auto& b) { return a.second.last < b.second.last; }));
}

}  // namespace ZebManager
