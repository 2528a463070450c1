#include "server/FailureLog.h"

namespace ZebManager {
namespace {

constexpr std::chrono::seconds kRound{60};
constexpr unsigned kMostLines = 10;
/// Clients come from anywhere.
constexpr std::size_t kMostRows = 4096;

}  // namespace

void FailureLog::add(const std::string& what, const std::string& client, Clock::time_point now) {
  if (_rows.size() >= kMostRows)
    std::erase_if(_rows, [&](const auto& row) { return now - row.second.begin >= kRound; });
  if (_rows.size() >= kMostRows && !_rows.contains(client)) return;
  Row& row = _rows.try_emplace(client, Row{now}).first->second;
  if (now - row.begin >= kRound) row = {now};
  if (++row.lines > kMostLines) return;
  _log(row.lines < kMostLines ? what : what + "; further ones of this minute are not told");
}

}  // namespace ZebManager
