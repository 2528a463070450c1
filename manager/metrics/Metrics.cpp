#include "metrics/Metrics.h"

namespace ZebManager {
namespace {

constexpr std::string_view kMessage = "metrics ";  // no CIM-XML begins so

template <class Thing>
std::span<const Thing> only(const Thing& thing) {
  return {&thing, 1};
}

}  // namespace

std::string metricsOf(Namespace& model, const LacpReading& lacp, const std::optional<WorkerReading>& worker,
                      MetricFormat format) {
  MachineReading reading;
  readMachine(model, reading);
  Exposition all(format);
  all.add(machineMetrics(), only(reading));
  all.add<PortReading>(portMetrics(), reading.ports);
  all.add<TreeTeam>(teamMetrics(), reading.tree.teams);
  all.add<MemberReading>(memberMetrics(), reading.members);
  all.add<LacpTeamReading>(lacpTeamMetrics(), lacp.teams);
  all.add<LacpMemberReading>(lacpMemberMetrics(), lacp.members);
  all.add<VlanReading>(vlanMetrics(), reading.vlans);
  all.add<GatewayReading>(gatewayMetrics(), reading.gateways);
  if (worker) all.add(workerMetrics(), only(*worker));
  return all.text();
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
