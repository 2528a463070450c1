#include "classes/port/ZEB_EthernetPort.h"

#include <algorithm>
#include <ctime>
#include <sstream>
#include <utility>

#include "classes/port/Escalation.h"
#include "classes/port/Known.h"
#include "classes/port/PortDescription.h"
#include "classes/port/PropertyTable.h"
#include "classes/port/Subject.h"
#include "cmpicpp/CmpiFactories.h"
#include "common/Handover.h"
#include "common/ServedState.h"

namespace ZEB {

using CmpiCpp::CmpiDateTime;
using CmpiCpp::CmpiInstance;

/// What the rows read: the refreshed record and what the port itself knows.
struct ZEB_EthernetPort::Reading {
  ZEB_EthernetPort& self;
  EthernetPort record = {};
  operationalStatus status = operationalStatus::Unknown;
};

namespace {

const char* capabilityText(std::uint16_t code) {
  switch (code) {
    case 1:
      return "Other";
    case 2:
      return "Alert On LAN";
    case 3:
      return "Wake On LAN";
    default:
      return "Unknown";
  }
}

std::optional<std::string> permanentAddress(const EthernetPort& port) {
  const auto address = known(port, &EthernetPort::getPermanentAddress);
  return address ? std::optional(withoutColons(*address)) : std::nullopt;
}

std::vector<std::string> capabilityTexts(const EthernetPort& port) {
  std::vector<std::string> texts;
  for (const std::uint16_t code : port.getCapabilities()) texts.emplace_back(capabilityText(code));
  return texts;
}

std::vector<std::string> networkAddresses(const EthernetPort& port) {
  std::vector<std::string> addresses = port.networkAddresses();
  std::transform(addresses.begin(), addresses.end(), addresses.begin(), withoutColons);
  return addresses;
}

}  // namespace

const PropertyRows<ZEB_EthernetPort::Reading> ZEB_EthernetPort::kProperties{
    P::systemScopedKeys("DeviceID"),
    P::step([](Reading& r) { r.record = refreshed(r.self._port, RefreshPart::Link); }),
    P::string("Caption", &EthernetPort::getPortPciProductStr, orElse("Ethernet Port")),
    P::string("ElementName", sameAs("Caption")),
    P::datetime(
        "TimeOfLastStateChange", [](Reading& r) { return r.self.timeOfLastStateChange(); }, always),
    P::string(
        "PermanentAddress", [](Reading& r) { return permanentAddress(r.record); }, orElse("")),
    P::string(
        "Name", [](Reading& r) { return permanentAddress(r.record); }, orOmit),
    P::uint16("PortType", &EthernetPort::getPortType, orElse(0)),
    P::uint16("LinkTechnology", &EthernetPort::getPortLinkType, orElse(0)),
    P::uint16("PortNumber", &EthernetPort::getPortNumber, orElse(0)),
    P::uint16("VirtualPortNumber", &EthernetPort::getVirtualPortNumber, orOmit),
    P::string(
        "Description", [](Reading& r) { return portDescription(r.record, r.self._controllerNumber); },
        always),
    P::uint64("MaxSpeed", &EthernetPort::getPortSupportedSpeed, orElse(0)),
    P::uint64("Speed", &EthernetPort::getPortSpeed, orElse(0)),
    P::uint64("SupportedMaximumTransmissionUnit", &EthernetPort::getPortMaxFrameSize, orElse(0)),
    // Data sources know one frame size, so both are the same.
    P::uint64("ActiveMaximumTransmissionUnit", &EthernetPort::getPortMaxFrameSize, orElse(0)),
    P::boolean("FullDuplex", &EthernetPort::getFullDuplex, orOmit),
    P::boolean("AutoSense", &EthernetPort::getAutoSense, orOmit),
    P::uint16("RequestedState", constant(12)),
    P::uint16("EnabledState", constant(5)),
    P::uint16Array("Capabilities", &EthernetPort::getCapabilities, orElse(0)),
    P::stringArray(
        "CapabilityDescriptions", [](Reading& r) { return capabilityTexts(r.record); }, orElse("Unknown")),
    P::uint16Array("EnabledCapabilities", &EthernetPort::getEnabledCapabilities, orElse(0)),
    P::stringArray(
        "NetworkAddresses", [](Reading& r) { return networkAddresses(r.record); }, orElse("")),
    P::step([](Reading& r) { r.status = r.self.reportedStatus(r.record); }),
    P::statusBlock([](Reading& r) { return r.status; }),
};

ZEB_EthernetPort::ZEB_EthernetPort(const Logger& logger, const std::string& nameSpace,
                                   const std::uint32_t& number, const std::uint32_t& controllerNumber,
                                   const physloc_t& location, const std::string& partNumber,
                                   const EthernetPort& port)
    : ManagedObject(logger, nameSpace, kClassName,
                    systemScopedKeys(kClassName, "DeviceID", instanceName(kClassName, number))),
      StatusWatcher(Kind::Port, ManagedObject::makeObjectPath().str()),
      _controllerNumber(controllerNumber),
      _location(location),
      _partNumber(partNumber),
      _port(port) {
  setSubject(subjectOf(kClassName, port));
  setWatchesStatus(true);
  _port.getPortStatus(_memory.lastStatus);
}

CmpiInstance ZEB_EthernetPort::makeInstance() {
  return makeInstanceOf(nullptr);
}

CmpiInstance ZEB_EthernetPort::makeInstanceOf(CmpiCpp::CmpiPropertyList wanted) {
  return kProperties.makeInstance(makeObjectPath(), {*this}, wanted);
}

CmpiDateTime ZEB_EthernetPort::timeOfLastStateChange() {
  const std::lock_guard lock(_mutex);
  const auto broker = ZEBUtil::getBroker();
  if (_memory.timeOfLastStateChange == 0) return CmpiCpp::makeCmpiDateTime(broker, std::uint64_t{0}, true);
  return CmpiCpp::makeCmpiDateTime(broker, _memory.timeOfLastStateChange);
}

operationalStatus ZEB_EthernetPort::reportedStatus(const EthernetPort& record) {
  const auto status = known(record, &EthernetPort::getPortStatus).value_or(operationalStatus::Unknown);
  const std::lock_guard lock(_mutex);
  if (!std::exchange(_memory.firstRefresh, false)) return escalated(status, _memory.lastStatus);
  ServedState::changed();
  return status;
}

operationalStatus ZEB_EthernetPort::lastStatus() {
  const std::lock_guard lock(_mutex);
  return _memory.lastStatus;
}

void ZEB_EthernetPort::rememberStatus(operationalStatus status) {
  {
    const std::lock_guard lock(_mutex);
    if (status != _memory.lastStatus) {
      _memory.lastStatus = status;
      _memory.timeOfLastStateChange = std::time(nullptr);
    }
    _memory.firstRefresh = false;
  }
  Handover::current().note(subject(), report());
}

std::string ZEB_EthernetPort::reportOf(operationalStatus status, std::int64_t timeOfChange) {
  return std::to_string(static_cast<std::uint32_t>(status)) + " " + std::to_string(timeOfChange);
}

std::string ZEB_EthernetPort::report() const {
  const std::lock_guard lock(_mutex);
  return reportOf(_memory.lastStatus, _memory.timeOfLastStateChange);
}

void ZEB_EthernetPort::resume(const std::string& report) {
  std::istringstream words(report);
  std::uint32_t status = 0;
  std::int64_t time = 0;
  if (!(words >> status >> time)) return;
  const std::lock_guard lock(_mutex);
  _memory.lastStatus = static_cast<operationalStatus>(status);
  _memory.timeOfLastStateChange = time;
  _memory.firstRefresh = false;
}

std::any ZEB_EthernetPort::memory() const {
  const std::lock_guard lock(_mutex);
  Memory memory = _memory;
  memory.included = included();
  return memory;
}

void ZEB_EthernetPort::remember(const std::any& memory) {
  const std::lock_guard lock(_mutex);
  _memory = std::any_cast<const Memory&>(memory);
  setIncluded(_memory.included);
}

}  // namespace ZEB
