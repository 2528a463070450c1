#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "common/DataStore.h"
#include "common/IndicationDB.h"

namespace ZEB {

/// How the background work is doing. Times are seconds since the epoch.
struct HealthReport {
  std::int64_t started = 0;    ///< when the provider was made
  std::int64_t passAt = 0;     ///< when the last pass ended
  std::string passOutcome;     ///< "done", "skipped" (nothing was due) or "failed"
  std::string passFailure;     ///< why it failed
  double passSeconds = 0;      ///< how long it took
  std::uint64_t passes = 0;    ///< since the provider was made
  std::uint64_t failures = 0;  ///< those of them that failed
  std::uint64_t linkMessages = 0;
  bool indications = false;  ///< somebody listens
  std::string unread;        ///< why this host, or the recording, could last not be read; empty when it could
  std::vector<DataStoreState> stores;
  IndicationRecordsState records;
};

/// The name of the file that a report is posted as.
inline constexpr char kHealthFile[] = "health.json";

/// The report as the text of that file, with what the process knows by itself: its id and name, and what is
/// configured.
std::string healthText(const HealthReport& report);

}  // namespace ZEB
