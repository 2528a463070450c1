#pragma once

#include <string>

#include "classes/port/InterfaceRecord.h"
#include "classes/port/ManagedObject.h"

namespace ZEB {

/// The default gateway of an interface: of a port, a team or a VLAN. It is made once for every address that
/// reaches the gateway, so several may share one path.
class ZEB_EthernetRemoteServiceAccessPoint : public ManagedObject {
 public:
  static constexpr CmpiCpp::NameLiteral kClassName = "ZEB_EthernetRemoteServiceAccessPoint";

  ZEB_EthernetRemoteServiceAccessPoint(const Logger& logger, const std::string& nameSpace,
                                       const InterfaceRecord& interface);

  CmpiCpp::CmpiInstance makeInstance() override;

  /// A gateway has nothing that changes: it says that it was called, and nothing else.
  void manageDynamic(bool indicationsEnabled);

 private:
  struct Reading;
  using P = Properties<Reading>;
  static const PropertyRows<Reading> kProperties;

  InterfaceRecord _interface;
};

}  // namespace ZEB
