#pragma once

#include <optional>
#include <string>

#include "classes/port/EndpointTypes.h"
#include "classes/port/InterfaceRecord.h"
#include "classes/port/ManagedObject.h"
#include "common/OperationalStatus.h"

namespace ZEB {

/// The LAN side of one interface: a port, a team or a VLAN.
class ZEB_EthernetLANEndpoint : public ManagedObject {
 public:
  static constexpr CmpiCpp::NameLiteral kClassName = "ZEB_EthernetLANEndpoint";

  ZEB_EthernetLANEndpoint(const Logger& logger, const std::string& nameSpace, EndpointNumber number,
                          const InterfaceRecord& interface);

  CmpiCpp::CmpiInstance makeInstance() override;

 private:
  struct Reading;
  using P = Properties<Reading>;
  static const PropertyRows<Reading> kProperties;

  std::string caption() const;
  std::string description() const;

  /// The status that a client sees: one that turned degraded since the last report shows as in error, and is
  /// remembered so. The first report shows the status as it is and remembers nothing.
  operationalStatus reportedStatus();

  const EndpointNumber _number;
  const InterfaceRecord _interface;
  bool _firstReport = true;
  operationalStatus _lastStatus = operationalStatus::Unknown;
};

}  // namespace ZEB
