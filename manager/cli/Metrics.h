// The command `metrics`, and what the plug-in's process answers for it.
#pragma once

#include <optional>
#include <string>

#include "metrics/Metrics.h"

namespace ZebManager {

/// The report that the worker of a run directory has left; nothing where none is alive.
std::optional<WorkerReading> readWorker(const std::string& runFolder);

}  // namespace ZebManager
