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

  /// Returns whether anything that a build gives an instance for, or gives to one for good, differs from what
  /// the last complete walk delivered: teams, addresses in use, gateways, VLANs, members with their status,
  /// role and activity. Both lists are replaced by the names of teams that came and went; one that was made
  /// anew under its name is in both.
  bool forceReload(std::vector<std::string>& added, std::vector<std::string>& removed);

  bool reloadFailed() const { return _reloadFailed; }

  int updateAll();

  /// Whether a team's status, its members, their roles or their status differ; otherwise as for adapters.
  bool ethTeamEventDetected();
  void eventsProcessed();

  void buildFailed();

 private:
  std::shared_ptr<ethernet::Inventory> _inventory;
  std::unique_ptr<ethernet::Walk> _walk;
  bool _reloadFailed = false;
};

std::unique_ptr<EthernetTeamMRA> ethernetTeamMRAFactory(const Logger& logger);

}  // namespace ZEB
