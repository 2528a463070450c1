#include "metrics/Metrics.h"

#include "broker/Namespace.h"

namespace ZebManager {
namespace {

constexpr std::string_view kMessage = "metrics ";  // no CIM-XML begins so

template <class Thing>
std::span<const Thing> only(const Thing& thing) {
  return {&thing, 1};
}

template <class Thing>
std::span<const Thing> all(const std::vector<Thing>& things) {
  return things;
}

}  // namespace

/// All but counters, written, and what theirs begin with.
struct Metrics::Kept {
  std::optional<std::uint64_t> state;
  std::vector<std::string> keys;  ///< of the counters that were there
  std::string before, after;      ///< the families before those of counters and behind them
  std::vector<Labels> identities;
  std::vector<std::size_t> places;  ///< of their counters

  Kept(Namespace& model, const AskPartners& askPartners, const std::vector<std::string>& counterKeys,
       MetricFormat format);
  bool holdsFor(const Namespace& model, const CounterReadings& read) const {
    return state && state == model.state() && keys == read.keys;
  }
};

Metrics::Kept::Kept(Namespace& model, const AskPartners& askPartners,
                    const std::vector<std::string>& counterKeys, MetricFormat format)
    : keys(counterKeys) {
  MachineReading reading;
  readMachine(model, keys, reading);
  const LinkPartners partners = askPartners();
  state = model.state();
  std::vector<CounterReading> counters;
  for (auto& [device, place] : reading.counters) {
    counters.push_back({std::move(device), nullptr});
    places.push_back(place);
  }
  identities = Exposition::identitiesOf(counterMetrics(), all(counters));
  Exposition first(format);
  first.add(machineMetrics(), only(reading));
  first.add(portMetrics(), all(reading.ports));
  first.add(portPartnerMetrics(), all(partners.ports));
  before = first.take();
  Exposition last(format);
  last.add(teamMetrics(), all(reading.tree.teams));
  last.add(memberMetrics(), all(reading.members));
  last.add(lacpTeamMetrics(), all(partners.teams));
  last.add(lacpMemberMetrics(), all(partners.members));
  last.add(vlanMetrics(), all(reading.vlans));
  last.add(gatewayMetrics(), all(reading.gateways));
  after = last.take();
}

std::string Metrics::text(Namespace& model, const AskPartners& askPartners,
                          const std::optional<WorkerReading>& worker, MetricFormat format) {
  constexpr std::size_t kSeries = 80;  // bytes, about
  const CounterReadings read = readCounters(model);
  std::shared_ptr<const Kept> kept;
  {
    const std::lock_guard lock(_mutex);
    kept = keptIn(format);
  }
  if (!kept || !kept->holdsFor(model, read)) {
    kept = std::make_shared<const Kept>(model, askPartners, read.keys, format);
    const std::lock_guard lock(_mutex);
    keptIn(format) = kept;
  }
  std::vector<CounterReading> counters;
  for (const std::size_t place : kept->places) counters.push_back({{}, &read.counters[place]});
  const auto rows = counterMetrics().numbers;
  Exposition whole(format,
                   kept->before.size() + kept->after.size() + kSeries * rows.size() * (1 + counters.size()));
  whole.add(kept->before);
  whole.addNumbers(rows, all(counters), all(kept->identities));
  whole.add(kept->after);
  if (worker) whole.add(workerMetrics(), only(*worker));
  return whole.take();
}

std::string metricsMessage(MetricFormat format) {
  return std::string(kMessage) + contentTypeOf(format);
}

std::optional<MetricFormat> metricsAskedFor(std::string_view message) {
  for (const MetricFormat format : {MetricFormat::Text, MetricFormat::OpenMetrics}) {
    if (message == metricsMessage(format)) return format;
  }
  return std::nullopt;
}

}  // namespace ZebManager
