#include "monitor/BackgroundWorker.h"

#include <algorithm>
#include <ctime>
#include <stdexcept>

#include "classes/port/StatusWatcher.h"
#include "common/AutoMutex.h"
#include "common/ServedState.h"
#include "common/ZEBUtil.h"
#include "ethernet/EthernetMRA.h"
#include "ethernet/EthernetTeamMRA.h"
#include "ethernet/RefreshScope.h"
#include "monitor/Reports.h"
#include "monitor/ZEB_EthEventSettings.h"
#include "monitor/ZEB_EthernetCollection.h"
#include "monitor/alerts/Events.h"
#include "monitor/alerts/IndicationSender.h"
#include "monitor/alerts/ZEB_EthernetIndication.h"

namespace ZEB {
namespace {

constexpr std::uint32_t kEventsFailed = 4;
/// Until what could not be read or built is tried again.
constexpr std::chrono::seconds kAfterFailure{1};

/// The text at `text`. There being none is an error of the kind that the standard library has for it, thrown
/// here so that it does not depend on how strings are made.
std::string textAt(const char* text) {
  if (!text) throw std::logic_error("basic_string: construction from null is not valid");
  return text;
}

}  // namespace

BackgroundWorker::BackgroundWorker(Monitored monitored, const CmpiCpp::CmpiContext& context)
    : _monitored(std::move(monitored)), _context(context), _logger(_monitored.logger) {}

std::uint32_t BackgroundWorker::pass() {
  const std::lock_guard lock(_monitored.linkWatch.mutex);
  _monitored.health.passBegins();
  try {
    const std::uint32_t result = work();
    _monitored.health.passEnded(_skipped, surroundings());
    return result;
  } catch (const std::exception& failure) {
    _monitored.health.passFailed(failure.what(), surroundings());
    throw;
  }
}

Health::Surroundings BackgroundWorker::surroundings() const {
  return {.linkMessages = _monitored.linkWatch.messages,
          .indications = _monitored.indications.readyToSendIndications,
          .unread = ethMRA() ? ethMRA()->failureText() : ""};
}

std::uint32_t BackgroundWorker::work() {
  const RefreshScope scope;
  _logger.info("::_backgroundWorker");
  _monitored.followStores();
  reportCollectionState();
  _logger.info("::value of _netlinkEvent at start= %d ", _netlinkEvent.load());
  _skipped = !pollIsDue();
  if (_skipped) return 0;

  const bool ethernetEvent = refresh();
  const bool ready = _monitored.indications.readyToSendIndications;
  _logger.info("readyToSendIndications %d,  ethernetEvent %d", ready, ethernetEvent);
  const int result = ethernetEvent ? processIndications() : 0;
  settleEvents();
  if (ready) {
    _logger.info("::_readyToSendIndications");
    _monitored.indications.started = true;
    if (_monitored.indications.heartbeat) sendHeartbeat();
  }
  postStatus();
  if (!_unread) _netlinkEvent = false;
  _logger.info("::value of _netlinkEvent at end= %d ", _netlinkEvent.load());
  return result != 0 ? kEventsFailed : 0;
}

EthernetMRA* BackgroundWorker::ethMRA() const {
  return _monitored.linkWatch.ethMRA;
}

EthernetTeamMRA* BackgroundWorker::ethTeamMRA() const {
  return _monitored.linkWatch.ethTeamMRA;
}

template <class Visit>
void BackgroundWorker::forEachCollection(Visit&& visit) {
  CmpiManagedInstanceCollection& instances = _monitored.instances;
  for (const std::uint32_t i : instances.ofClass(ZEB_EthernetCollection::kClassName)) {
    visit(static_cast<ZEB_EthernetCollection&>(instances.getManagedInstance(i)));
  }
}

// The part number and the comment come from where there is no text, so this ends the pass before anything is
// sent. It has always been so, and a client that relies on the next pass posting the status would notice a
// change.
void BackgroundWorker::reportCollectionState() {
  forEachCollection([this](ZEB_EthernetCollection& collection) {
    if (!_monitored.indications.readyToSendIndications || !collection.testAndClearStateChanged()) return;
    IndicationSender sender(_logger, _monitored.nameSpace);
    const std::string element = collection.makeObjectPath().str();
    const std::string partNumber = textAt(nullptr);
    const std::string comment = textAt(nullptr);
    sender.send(kCollectionStateChanged, element, "", kProviderSubCategory, BMC_physloc_NULL, partNumber,
                comment, _context);
  });
}

// Likewise.
void BackgroundWorker::sendHeartbeat() {
  IndicationSender sender(_logger, _monitored.nameSpace);
  const std::string partNumber = textAt(nullptr);
  const std::string comment = textAt(nullptr);
  sender.send(kHeartbeat, "", "heartbeat baby", kProviderSubCategory, BMC_physloc_NULL, partNumber, comment,
              _context);
}

bool BackgroundWorker::pollIsDue() {
  ZEB_EthEventSettings* settings = _monitored.settings;
  // Without settings there is nothing to poll by, and every pass polls. A link message goes by the same
  // words.
  if (!settings || settings->pollingDisabled() || _netlinkEvent || _monitored.linkWatch.lookAgainIsDue()) {
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

bool BackgroundWorker::refresh() {
  if (!ethMRA() || !ethTeamMRA()) return false;
  std::vector<std::string> added;
  std::vector<std::string> removed;
  const bool adaptersChanged = ethMRA()->forceReload();
  const bool teamsChanged = ethTeamMRA()->forceReload(added, removed);
  _unread = ethMRA()->reloadFailed() || ethTeamMRA()->reloadFailed();
  if (adaptersChanged || teamsChanged) {
    rebuild(added, removed);
  } else if (!_netlinkEvent) {
    ethMRA()->updateAll();
    ethTeamMRA()->updateAll();
  }
  arrangeNextLook();
  return !_unread && (_monitored.linkWatch.unfinished || ethMRA()->ethEventDetected() ||
                      ethTeamMRA()->ethTeamEventDetected());
}

void BackgroundWorker::settleEvents() {
  if (_unread || !ethMRA() || !ethTeamMRA()) return;
  ethMRA()->eventsProcessed();
  ethTeamMRA()->eventsProcessed();
  _monitored.linkWatch.unfinished = false;
  _monitored.memories.clear();
}

void BackgroundWorker::tryAgain() {
  _monitored.linkWatch.lookAgainAt(std::chrono::steady_clock::now() + kAfterFailure);
}

void BackgroundWorker::arrangeNextLook() {
  _monitored.linkWatch.nextLook.reset();
  if (_unread) {
    tryAgain();
  } else if (const auto settled = ethMRA()->nextSettled()) {
    _monitored.linkWatch.lookAgainAt(*settled);
  }
}

// Teams that went are reported while their instances are still there, teams that came when theirs are.
void BackgroundWorker::rebuild(const std::vector<std::string>& added,
                               const std::vector<std::string>& removed) {
  const auto isOn = [this](EventSetting setting) {
    const ZEB_EthEventSettings* settings = _monitored.settings;
    return settings && settings->isOn(setting);
  };
  const AutoMutex lock(_monitored.mutex);
  if (isOn(EventSetting::InterfaceUnAvailable)) {
    reportPresence(removed, kInterfaceNoLongerAvailable,
                   "Failed to deliver NetworkInterfaceNoLongerAvailable indication for %s");
  }
  auto& arrivals = _monitored.arrivals;
  for (const std::string& name : added) {
    if (std::ranges::find(arrivals, name) == arrivals.end()) arrivals.push_back(name);
  }
  replaceInstances();
  if (isOn(EventSetting::InterfaceAvailable)) {
    reportPresence(arrivals, kInterfaceAvailable,
                   "Failed to deliver NetworkInterfaceAvailable indication for %s");
  }
  arrivals.clear();
}

// What fails half way is built again by the next pass. What instances remember is kept until each that was
// there before has had the chance to come back.
void BackgroundWorker::replaceInstances() {
  _monitored.settings = nullptr;
  _monitored.memories.take(_monitored.instances);
  _monitored.instances.clear();
  try {
    _monitored.rebuild();
  } catch (...) {
    tryAgain();
    ethMRA()->buildFailed();
    ethTeamMRA()->buildFailed();
    throw;
  }
  noteReports(_monitored.instances);
}

void BackgroundWorker::reportPresence(const std::vector<std::string>& names, int eventId,
                                      const char* failure) {
  if (names.empty()) return;
  const TeamsByName teams = teamsByName();
  for (const std::string& name : names) {
    if (sendTeamPresenceIndication(teams, name, eventId) != 0) _logger.error(failure, name);
  }
}

BackgroundWorker::TeamsByName BackgroundWorker::teamsByName() {
  TeamsByName teams;
  for (const std::uint32_t i : _monitored.instances.watchers()) {
    CmpiManagedInstance& instance = _monitored.instances.getManagedInstance(i);
    const auto* watcher = dynamic_cast<StatusWatcher*>(&instance);
    if (watcher && watcher->kind() == CollectionMember::Kind::Team)
      teams.try_emplace(watcher->announcedName(), &instance);
  }
  return teams;
}

int BackgroundWorker::sendTeamPresenceIndication(const TeamsByName& teams, const std::string& name,
                                                 int eventId) {
  constexpr int kNoSuchTeam = 4;
  const auto team = teams.find(name);
  if (team == teams.end()) return kNoSuchTeam;
  IndicationSender sender(_logger, _monitored.nameSpace);
  std::string message;
  if (eventId == kInterfaceAvailable) message = "New Ethernet Team " + name + " is detected";
  if (eventId == kInterfaceNoLongerAvailable)
    message = "The Ethernet Team " + name + " is no longer available";
  sender.send(eventId, team->second->makeObjectPath().str(), message, kTeamSubCategory, BMC_physloc_NULL, "",
              "", _context);
  return 0;
}

int BackgroundWorker::processIndications() {
  _logger.info("_processIndications");
  _monitored.linkWatch.unfinished = true;
  CmpiManagedInstanceCollection& instances = _monitored.instances;
  // Ports and teams, in the order of all instances.
  for (const std::uint32_t i : instances.watchers()) {
    CmpiManagedInstance& instance = instances.getManagedInstance(i);
    auto* watcher = dynamic_cast<StatusWatcher*>(&instance);
    if (!watcher) continue;
    const bool visible =
        watcher->look({_monitored.indications.readyToSendIndications, _monitored.settings, _context});
    if (instance.visible() != visible) instance.setVisible(visible);
  }
  forEachCollection([&](ZEB_EthernetCollection& collection) {
    collection.reset();
    collection.updateMembers(instances, false);
  });
  ServedState::changed();
  return 0;
}

void BackgroundWorker::postStatus() {
  forEachCollection([this](ZEB_EthernetCollection& collection) {
    ZEBUtil::postStatus(_logger, _context, collection.makeInstance());
  });
}

}  // namespace ZEB
