#include "metrics/Families.h"

namespace ZebManager {
namespace {

using Kind = MetricKind;

enum : std::uint64_t { kGood = 2, kDegraded = 3, kError = 6 };

/// 0 stands for what is not known.
MetricValue known(std::uint64_t value) {
  return value == 0 ? std::nullopt : MetricValue(static_cast<double>(value));
}

/// A port that is switched off says nothing of its carrier.
MetricValue carrierOf(const TreeStatus& status) {
  if (status.code == kGood || status.code == kDegraded) return 1;
  return status.code == kError ? MetricValue(0) : std::nullopt;
}

constexpr std::array kIdentity = {
    LabelRow<PortReading>{"device", [](const PortReading& p) { return deviceLabel(*p.port); }},
};

constexpr std::array kLabels = {
    LabelRow<PortReading>{"address", [](const PortReading& p) { return p.port->macAddress; }},
    LabelRow<PortReading>{"driver", [](const PortReading& p) { return p.card->driver; }},
    LabelRow<PortReading>{"driver_version", [](const PortReading& p) { return p.card->driverVersion; }},
    LabelRow<PortReading>{"firmware", [](const PortReading& p) { return p.card->firmware; }},
    LabelRow<PortReading>{"slot", [](const PortReading& p) { return p.card->location; }},
    LabelRow<PortReading>{"manufacturer", [](const PortReading& p) { return p.card->manufacturer; }},
    LabelRow<PortReading>{"product", [](const PortReading& p) { return p.card->product; }},
};

using Row = NumberRow<PortReading>;

constexpr std::array kNumbers = {
    Row{{"zeb_port_operational_status", Kind::Gauge, "",
         "Status of the port: 0 unknown, 2 OK, 3 degraded, 6 no link, 15 switched off.",
         "ZEB_EthernetPort.OperationalStatus"},
        [](const PortReading& p) { return MetricValue(p.port->status.code); }},
    Row{{"zeb_port_carrier", Kind::Gauge, "", "Whether a port that is switched on has a link.",
         "ZEB_EthernetPort.OperationalStatus"},
        [](const PortReading& p) { return carrierOf(p.port->status); }},
    Row{{"zeb_port_speed_bytes", Kind::Gauge, "bytes", "Speed of the link, in bytes per second.",
         "ZEB_EthernetPort.Speed / 8"},
        [](const PortReading& p) { return bytesOf(p.port->speed); }},
    Row{{"zeb_port_max_speed_bytes", Kind::Gauge, "bytes",
         "Largest speed that the port supports, in bytes per second.", "ZEB_EthernetPort.MaxSpeed / 8"},
        [](const PortReading& p) { return bytesOf(p.port->maxSpeed); }},
    Row{{"zeb_port_full_duplex", Kind::Gauge, "", "Whether the link is full duplex.",
         "ZEB_EthernetPort.FullDuplex"},
        [](const PortReading& p) { return MetricValue(p.port->fullDuplex); }},
    Row{{"zeb_port_mtu_bytes", Kind::Gauge, "bytes", "Largest packet that the port sends.",
         "ZEB_EthernetPort.ActiveMaximumTransmissionUnit"},
        [](const PortReading& p) { return known(p.port->mtu); }},
    Row{{"zeb_port_last_state_change_timestamp_seconds", Kind::Gauge, "seconds",
         "When the state of the port was last seen to change; none since the plug-in started without it.",
         "ZEB_EthernetPort.TimeOfLastStateChange"},
        [](const PortReading& p) { return p.port->lastStateChange; }},
};

constexpr std::array kCounterIdentity = {
    LabelRow<CounterReading>{"device", [](const CounterReading& c) { return c.device; }},
};

template <std::size_t kCounter>
MetricValue counter(const CounterReading& c) {
  return (*c.counters)[kCounter];
}

using CounterRow = NumberRow<CounterReading>;

constexpr std::array kCounters = {
    CounterRow{{"zeb_port_receive_bytes_total", Kind::Counter, "bytes", "Bytes received.",
                "ZEB_EthernetStatistics.BytesReceived"},
               counter<0>},
    CounterRow{{"zeb_port_transmit_bytes_total", Kind::Counter, "bytes", "Bytes transmitted.",
                "ZEB_EthernetStatistics.BytesTransmitted"},
               counter<1>},
    CounterRow{{"zeb_port_receive_packets_total", Kind::Counter, "", "Packets received.",
                "ZEB_EthernetStatistics.PacketsReceived"},
               counter<2>},
    CounterRow{{"zeb_port_transmit_packets_total", Kind::Counter, "", "Packets transmitted.",
                "ZEB_EthernetStatistics.PacketsTransmitted"},
               counter<3>},
    CounterRow{
        {"zeb_port_alignment_errors_total", Kind::Counter, "",
         "Frames received that were no whole number of bytes.", "ZEB_EthernetStatistics.AlignmentErrors"},
        counter<4>},
    CounterRow{{"zeb_port_fcs_errors_total", Kind::Counter, "", "Frames received with a wrong check sum.",
                "ZEB_EthernetStatistics.FCSErrors"},
               counter<5>},
    CounterRow{{"zeb_port_single_collision_frames_total", Kind::Counter, "",
                "Frames transmitted after one collision.", "ZEB_EthernetStatistics.SingleCollisionFrames"},
               counter<6>},
    CounterRow{
        {"zeb_port_multiple_collision_frames_total", Kind::Counter, "",
         "Frames transmitted after several collisions.", "ZEB_EthernetStatistics.MultipleCollisionFrames"},
        counter<7>},
    CounterRow{
        {"zeb_port_deferred_transmissions_total", Kind::Counter, "",
         "Frames whose first transmission had to wait.", "ZEB_EthernetStatistics.DeferredTransmissions"},
        counter<8>},
    CounterRow{{"zeb_port_late_collisions_total", Kind::Counter, "",
                "Collisions later than a frame allows for.", "ZEB_EthernetStatistics.LateCollisions"},
               counter<9>},
    CounterRow{{"zeb_port_excessive_collisions_total", Kind::Counter, "",
                "Frames given up after too many collisions.", "ZEB_EthernetStatistics.ExcessiveCollisions"},
               counter<10>},
    CounterRow{{"zeb_port_internal_mac_transmit_errors_total", Kind::Counter, "",
                "Frames not transmitted for an error of the adapter.",
                "ZEB_EthernetStatistics.InternalMACTransmitErrors"},
               counter<11>},
    CounterRow{{"zeb_port_internal_mac_receive_errors_total", Kind::Counter, "",
                "Frames not received for an error of the adapter.",
                "ZEB_EthernetStatistics.InternalMACReceiveErrors"},
               counter<12>},
};

}  // namespace

MetricTable<PortReading> portMetrics() {
  return {
      kIdentity,
      MetricFamily{
          "zeb_port_info", Kind::Info, "",
          "What a port is: its permanent address, and the driver, firmware, slot and product of its card.",
          "ZEB_EthernetPort, ZEB_EthernetPortController and what belongs to it"},
      kLabels, kNumbers};
}

MetricTable<CounterReading> counterMetrics() {
  return {kCounterIdentity, std::nullopt, {}, kCounters};
}

}  // namespace ZebManager
