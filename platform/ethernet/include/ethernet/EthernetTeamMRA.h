#pragma once

#include <memory>
#include <string>
#include <vector>

#include "common/Logger.h"
#include "ethernet/EthernetTeamDataObject.h"

namespace ZEB {

namespace ethernet {
class Inventory;
class Walk;
}  // namespace ethernet

/// The source of team records; otherwise as `EthernetMRA`.
class EthernetTeamMRA {
 public:
  static constexpr int kDelivered = 0;
  static constexpr int kFailed = 1;
  static constexpr int kNoMoreData = 2;

  explicit EthernetTeamMRA(std::shared_ptr<ethernet::Inventory> inventory);
  ~EthernetTeamMRA();
  EthernetTeamMRA(const EthernetTeamMRA&) = delete;
  EthernetTeamMRA& operator=(const EthernetTeamMRA&) = delete;

  /// Begins a walk over the teams, by interface number.
  int getFirstData(bool fresh, EthernetTeamDataObject& team);
  int getNextData(bool fresh, EthernetTeamDataObject& team);

  /// Returns whether the team names differ from what the last complete walk delivered, or, while no event is
  /// latched, their members, addresses, gateways or VLANs. Both lists are replaced by the differing names.
  bool forceReload(std::vector<std::string>& added, std::vector<std::string>& removed);

  int updateAll();

  /// Whether a team's status, its members, their roles or their status changed since this was last asked.
  bool ethTeamEventDetected();

  void buildFailed();

  /// Whether the last `forceReload` would have been true, but for an event that was latched: once the event
  /// has been dealt with, the next one is. For the thread that reloads.
  bool reloadHeldBack() const { return _reloadHeldBack; }

 private:
  std::shared_ptr<ethernet::Inventory> _inventory;
  std::unique_ptr<ethernet::Walk> _walk;
  bool _reloadHeldBack = false;
};

std::unique_ptr<EthernetTeamMRA> ethernetTeamMRAFactory(const Logger& logger);

}  // namespace ZEB
