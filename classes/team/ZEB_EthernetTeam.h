#pragma once

#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

#include "classes/port/CollectionMember.h"
#include "classes/port/ManagedObject.h"
#include "common/OperationalStatus.h"
#include "ethernet/EthernetTeamDataObject.h"

namespace ZEB {

/// One team of ports: a bonding interface.
class ZEB_EthernetTeam : public ManagedObject, public CollectionMember {
 public:
  static constexpr CmpiCpp::NameLiteral kClassName = "ZEB_EthernetTeam";

  ZEB_EthernetTeam(const Logger& logger, const std::string& nameSpace, const std::uint32_t& index,
                   const EthernetTeamDataObject& team);

  CmpiCpp::CmpiInstance makeInstance() override;

  /// The OS device name when the team was built; empty when it could not be read.
  const std::string& teamName() const { return _teamName; }

  operationalStatus lastStatus() override;

 private:
  struct Reading;
  using P = Properties<Reading>;
  static const PropertyRows<Reading> kProperties;

  const std::uint32_t _index;
  EthernetTeamDataObject _team;
  std::string _teamName;

  // What the team remembers, which the worker changes beside requests; never held while something is sent.
  std::mutex _memory;
  operationalStatus _lastStatus = operationalStatus::Unknown;
  std::vector<EthernetTeamSlave> _slaves;
};

}  // namespace ZEB
