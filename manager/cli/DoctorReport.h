// What a plug-in says of its own health.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ZebManager {

/// A file that the plug-in needs, and what is wrong with it; empty when nothing is.
struct DoctorFile {
  std::string file;
  std::string failure;
};

/// The contents of `health.json`. Times are seconds since the epoch.
struct DoctorReport {
  std::string json;  ///< as it was read
  pid_t pid = 0;
  std::string process;
  std::int64_t started = 0;
  bool autostart = false;
  std::int64_t passAt = 0;
  std::string passOutcome;
  std::string passFailure;
  double passSeconds = 0;
  std::uint64_t passes = 0;
  std::uint64_t failures = 0;
  std::uint64_t linkMessages = 0;
  bool indications = false;
  std::string source;
  std::string unread;
  std::vector<std::string> configuration;  ///< what is wrong with it
  std::vector<DoctorFile> stores;
  DoctorFile records;
};

/// Nothing when there is no such file. Throws ManagerError for one that is no report.
std::optional<DoctorReport> readReport(const std::string& folder);

/// Whether the process that wrote the report is still there.
bool isAlive(const DoctorReport& report);

}  // namespace ZebManager
