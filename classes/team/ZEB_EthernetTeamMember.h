#pragma once

#include "classes/port/AssociationFrame.h"
#include "classes/port/ManagedObject.h"
#include "common/OperationalStatus.h"
#include "ethernet/EthernetPort.h"
#include "ethernet/EthernetTeamDataObject.h"

namespace ZEB {

/// A team and a port that is a member of it, with the member's status and role. It shows both records as they
/// were when it was made.
class ZEB_EthernetTeamMember : public AssociationFrame {
 public:
  ZEB_EthernetTeamMember(const Logger& logger, const std::string& nameSpace,
                         const CmpiCpp::CmpiObjectPath& team, const CmpiCpp::CmpiObjectPath& port,
                         const EthernetTeamDataObject& teamRecord, const EthernetPort& portRecord);

  CmpiCpp::CmpiInstance makeInstance() override;

  std::any memory() const override { return _memory; }
  void remember(const std::any& memory) override { _memory = std::any_cast<const Memory&>(memory); }

 private:
  struct Reading;
  using P = Properties<Reading>;
  static const PropertyRows<Reading> kProperties;

  /// The status that a client sees: one that turned degraded after the first report shows as in error, for as
  /// long as it is degraded; one that was degraded from the start shows so.
  operationalStatus reportedStatus();

  const EthernetTeamDataObject _team;
  const EthernetPort _port;

  struct Memory {
    bool firstReport = true;
    operationalStatus memberStatus = operationalStatus::Unknown;  ///< as reported last
  };
  Memory _memory;
};

}  // namespace ZEB
