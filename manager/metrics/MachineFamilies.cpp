#include "metrics/Families.h"

namespace ZebManager {
namespace {

using Kind = MetricKind;

constexpr std::array kMachineNumbers = {
    NumberRow<MachineReading>{
        {"zeb_operational_status", Kind::Gauge, "",
         "Status of all ports and teams that count towards it: 0 unknown, 2 OK, 3 degraded, 6 error.",
         "ZEB_EthernetCollection.GroupOperationalStatus"},
        [](const MachineReading& m) { return MetricValue(m.status); }},
};

using WorkerRow = NumberRow<WorkerReading>;

constexpr std::array kWorkerNumbers = {
    WorkerRow{{"zeb_worker_start_timestamp_seconds", Kind::Gauge, "seconds",
               "When the plug-in's worker started.", "health.json: started"},
              [](const WorkerReading& w) { return MetricValue(w.started); }},
    WorkerRow{{"zeb_worker_last_pass_timestamp_seconds", Kind::Gauge, "seconds",
               "When the worker last looked at ports and teams.", "health.json: pass.at"},
              [](const WorkerReading& w) { return MetricValue(w.lastPass); }},
    WorkerRow{{"zeb_worker_last_pass_duration_seconds", Kind::Gauge, "seconds", "How long that took.",
               "health.json: pass.seconds"},
              [](const WorkerReading& w) { return MetricValue(w.passSeconds); }},
    WorkerRow{{"zeb_worker_last_pass_success", Kind::Gauge, "", "Whether it did not fail.",
               "health.json: pass.outcome"},
              [](const WorkerReading& w) { return MetricValue(w.passWorked); }},
    WorkerRow{{"zeb_worker_passes_total", Kind::Counter, "", "Times that the worker looked.",
               "health.json: passes"},
              [](const WorkerReading& w) { return MetricValue(w.passes); }},
    WorkerRow{{"zeb_worker_pass_failures_total", Kind::Counter, "", "Times that it failed.",
               "health.json: failures"},
              [](const WorkerReading& w) { return MetricValue(w.failures); }},
    WorkerRow{{"zeb_worker_link_messages_total", Kind::Counter, "",
               "Messages about links that the kernel has sent.", "health.json: linkMessages"},
              [](const WorkerReading& w) { return MetricValue(w.linkMessages); }},
};

constexpr std::array kAlertIdentity = {
    LabelRow<AlertCount>{"event", [](const AlertCount& a) { return a.event; }},
};

constexpr std::array kAlertNumbers = {
    NumberRow<AlertCount>{
        {"zeb_alerts_total", Kind::Counter, "", "Alerts since the server started, by their identifier.",
         "ZEB_EthernetIndication.EventID"},
        [](const AlertCount& a) { return MetricValue(a.count); }},
};

}  // namespace

MetricTable<MachineReading> machineMetrics() {
  return {{}, std::nullopt, {}, kMachineNumbers};
}

MetricTable<WorkerReading> workerMetrics() {
  return {{}, std::nullopt, {}, kWorkerNumbers};
}

MetricTable<AlertCount> alertMetrics() {
  return {kAlertIdentity, std::nullopt, {}, kAlertNumbers};
}

}  // namespace ZebManager
