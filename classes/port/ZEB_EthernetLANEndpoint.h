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
  CmpiCpp::CmpiInstance makeInstanceOf(CmpiCpp::CmpiPropertyList wanted) override;

  std::any memory() const override { return _memory; }
  void remember(const std::any& memory) override { _memory = std::any_cast<const Memory&>(memory); }

 private:
  struct Reading;
  using P = Properties<Reading>;
  static const PropertyRows<Reading> kProperties;

  std::string caption(const InterfaceRecord& record) const;
  std::string description(const InterfaceRecord& record) const;

  /// The status that a client sees: one that turned degraded since the last report shows as in error, and is
  /// remembered so. The first report shows the status as it is and remembers nothing.
  operationalStatus reportedStatus(const InterfaceRecord& record);

  const EndpointNumber _number;
  InterfaceRecord _interface;

  struct Memory {
    bool firstReport = true;
    operationalStatus lastStatus = operationalStatus::Unknown;
  };
  Memory _memory;
};

}  // namespace ZEB
