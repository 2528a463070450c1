// What Prometheus scrapes.
#pragma once

#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "isolation/ProviderSupervisor.h"
#include "metrics/MachineReading.h"
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

/// Metrics, made in the plug-in's process, in the format that the client prefers.
Resource metricsResource(ProviderSupervisor& plugin, const AlertCounts& alerts);

}  // namespace ZebManager
