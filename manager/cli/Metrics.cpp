#include "cli/Metrics.h"

#include "cli/DoctorReport.h"
#include "values/ManagerError.h"

namespace ZebManager {

std::optional<WorkerReading> readWorker(const std::string& runFolder) try {
  const auto report = readReport(runFolder);
  if (!report || !isAlive(*report)) return std::nullopt;
  return WorkerReading{.started = static_cast<double>(report->started),
                       .lastPass = static_cast<double>(report->passAt),
                       .passSeconds = report->passSeconds,
                       .passWorked = report->passOutcome != "failed",
                       .passes = report->passes,
                       .failures = report->failures,
                       .linkMessages = report->linkMessages};
} catch (const ManagerError&) {
  return std::nullopt;  // not for this user to read, or half of it: doctor says which
}

}  // namespace ZebManager
