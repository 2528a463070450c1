#include "classes/port/ZEB_EthernetLANEndpoint.h"

#include <utility>

#include "classes/port/Escalation.h"
#include "classes/port/Known.h"
#include "classes/port/PortDescription.h"
#include "classes/port/PropertyTable.h"
#include "classes/port/Subject.h"
#include "common/ServedState.h"

namespace ZEB {

using CmpiCpp::CmpiInstance;

struct ZEB_EthernetLANEndpoint::Reading {
  ZEB_EthernetLANEndpoint& self;
  const InterfaceRecord record;
  operationalStatus status = operationalStatus::Unknown;
};

namespace {

/// "ProtocolIFType".
enum class InterfaceType : std::uint16_t { Unknown = 0, Ethernet = 6 };

std::string portCaption(const EthernetPort& port) {
  const auto product = known(port, &EthernetPort::getPortPciProductStr);
  const auto number = known(port, &EthernetPort::getPortNumber);
  // Clients know the text without the blank before "unknown".
  return (product ? " " + *product : std::string()) +
         (number ? " port " + std::to_string(*number) : "unknown ethernet port");
}

std::optional<std::string> macAddress(const InterfaceRecord& record) {
  const auto address = known(record, &InterfaceRecord::getPermanentAddress);
  return address ? std::optional(withoutColons(*address)) : std::nullopt;
}

/// Teams and VLANs are Ethernet always.
InterfaceType interfaceType(const InterfaceRecord& record) {
  if (!record.port()) return InterfaceType::Ethernet;
  const bool ethernet = known(*record.port(), &EthernetPort::getPortLinkType) == EthPortLinkEnum::Ethernet;
  return ethernet ? InterfaceType::Ethernet : InterfaceType::Unknown;
}

std::optional<std::uint16_t> vlanId(const InterfaceRecord& record) {
  if (!record.vlan()) return std::nullopt;
  return known(*record.vlan(), &EthernetVLanDataObject::getVLanId).value_or(0);
}

std::optional<std::string> vlanName(const InterfaceRecord& record) {
  if (!record.vlan()) return std::nullopt;
  return known(*record.vlan(), &EthernetVLanDataObject::getVLanName).value_or("unknown");
}

}  // namespace

const PropertyRows<ZEB_EthernetLANEndpoint::Reading> ZEB_EthernetLANEndpoint::kProperties{
    P::systemScopedKeys("Name"),
    P::string(
        "Caption", [](Reading& r) { return r.self.caption(r.record); }, always),
    P::string("ElementName", sameAs("Caption")),
    P::string(
        "Description", [](Reading& r) { return r.self.description(r.record); }, always),
    P::string(
        "MACAddress", [](Reading& r) { return macAddress(r.record); }, orElse("")),
    P::uint16(
        "ProtocolIFType", [](Reading& r) { return interfaceType(r.record); }, always),
    P::step([](Reading& r) { r.status = r.self.reportedStatus(r.record); }),
    P::statusBlock([](Reading& r) { return r.status; }),
    P::uint16(
        "VLANId", [](Reading& r) { return vlanId(r.record); }, orOmit),
    P::string(
        "VLANName", [](Reading& r) { return vlanName(r.record); }, orOmit),
};

ZEB_EthernetLANEndpoint::ZEB_EthernetLANEndpoint(const Logger& logger, const std::string& nameSpace,
                                                 EndpointNumber endpointNumber,
                                                 const InterfaceRecord& interface)
    : ManagedObject(logger, nameSpace, kClassName,
                    systemScopedKeys(kClassName, "Name", instanceName(kClassName, number(endpointNumber)))),
      _number(endpointNumber),
      _interface(interface) {
  setSubject(subjectOf(kClassName, interface));
}

CmpiInstance ZEB_EthernetLANEndpoint::makeInstance() {
  return makeInstanceOf(nullptr);
}

CmpiInstance ZEB_EthernetLANEndpoint::makeInstanceOf(CmpiCpp::CmpiPropertyList wanted) {
  return kProperties.makeInstance(makeObjectPath(), {*this, refreshed(_interface, RefreshPart::Link)},
                                  wanted);
}

std::string ZEB_EthernetLANEndpoint::caption(const InterfaceRecord& record) const {
  const std::string start = "LAN Endpoint(" + std::to_string(number(_number)) + ") for:";
  if (record.port()) return start + portCaption(*record.port());
  return start + known(record, &InterfaceRecord::getOsDeviceName).value_or("");
}

std::string ZEB_EthernetLANEndpoint::description(const InterfaceRecord& record) const {
  const auto deviceName = known(record, &InterfaceRecord::getOsDeviceName).value_or("");
  return deviceName.empty() ? "LAN Endpoint " + std::to_string(number(_number)) : deviceName;
}

operationalStatus ZEB_EthernetLANEndpoint::reportedStatus(const InterfaceRecord& record) {
  const auto status = known(record, &InterfaceRecord::getStatus).value_or(operationalStatus::Unknown);
  const bool first = std::exchange(_memory.firstReport, false);
  if (first) ServedState::changed();
  if (first || status == _memory.lastStatus) return status;
  return _memory.lastStatus = escalated(status, _memory.lastStatus);
}

}  // namespace ZEB
