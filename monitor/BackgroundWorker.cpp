#include "monitor/BackgroundWorker.h"

#include <ctime>
#include <stdexcept>

#include "classes/port/ZEB_EthernetPort.h"
#include "classes/team/ZEB_EthernetTeam.h"
#include "common/AutoMutex.h"
#include "common/ZEBUtil.h"
#include "ethernet/RefreshScope.h"
#include "monitor/Events.h"
#include "monitor/IndicationSender.h"
#include "monitor/ZEB_EthEventSettings.h"
#include "monitor/ZEB_EthernetCollection.h"
#include "monitor/ZEB_EthernetIndication.h"
#include "provider/Names.h"

namespace ZEB {
namespace {

constexpr std::uint32_t kEventsFailed = 4;

/// The text at `text`. There being none is an error of the kind that the standard library has for it, thrown
/// here so that it does not depend on how strings are made.
std::string textAt(const char* text) {
  if (!text) throw std::logic_error("basic_string: construction from null is not valid");
  return text;
}

}  // namespace

ZEBEthernetPortProvider::BackgroundWorker::BackgroundWorker(ZEBEthernetPortProvider& provider,
                                                            const CmpiCpp::CmpiContext& context)
    : _provider(provider), _context(context), _logger(provider._logger) {}

std::uint32_t ZEBEthernetPortProvider::BackgroundWorker::pass() {
  const std::lock_guard lock(_provider._linkWatch->mutex);
  _provider._health.passBegins();
  try {
    const std::uint32_t result = work();
    _provider._health.passEnded(_skipped, surroundings());
    return result;
  } catch (const std::exception& failure) {
    _provider._health.passFailed(failure.what(), surroundings());
    throw;
  }
}

Health::Surroundings ZEBEthernetPortProvider::BackgroundWorker::surroundings() const {
  return {.linkMessages = _provider._linkWatch->messages,
          .indications = _provider._readyToSendIndications,
          .unread = _provider._ethMRA ? _provider._ethMRA->failureText() : ""};
}

std::uint32_t ZEBEthernetPortProvider::BackgroundWorker::work() {
  const RefreshScope scope;
  _logger.info("::_backgroundWorker");
  reportCollectionState();
  _logger.info("::value of _netlinkEvent at start= %d ", _netlinkEvent.load());
  _skipped = !pollIsDue();
  if (_skipped) return 0;

  const bool ethernetEvent = refresh();
  const bool ready = _provider._readyToSendIndications;
  _logger.info("readyToSendIndications %d,  ethernetEvent %d", ready, ethernetEvent);
  const int result = ethernetEvent ? processIndications() : 0;
  if (ready) {
    _logger.info("::_readyToSendIndications");
    _provider._indicationsStarted = true;
    if (_provider._heartbeat) sendHeartbeat();
  }
  postStatus();
  _netlinkEvent = false;
  _logger.info("::value of _netlinkEvent at end= %d ", _netlinkEvent.load());
  if (rebuildIsDue()) LinkWatch::lookAgain();
  return result != 0 ? kEventsFailed : 0;
}

template <class Visit>
void ZEBEthernetPortProvider::BackgroundWorker::forEachCollection(Visit&& visit) {
  CmpiManagedInstanceCollection& instances = _provider._collection;
  for (const std::uint32_t i : instances.ofClass(ZEB_EthernetCollection::kClassName)) {
    visit(static_cast<ZEB_EthernetCollection&>(instances.getManagedInstance(i)));
  }
}

// The part number and the comment come from where there is no text, so this ends the pass before anything is
// sent. It has always been so, and a client that relies on the next pass posting the status would notice a
// change.
void ZEBEthernetPortProvider::BackgroundWorker::reportCollectionState() {
  forEachCollection([this](ZEB_EthernetCollection& collection) {
    if (!_provider._readyToSendIndications || !collection.testAndClearStateChanged()) return;
    IndicationSender sender(_logger, std::string(kNameSpace.view()));
    const std::string element = collection.makeObjectPath().str();
    const std::string partNumber = textAt(nullptr);
    const std::string comment = textAt(nullptr);
    sender.send(kCollectionStateChanged, element, "", kProviderSubCategory, BMC_physloc_NULL, partNumber,
                comment, _context);
  });
}

// Likewise.
void ZEBEthernetPortProvider::BackgroundWorker::sendHeartbeat() {
  IndicationSender sender(_logger, std::string(kNameSpace.view()));
  const std::string partNumber = textAt(nullptr);
  const std::string comment = textAt(nullptr);
  sender.send(kHeartbeat, "", "heartbeat baby", kProviderSubCategory, BMC_physloc_NULL, partNumber, comment,
              _context);
}

bool ZEBEthernetPortProvider::BackgroundWorker::pollIsDue() {
  ZEB_EthEventSettings* settings = _provider._eventSettings;
  // Without settings there is nothing to poll by, and every pass polls. A link message goes by the same
  // words.
  if (!settings || settings->pollingDisabled() || _netlinkEvent) {
    _logger.info("ZEB_EthEventSettings Polling Disabled.  Continue to do _backgroundWorker...");
    return true;
  }
  const std::int64_t now = std::time(nullptr);
  // A clock that was set back makes this huge, and the pass polls.
  const auto elapsed = static_cast<std::uint32_t>(now - settings->lastPollTime());
  const std::uint32_t interval = settings->number(EventSetting::PollInterval);
  if (elapsed < interval) {
    _logger.info(":: PollInterval of %ds has not elapsed: (%d). Skipping _backgroundWorker...", interval,
                 elapsed);
    return false;
  }
  settings->setLastPollTime(now);
  _logger.info(":: PollInterval has elapsed. Continuing to do _backgroundWorker...");
  return true;
}

bool ZEBEthernetPortProvider::BackgroundWorker::refresh() {
  if (!_provider._ethMRA || !_provider._ethTeamMRA) return false;
  std::vector<std::string> added;
  std::vector<std::string> removed;
  const bool adaptersChanged = _provider._ethMRA->forceReload();
  const bool teamsChanged = _provider._ethTeamMRA->forceReload(added, removed);
  if (adaptersChanged || teamsChanged) {
    rebuild(added, removed);
  } else if (!_netlinkEvent) {
    _provider._ethMRA->updateAll();
    _provider._ethTeamMRA->updateAll();
  }
  return _provider._ethMRA->ethEventDetected() || _provider._ethTeamMRA->ethTeamEventDetected();
}

// What hangs on ports and teams is built anew once their events have been told: before, the instances that
// remember how they were would be gone. Nothing else may be announced until the next poll.
bool ZEBEthernetPortProvider::BackgroundWorker::rebuildIsDue() const {
  return _provider._ethMRA && _provider._ethTeamMRA &&
         (_provider._ethMRA->reloadHeldBack() || _provider._ethTeamMRA->reloadHeldBack());
}

// Teams that went are reported while their instances are still there, teams that came when theirs are.
void ZEBEthernetPortProvider::BackgroundWorker::rebuild(const std::vector<std::string>& added,
                                                        const std::vector<std::string>& removed) {
  const auto isOn = [this](EventSetting setting) {
    const ZEB_EthEventSettings* settings = _provider._eventSettings;
    return settings && settings->isOn(setting);
  };
  const AutoMutex lock(_provider._collectionMutex);
  if (isOn(EventSetting::InterfaceUnAvailable)) {
    reportPresence(removed, kInterfaceNoLongerAvailable,
                   "Failed to deliver NetworkInterfaceNoLongerAvailable indication for %s");
  }
  replaceInstances();
  if (isOn(EventSetting::InterfaceAvailable)) {
    reportPresence(added, kInterfaceAvailable,
                   "Failed to deliver NetworkInterfaceAvailable indication for %s");
  }
}

// What fails half way is built again by the next pass.
void ZEBEthernetPortProvider::BackgroundWorker::replaceInstances() {
  _provider._eventSettings = nullptr;
  _provider._collection.clear();
  try {
    _provider.makeDataSources();
    _provider._cmpiManagedInstanceFactory();
  } catch (...) {
    _provider._ethMRA->buildFailed();
    _provider._ethTeamMRA->buildFailed();
    throw;
  }
}

void ZEBEthernetPortProvider::BackgroundWorker::reportPresence(const std::vector<std::string>& names,
                                                               int eventId, const char* failure) {
  for (const std::string& name : names) {
    if (sendTeamPresenceIndication(name, eventId) != 0) _logger.error(failure, name);
  }
}

int ZEBEthernetPortProvider::BackgroundWorker::sendTeamPresenceIndication(const std::string& name,
                                                                          int eventId) {
  constexpr int kNoSuchTeam = 4;
  CmpiManagedInstanceCollection& instances = _provider._collection;
  for (const std::uint32_t i : instances.ofClass(ZEB_EthernetTeam::kClassName)) {
    auto& team = static_cast<ZEB_EthernetTeam&>(instances.getManagedInstance(i));
    if (team.teamName() != name) continue;
    ZEB_EthernetIndication sender(_logger, std::string(kNameSpace.view()));
    std::string message;
    if (eventId == kInterfaceAvailable) message = "New Ethernet Team " + name + " is detected";
    if (eventId == kInterfaceNoLongerAvailable)
      message = "The Ethernet Team " + name + " is no longer available";
    sender.send(eventId, team.makeObjectPath().str(), message, kTeamSubCategory, BMC_physloc_NULL, "", "",
                _context);
    return 0;
  }
  return kNoSuchTeam;
}

int ZEBEthernetPortProvider::BackgroundWorker::processIndications() {
  _logger.info("_processIndications");
  CmpiManagedInstanceCollection& instances = _provider._collection;
  // Ports and teams, in the order of all instances.
  for (const std::uint32_t i : instances.watchers()) {
    CmpiManagedInstance& instance = instances.getManagedInstance(i);
    processPort(instance);
    processTeam(instance);
  }
  forEachCollection([&](ZEB_EthernetCollection& collection) {
    collection.reset();
    collection.updateMembers(instances, false);
  });
  return 0;
}

void ZEBEthernetPortProvider::BackgroundWorker::processPort(CmpiManagedInstance& instance) {
  auto* port = dynamic_cast<ZEB_EthernetPort*>(&instance);
  if (!port) return;
  const ZEB_EthEventSettings* settings = _provider._eventSettings;
  const bool monitorPorts = !settings || settings->isOn(EventSetting::MonitorPorts);
  bool visible = false;
  port->manageDynamic(visible, _provider._readyToSendIndications, monitorPorts, _context);
  if (port->visible() != visible) port->setVisible(visible);
}

void ZEBEthernetPortProvider::BackgroundWorker::processTeam(CmpiManagedInstance& instance) {
  auto* team = dynamic_cast<ZEB_EthernetTeam*>(&instance);
  const ZEB_EthEventSettings* settings = _provider._eventSettings;
  // A build that was cut short has teams and no settings; the next pass builds again.
  if (!team || !settings) return;
  bool visible = false;
  team->manageDynamic(visible, _provider._readyToSendIndications, _context, *settings);
  if (team->visible() != visible) team->setVisible(visible);
}

void ZEBEthernetPortProvider::BackgroundWorker::postStatus() {
  forEachCollection([this](ZEB_EthernetCollection& collection) {
    ZEBUtil::postStatus(_logger, _context, collection.makeInstance());
  });
}

}  // namespace ZEB
