#include "provider/InstanceBuild.h"

#include "classes/port/Known.h"
#include "classes/port/ZEB_EthIPHostedAccessPoint.h"
#include "classes/port/ZEB_EthernetControllerPhysicalPackageEthernetController.h"
#include "classes/port/ZEB_EthernetControllerPhysicalPackageEthernetControllerLocation.h"
#include "classes/port/ZEB_EthernetDevice.h"
#include "classes/port/ZEB_EthernetLANEndpoint.h"
#include "classes/port/ZEB_EthernetLANHostedAccessPoint.h"
#include "classes/port/ZEB_EthernetPort.h"
#include "classes/port/ZEB_EthernetPortControllerEthernetPort.h"
#include "classes/port/ZEB_EthernetPortStatisticalData.h"
#include "classes/port/ZEB_EthernetPortToLANEndpoint.h"
#include "classes/port/ZEB_EthernetRemoteAccessAvailableToIPEndpoint.h"
#include "classes/port/ZEB_EthernetRemoteServiceAccessPoint.h"
#include "classes/port/ZEB_EthernetRemoteServiceHostedAccessPoint.h"
#include "classes/port/ZEB_EthernetStatistics.h"
#include "classes/port/ZEB_IPBindsToEthernetLANEndpoint.h"
#include "classes/port/ZEB_IPProtocolEndpoint.h"
#include "classes/team/ZEB_EthernetControllerLocation.h"
#include "classes/team/ZEB_EthernetElementFirmwareIdentity.h"
#include "classes/team/ZEB_EthernetElementSoftwareIdentity.h"
#include "classes/team/ZEB_EthernetPortController.h"
#include "classes/team/ZEB_EthernetPortControllerFirmwareIdentity.h"
#include "classes/team/ZEB_EthernetPortControllerPhysicalPackage.h"
#include "classes/team/ZEB_EthernetPortControllerSoftwareIdentity.h"
#include "classes/team/ZEB_EthernetTeam.h"
#include "classes/team/ZEB_EthernetTeamToLANEndpoint.h"
#include "classes/team/ZEB_HostedEthernetTeam.h"
#include "common/ZEBUtil.h"
#include "ethernet/RefreshScope.h"
#include "provider/Names.h"

namespace ZEB {

using CmpiCpp::CmpiObjectPath;

/// How the build treats the addresses of a family.
struct ZEBEthernetPortProvider::InstanceBuild::FamilyRule {
  IpFamily family;
  std::string_view gatewayFamily;
  bool onlyInUse;  ///< IPv6 addresses count whatever the interface's status
};

namespace {

/// The record alone, which many instances copy. Nobody asks their copy for VLANs, and with them a build would
/// grow with the product of both.
template <class Record>
Record withoutVlans(Record record) {
  record.vlans = {};
  return record;
}

EthernetAdapterDataObject withoutVlans(EthernetAdapterDataObject adapter) {
  for (EthernetPort& port : adapter.ports) port.vlans = {};
  return adapter;
}

}  // namespace

void ZEBEthernetPortProvider::_cmpiManagedInstanceFactory() {
  const RefreshScope refresh;
  InstanceBuild(*this).run();
}

ZEBEthernetPortProvider::InstanceBuild::InstanceBuild(ZEBEthernetPortProvider& provider)
    : _provider(provider), _nameSpace(kNameSpace.view()), _system(ZEBUtil::getComputerSystemPath()) {}

void ZEBEthernetPortProvider::InstanceBuild::run() {
  _provider._logger.info("_cmpiManagedInstanceFactory");
  buildTeamInstances();
  buildAdapters();
  if (!_teams.empty() || !_ports.empty()) buildCollection();
}

void ZEBEthernetPortProvider::InstanceBuild::buildTeamInstances() {
  EthernetTeamDataObject team(_provider._logger);
  int result = _provider._ethTeamMRA->getFirstData(false, team);
  while (result == EthernetTeamMRA::kDelivered) {
    buildTeam(team);
    result = _provider._ethTeamMRA->getNextData(false, team);
    if (result != EthernetTeamMRA::kDelivered && result != EthernetTeamMRA::kNoMoreData) {
      _provider._logger.error("failed to _ethTeamMRA::getNextData()");
    }
    ++_teamNumber;
  }
}

void ZEBEthernetPortProvider::InstanceBuild::buildTeam(const EthernetTeamDataObject& team) {
  const EthernetTeamDataObject record = withoutVlans(team);
  auto& instance = create<ZEB_EthernetTeam>(_teamNumber, record);
  const CmpiObjectPath path = instance.makeObjectPath();
  create<ZEB_HostedEthernetTeam>(_system, path);

  const auto position = static_cast<std::int32_t>(_teams.size());
  _teams.push_back({true, &instance, record.getSlaves(), record});
  for (const EthernetTeamSlave& slave : _teams.back().slaves) _teamOfMember.try_emplace(slave.name, position);

  buildEndpoint<ZEB_EthernetTeamToLANEndpoint>(path, record);
  for (const EthernetVLanDataObject& vlan : team.vlans) {
    buildEndpoint<ZEB_EthernetTeamToLANEndpoint>(path, vlan);
  }
}

void ZEBEthernetPortProvider::InstanceBuild::buildAdapters() {
  EthernetAdapterDataObject adapter(_provider._logger);
  int result = _provider._ethMRA->getFirstData(false, adapter);
  if (result != EthernetMRA::kDelivered) _provider._logger.error("failed to _ethMRA::getFirstData()");
  while (result == EthernetMRA::kDelivered) {
    buildAdapter(adapter);
    result = _provider._ethMRA->getNextData(false, adapter);
    if (result != EthernetMRA::kDelivered && result != EthernetMRA::kNoMoreData) {
      _provider._logger.error("failed to _ethMRA::getNextData()");
    }
    ++_adapterNumber;
  }
}

void ZEBEthernetPortProvider::InstanceBuild::buildAdapter(const EthernetAdapterDataObject& adapter) {
  const AdapterRecord record = withoutVlans(adapter);
  const auto controller = createEnd<ZEB_EthernetPortController>(_adapterNumber, record);
  const auto firmware = createEnd<ZEB_EthernetPortControllerFirmwareIdentity>(_adapterNumber, record);
  create<ZEB_EthernetElementFirmwareIdentity>(controller, firmware);
  const auto driver = createEnd<ZEB_EthernetPortControllerSoftwareIdentity>(_adapterNumber, record);
  create<ZEB_EthernetElementSoftwareIdentity>(controller, driver);
  const auto location = createEnd<ZEB_EthernetControllerLocation>(_adapterNumber, record);
  const auto package = createEnd<ZEB_EthernetPortControllerPhysicalPackage>(_adapterNumber, record);
  create<ZEB_EthernetControllerPhysicalPackageEthernetControllerLocation>(package, location);
  create<ZEB_EthernetControllerPhysicalPackageEthernetController>(package, controller);

  const auto physicalLocation =
      known(adapter, &EthernetAdapterDataObject::getPhysLoc).value_or(BMC_physloc_NULL);
  const auto partNumber = known(adapter, &EthernetAdapterDataObject::getpartNumber).value_or("");
  for (const EthernetPort& port : adapter.ports) {
    buildPort(controller, physicalLocation, partNumber, port);
    ++_portNumber;
  }
}

void ZEBEthernetPortProvider::InstanceBuild::buildPort(const CmpiObjectPath& controller,
                                                       const physloc_t& location,
                                                       const std::string& partNumber,
                                                       const EthernetPort& port) {
  const EthernetPort record = withoutVlans(port);
  auto& instance = create<ZEB_EthernetPort>(_portNumber, _adapterNumber, location, partNumber, record);
  const CmpiObjectPath path = instance.makeObjectPath();
  create<ZEB_EthernetPortControllerEthernetPort>(controller, path);
  _ports.push_back({.teamIndex = findTeamOfPort(record), .port = &instance, .record = record});

  // One for each of the port's network addresses, all alike.
  for (std::size_t count = record.networkAddresses().size(); count > 0; --count) {
    buildEndpoint<ZEB_EthernetPortToLANEndpoint>(path, record);
  }
  buildPortVLanInstances(path, port);
  create<ZEB_EthernetDevice>(_system, path);
  if (record.hasStatistics()) buildStatistics(path, record);
}

void ZEBEthernetPortProvider::InstanceBuild::buildPortVLanInstances(const CmpiObjectPath& port,
                                                                    const EthernetPort& record) {
  for (const EthernetVLanDataObject& vlan : record.vlans) {
    buildEndpoint<ZEB_EthernetPortToLANEndpoint>(port, vlan);
  }
}

void ZEBEthernetPortProvider::InstanceBuild::buildStatistics(const CmpiObjectPath& port,
                                                             const EthernetPort& record) {
  const auto statistics = createEnd<ZEB_EthernetStatistics>(_portNumber, _adapterNumber, record);
  create<ZEB_EthernetPortStatisticalData>(port, statistics);
}

template <class ToLANEndpoint>
void ZEBEthernetPortProvider::InstanceBuild::buildEndpoint(const CmpiObjectPath& carrier,
                                                           const InterfaceRecord& interface) {
  constexpr FamilyRule kIPv4{IpFamily::IPv4, "ipv4", true};
  constexpr FamilyRule kIPv6{IpFamily::IPv6, "ipv6", false};

  const EndpointNumber number{_lanEndpointNumber++};
  const auto lanEndpoint = createEnd<ZEB_EthernetLANEndpoint>(number, interface);
  create<ZEB_EthernetLANHostedAccessPoint>(_system, lanEndpoint);
  create<ToLANEndpoint>(carrier, lanEndpoint);
  buildAddresses(kIPv4, interface.getIPv4Addresses().size(), lanEndpoint, interface);
  buildAddresses(kIPv6, interface.getIPv6Addresses().size(), lanEndpoint, interface);
}

void ZEBEthernetPortProvider::InstanceBuild::buildAddresses(const FamilyRule& rule, std::size_t addresses,
                                                            const CmpiObjectPath& lanEndpoint,
                                                            const InterfaceRecord& interface) {
  if (rule.onlyInUse && !interface.usesIPv4()) return;
  const auto gateway = known(interface, &InterfaceRecord::getDefaultGateway);
  const bool reachesGateway = gateway && gateway->family == rule.gatewayFamily;
  for (std::uint32_t index = 0; index < addresses; ++index) {
    const EndpointNumber number{_ipEndpointNumber++};
    const auto ipEndpoint =
        createEnd<ZEB_IPProtocolEndpoint>(number, AddressIndex{index}, rule.family, interface);
    create<ZEB_IPBindsToEthernetLANEndpoint>(lanEndpoint, ipEndpoint);
    create<ZEB_EthIPHostedAccessPoint>(_system, ipEndpoint);
    if (reachesGateway) buildGateway(ipEndpoint, interface);
  }
}

void ZEBEthernetPortProvider::InstanceBuild::buildGateway(const CmpiObjectPath& ipEndpoint,
                                                          const InterfaceRecord& interface) {
  const auto gateway = createEnd<ZEB_EthernetRemoteServiceAccessPoint>(interface);
  create<ZEB_EthernetRemoteAccessAvailableToIPEndpoint>(gateway, ipEndpoint);
  create<ZEB_EthernetRemoteServiceHostedAccessPoint>(_system, gateway);
}

std::int32_t ZEBEthernetPortProvider::InstanceBuild::findTeamOfPort(const EthernetPort& port) const {
  const auto name = known(port, &EthernetPort::getOsDeviceName);
  const auto team = name ? _teamOfMember.find(*name) : _teamOfMember.end();
  return team == _teamOfMember.end() ? PortEntry::kNoTeam : team->second;
}

}  // namespace ZEB
