// The metrics of a machine.
#pragma once

#include <array>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "metrics/Exposition.h"

namespace ZebManager {

/// Makes them time and again: as long as the namespace is in one state it is asked for counters alone, and
/// nothing but those is written anew. Safe from several threads.
class Metrics {
 public:
  /// What a namespace, of which nothing else was asked, the other ends of cables and a worker say, without
  /// the end. Throws ManagerError when the plug-in refuses.
  std::string text(Namespace& model, const AskPartners& askPartners,
                   const std::optional<WorkerReading>& worker, MetricFormat format);

 private:
  struct Kept;

  std::shared_ptr<const Kept>& keptIn(MetricFormat format) { return _kept[format == MetricFormat::Text]; }

  std::mutex _mutex;  ///< guards what follows; never held while something is asked
  std::array<std::shared_ptr<const Kept>, 2> _kept;
};

/// A message that asks the plug-in's process for that, and what it asks for; nothing for another message.
std::string metricsMessage(MetricFormat format);
std::optional<MetricFormat> metricsAskedFor(std::string_view message);

}  // namespace ZebManager
