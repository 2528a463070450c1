#pragma once

#include <string>

#include "classes/port/EndpointTypes.h"
#include "classes/port/InterfaceRecord.h"
#include "classes/port/ManagedObject.h"

namespace ZEB {

/// One IP address of an interface: of a port, a team or a VLAN. It knows the address by its place in the
/// interface's list, so after a change it shows what has moved there, or no address, until the next rebuild.
class ZEB_IPProtocolEndpoint : public ManagedObject {
 public:
  static constexpr CmpiCpp::NameLiteral kClassName = "ZEB_IPProtocolEndpoint";

  ZEB_IPProtocolEndpoint(const Logger& logger, const std::string& nameSpace, EndpointNumber number,
                         AddressIndex index, IpFamily family, const InterfaceRecord& interface);

  CmpiCpp::CmpiInstance makeInstance() override;
  CmpiCpp::CmpiInstance makeInstanceOf(CmpiCpp::CmpiPropertyList wanted) override;

 private:
  struct Reading;
  using P = Properties<Reading>;
  static const PropertyRows<Reading> kProperties;

  std::string caption(const InterfaceRecord& record) const;

  const EndpointNumber _number;
  const AddressIndex _index;
  const IpFamily _family;
  InterfaceRecord _interface;
};

}  // namespace ZEB
