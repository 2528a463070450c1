// Every metric that there is: how it is called, what it says and where that is from.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "metrics/LinkPartners.h"
#include "metrics/MachineReading.h"

namespace ZebManager {

enum class MetricKind { Gauge, Counter, Info };

/// What all series of a metric have in common. The names of counters end in "_total", those of information in
/// "_info".
struct MetricFamily {
  const char* name;
  MetricKind kind;
  const char* unit;    ///< which the name has; empty for a number of things, or of a value map
  const char* help;    ///< one line
  const char* source;  ///< class and property, or what else
};

/// A number, as long as it is known.
using MetricValue = std::optional<double>;

/// Of bits; 0 stands for what is not known.
inline MetricValue bytesOf(std::uint64_t bits) {
  constexpr double kBitsOfByte = 8;
  return bits == 0 ? std::nullopt : MetricValue(static_cast<double>(bits) / kBitsOfByte);
}

template <class Thing>
struct NumberRow {
  MetricFamily family;
  MetricValue (*value)(const Thing&);
};

template <class Thing>
struct LabelRow {
  const char* label;
  std::string (*text)(const Thing&);  ///< without a text there is no such label
};

/// What is said of each thing of a kind: a series that is 1 for what its labels say, and numbers.
template <class Thing>
struct MetricTable {
  std::span<const LabelRow<Thing>> identity;  ///< labels of every series
  std::optional<MetricFamily> info;
  std::span<const LabelRow<Thing>> infoLabels;  ///< behind the others
  std::span<const NumberRow<Thing>> numbers;
};

inline std::string deviceLabel(const TreeInterface& interface) {
  return deviceLabel(interface.name, interface.path);
}

MetricTable<MachineReading> machineMetrics();
MetricTable<PortReading> portMetrics();
MetricTable<PortPartner> portPartnerMetrics();
MetricTable<CounterReading> counterMetrics();
MetricTable<TreeTeam> teamMetrics();
MetricTable<MemberReading> memberMetrics();
MetricTable<LacpTeamReading> lacpTeamMetrics();
MetricTable<LacpMemberReading> lacpMemberMetrics();
MetricTable<VlanReading> vlanMetrics();
MetricTable<GatewayReading> gatewayMetrics();
MetricTable<WorkerReading> workerMetrics();
MetricTable<AlertCount> alertMetrics();

/// Visits each table, in the order in which they are served.
template <class Visit>
void forEachMetricTable(const Visit& visit) {
  visit(machineMetrics());
  visit(portMetrics());
  visit(portPartnerMetrics());
  visit(counterMetrics());
  visit(teamMetrics());
  visit(memberMetrics());
  visit(lacpTeamMetrics());
  visit(lacpMemberMetrics());
  visit(vlanMetrics());
  visit(gatewayMetrics());
  visit(workerMetrics());
  visit(alertMetrics());
}

}  // namespace ZebManager
