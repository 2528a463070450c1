// The metrics of a machine.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "metrics/Exposition.h"

namespace ZebManager {

/// What a namespace, LACP and a worker say, without the end. Throws ManagerError when the plug-in refuses.
std::string metricsOf(Namespace& model, const LacpReading& lacp, const std::optional<WorkerReading>& worker,
                      MetricFormat format);

/// A message that asks the plug-in's process for that, and what it asks for; nothing for another message.
std::string metricsMessage(MetricFormat format);
std::optional<MetricFormat> metricsAskedFor(std::string_view message);

}  // namespace ZebManager
