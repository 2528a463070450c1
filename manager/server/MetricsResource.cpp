#include "server/MetricsResource.h"

#include "broker/Broker.h"
#include "cimxml/AnswerReader.h"
#include "tree/PropertyView.h"
#include "values/ManagerError.h"

namespace ZebManager {

void AlertCounts::add(const std::string& instanceElement) {
  Arena arena;
  const Instance* const alert = readInstanceElement(instanceElement, arena, _classes, kNameSpace);
  const std::lock_guard lock(_mutex);
  ++_counts[PropertyView(*alert).text("EventID")];
}

std::vector<AlertCount> AlertCounts::all() const {
  const std::lock_guard lock(_mutex);
  std::vector<AlertCount> all;
  for (const auto& [event, count] : _counts) all.push_back({event, count});
  return all;
}

MetricsText metricsText(ProviderSupervisor& plugin, const AlertCounts& alerts) {
  return [&plugin, &alerts](MetricFormat format) {
    ProviderSupervisor::Answer answer = plugin.perform(metricsMessage(format), true);
    if (answer.outcome != ProviderSupervisor::Answer::Outcome::Done) throw ManagerError(answer.body);
    const std::vector<AlertCount> counts = alerts.all();
    Exposition own(format);
    own.add<AlertCount>(alertMetrics(), counts);
    answer.body.append(own.text()).append(endOf(format));
    return std::move(answer.body);
  };
}

Resource metricsResource(MetricsText text) {
  return [text = std::move(text)](const HttpHead& head) {
    const MetricFormat format = metricFormatFor(head.header("Accept"));
    try {
      return HttpAnswer{200, text(format), {{"Content-Type", contentTypeOf(format)}}};
    } catch (const ManagerError& error) {
      return httpError(503, "", error.what());
    }
  };
}

}  // namespace ZebManager
