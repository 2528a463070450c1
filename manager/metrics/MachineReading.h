// What metrics say of a machine, in plain values.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "tree/Tree.h"

namespace ZebManager {

class Namespace;

/// Properties of the statistics class that are counters.
inline constexpr std::array kCounterProperties = {
    "BytesReceived",           "BytesTransmitted", "PacketsReceived",       "PacketsTransmitted",
    "AlignmentErrors",         "FCSErrors",        "SingleCollisionFrames", "MultipleCollisionFrames",
    "DeferredTransmissions",   "LateCollisions",   "ExcessiveCollisions",   "InternalMACTransmitErrors",
    "InternalMACReceiveErrors"};

/// In that order.
using PortCounters = std::array<std::optional<std::uint64_t>, kCounterProperties.size()>;

/// Of all ports that have some, in the order in which they are served.
struct CounterReadings {
  std::vector<std::string> keys;  ///< of the instances
  std::vector<PortCounters> counters;
};

struct PortReading {
  const TreeCard* card;
  const TreePort* port;
};

/// The counters of a port.
struct CounterReading {
  std::string device;
  const PortCounters* counters;
};

struct MemberReading {
  const TreeTeam* team;
  const TreeMember* member;
};

struct VlanReading {
  const TreeVlan* vlan;
  std::string carrier;  ///< the port or team
};

struct GatewayReading {
  std::string device;
  std::string gateway;
};

/// All but the counters, and which of those are whose. The parts refer to the tree, so that it stays where it
/// is.
struct MachineReading {
  MachineReading() = default;
  MachineReading(const MachineReading&) = delete;
  MachineReading& operator=(const MachineReading&) = delete;

  Tree tree;
  std::optional<std::uint64_t> status;  ///< of all ports and teams that are included in it
  std::vector<PortReading> ports;
  std::vector<std::pair<std::string, std::size_t>>
      counters;  ///< by port: its device, and where they are read
  std::vector<MemberReading> members;
  std::vector<VlanReading> vlans;
  std::vector<GatewayReading> gateways;
};

/// What series of an interface are labelled with: its name, or what its path ends with where the name is not
/// known.
std::string deviceLabel(const std::string& name, const std::string& path);

/// One question. Throws ManagerError when the plug-in refuses, as the other one does.
CounterReadings readCounters(Namespace& model);

/// Asks for each class once at most. `keys`: those of the counters.
void readMachine(Namespace& model, const std::vector<std::string>& keys, MachineReading& reading);

/// How the plug-in's worker is doing. Times are seconds, those of day since the epoch.
struct WorkerReading {
  double started = 0;
  double lastPass = 0;
  double passSeconds = 0;
  bool passWorked = false;
  std::uint64_t passes = 0;
  std::uint64_t failures = 0;
  std::uint64_t linkMessages = 0;
};

/// Alerts of one kind, by their identifier.
struct AlertCount {
  std::string event;
  std::uint64_t count = 0;
};

}  // namespace ZebManager
