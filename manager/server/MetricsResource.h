// What Prometheus scrapes.
#pragma once

#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "isolation/ProviderSupervisor.h"
#include "metrics/Metrics.h"
#include "server/Resources.h"

namespace ZebManager {

class ClassRepository;

/// Alerts since the server started, by their identifier. Safe from any thread.
class AlertCounts {
 public:
  explicit AlertCounts(const ClassRepository& classes) : _classes(classes) {}

  void add(const std::string& instanceElement);
  std::vector<AlertCount> all() const;

 private:
  const ClassRepository& _classes;
  mutable std::mutex _mutex;
  std::map<std::string, std::uint64_t> _counts;
};

/// All metrics in a format, those of the machine made in the plug-in's process. Throws ManagerError.
using MetricsText = std::function<std::string(MetricFormat)>;
MetricsText metricsText(ProviderSupervisor& plugin, const AlertCounts& alerts);

/// They in the format that the client prefers.
Resource metricsResource(MetricsText text);

}  // namespace ZebManager
