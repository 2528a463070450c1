#pragma once

#include <cstddef>

namespace ZEB {

/// The settings by their index, which is their order everywhere.
enum class EventSetting : std::size_t {
  PollInterval,  ///< seconds; 0 is no polling
  FloodThreshold,
  MaxFloodLevel,
  ActiveAdapterCountChanged,
  MemberRoleChanged,
  MemberStatusChanged,
  MemberJoinedTeam,
  MemberLeftTeam,
  InterfaceAvailable,
  InterfaceUnAvailable,
  MonitorPorts,
  MonitorLANEndpoints,
  MonitorRedundancySets,
};

/// Which alerts are wanted, for those that would send them. Safe from several threads.
class EventSettings {
 public:
  EventSettings() = default;
  virtual ~EventSettings() = default;
  EventSettings(const EventSettings&) = delete;
  EventSettings& operator=(const EventSettings&) = delete;

  virtual bool isOn(EventSetting setting) const = 0;
};

}  // namespace ZEB
