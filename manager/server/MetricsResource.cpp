#include "server/MetricsResource.h"

#include "metrics/Metrics.h"

namespace ZebManager {

Resource metricsResource(ProviderSupervisor& plugin) {
  return [&plugin](const HttpHead& head) {
    const MetricFormat format = metricFormatFor(head.header("Accept"));
    ProviderSupervisor::Answer answer = plugin.perform(metricsMessage(format), true);
    if (answer.outcome != ProviderSupervisor::Answer::Outcome::Done) return httpError(503, "", answer.body);
    return HttpAnswer{200, std::move(answer.body) + endOf(format), {{"Content-Type", contentTypeOf(format)}}};
  };
}

}  // namespace ZebManager
