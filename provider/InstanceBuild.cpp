#include "provider/InstanceBuild.h"

#include <cstdlib>
#include <ctime>
#include <sstream>

#include "classes/port/Associations.h"
#include "classes/port/Known.h"
#include "classes/port/ZEB_EthernetPort.h"
#include "classes/port/ZEB_EthernetStatistics.h"
#include "classes/team/Associations.h"
#include "classes/team/ZEB_EthernetControllerLocation.h"
#include "classes/team/ZEB_EthernetPortController.h"
#include "classes/team/ZEB_EthernetPortControllerFirmwareIdentity.h"
#include "classes/team/ZEB_EthernetPortControllerPhysicalPackage.h"
#include "classes/team/ZEB_EthernetPortControllerSoftwareIdentity.h"
#include "common/ServedState.h"
#include "ethernet/RefreshScope.h"
#include "monitor/ZEB_EthEventSettings.h"
#include "provider/Names.h"

namespace ZEB {

using CmpiCpp::CmpiObjectPath;

namespace {

/// Names the classes that a process is asked for that is there for one question, if none of them is an
/// association. Not the site's to set.
constexpr char kAskedVariable[] = "ZEB_ASKED_CLASSES";

std::vector<CmpiCpp::CmpiName> askedClasses() {
  const char* const names = std::getenv(kAskedVariable);
  std::istringstream words(names ? names : "");
  std::vector<CmpiCpp::CmpiName> classes;
  for (std::string name; words >> name;) classes.emplace_back(name);
  return classes;
}

EthernetAdapterDataObject withoutPortsVlans(EthernetAdapterDataObject adapter) {
  for (EthernetPort& port : adapter.ports) port.vlans = {};
  return adapter;
}

}  // namespace

void ZEBEthernetPortProvider::_cmpiManagedInstanceFactory() {
  const RefreshScope refresh;
  InstanceBuild(*this).run();
  ServedState::changed();
}

ZEBEthernetPortProvider::InstanceBuild::InstanceBuild(ZEBEthernetPortProvider& provider)
    : _provider(provider),
      _maker(provider._logger, std::string(kNameSpace.view()), provider._collection, provider._memories,
             askedClasses()),
      _endpoints(_maker),
      _teams(_maker, _endpoints) {}

void ZEBEthernetPortProvider::InstanceBuild::run() {
  _provider._logger.info("_cmpiManagedInstanceFactory");
  // With the system's; nothing of it is an end of an association.
  static_cast<void>(ZEBUtil::getChassisPath());
  _teams.buildTeamInstances(*_provider._ethTeamMRA);
  buildAdapters();
  if (!_teams.teams().empty() || !_ports.empty()) buildCollection();
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
  const AdapterRecord record = withoutPortsVlans(adapter);
  const auto controller = _maker.createEnd<ZEB_EthernetPortController>(_adapterNumber, record);
  const auto firmware = _maker.createEnd<ZEB_EthernetPortControllerFirmwareIdentity>(_adapterNumber, record);
  _maker.tie<ZEB_EthernetElementFirmwareIdentity>(controller, firmware);
  const auto driver = _maker.createEnd<ZEB_EthernetPortControllerSoftwareIdentity>(_adapterNumber, record);
  _maker.tie<ZEB_EthernetElementSoftwareIdentity>(controller, driver);
  const auto location = _maker.createEnd<ZEB_EthernetControllerLocation>(_adapterNumber, record);
  const auto package = _maker.createEnd<ZEB_EthernetPortControllerPhysicalPackage>(_adapterNumber, record);
  _maker.tie<ZEB_EthernetControllerPhysicalPackageEthernetControllerLocation>(package, location);
  _maker.tie<ZEB_EthernetControllerPhysicalPackageEthernetController>(package, controller);

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
  auto& instance = _maker.create<ZEB_EthernetPort>(_portNumber, _adapterNumber, location, partNumber, record);
  const CmpiObjectPath path = instance.makeObjectPath();
  _maker.tie<ZEB_EthernetPortControllerEthernetPort>(controller, path);
  _ports.push_back({.team = _teams.findTeamOfPort(record), .port = &instance, .record = record});

  // One for each of the port's network addresses, all alike.
  for (std::size_t count = record.networkAddresses().size(); count > 0; --count) {
    _endpoints.build<ZEB_EthernetPortToLANEndpoint>(path, record);
  }
  _teams.buildPortVLanInstances(path, port);
  _maker.tie<ZEB_EthernetDevice>(_maker.system(), path);
  if (record.hasStatistics()) buildStatistics(path, record);
}

void ZEBEthernetPortProvider::InstanceBuild::buildStatistics(const CmpiObjectPath& port,
                                                             const EthernetPort& record) {
  const auto statistics = _maker.createEnd<ZEB_EthernetStatistics>(_portNumber, _adapterNumber, record);
  _maker.tie<ZEB_EthernetPortStatisticalData>(port, statistics);
}

void ZEBEthernetPortProvider::InstanceBuild::buildCollection() {
  auto& settings = _maker.create<ZEB_EthEventSettings>();
  _provider._eventSettings = &settings;
  CollectionBuild(_maker, _provider._dataStore.get()).run(_provider._collection, _teams.teams(), _ports);
  settings.setLastPollTime(std::time(nullptr));
}

}  // namespace ZEB
