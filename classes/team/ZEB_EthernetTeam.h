#pragma once

#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

#include "classes/port/ManagedObject.h"
#include "classes/port/StatusWatcher.h"
#include "common/OperationalStatus.h"
#include "ethernet/EthernetTeamDataObject.h"

namespace ZEB {

/// One team of ports: a bonding interface.
class ZEB_EthernetTeam : public ManagedObject, public StatusWatcher {
 public:
  static constexpr CmpiCpp::NameLiteral kClassName = "ZEB_EthernetTeam";

  ZEB_EthernetTeam(const Logger& logger, const std::string& nameSpace, const std::uint32_t& index,
                   const EthernetTeamDataObject& team);

  CmpiCpp::CmpiInstance makeInstance() override;

  /// The OS device name when the team was built; empty when it could not be read.
  const std::string& teamName() const { return _teamName; }

  bool look(const Watch& watch) override;
  operationalStatus lastStatus() override;
  std::string announcedName() const override { return _teamName; }

  std::any memory() const override;
  void remember(const std::any& memory) override;
  std::string report() const override { return reportOf(lastState()); }
  void resume(const std::string& report) override;

  /// Reads the team anew and, while indications are enabled, sends an alert for each change of its status and
  /// its members since the last time that the settings let through. What was read is remembered in any case,
  /// but for a status that could not be read. `visible` is always set. On the worker's thread.
  void manageDynamic(bool& visible, bool indicationsEnabled, const CmpiCpp::CmpiContext& context,
                     const EventSettings& settings);

 private:
  /// What a team remembers from one look to the next.
  struct State {
    operationalStatus status = operationalStatus::Unknown;
    std::vector<EthernetTeamSlave> slaves;
  };
  struct Memory {
    State lastState;
    bool included;
  };

  struct Reading;
  using P = Properties<Reading>;
  static const PropertyRows<Reading> kProperties;

  State lastState() const;
  static std::string reportOf(const State& state);
  void sendAlerts(const EthernetTeamDataObject& record, const State& before, const State& now,
                  const CmpiCpp::CmpiContext& context, const EventSettings& settings);

  const std::uint32_t _index;
  EthernetTeamDataObject _team;
  std::string _teamName;

  mutable std::mutex _mutex;  ///< guards `_lastState`; never held while something is sent
  State _lastState;
};

}  // namespace ZEB
