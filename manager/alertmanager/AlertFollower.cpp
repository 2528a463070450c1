#include "alertmanager/AlertFollower.h"

#include <algorithm>
#include <utility>

#include "alertmanager/AlertKinds.h"
#include "alertmanager/AlertSender.h"
#include "broker/Broker.h"
#include "cimxml/AnswerReader.h"
#include "values/ManagerError.h"

namespace ZebManager {
namespace {

using namespace std::chrono_literals;

constexpr auto kPeriod = 1min;
/// Longer than the plug-in takes to notice and to say what it has noticed.
constexpr auto kSettling = 2s;
constexpr auto kFirstPause = 1s, kLongestPause = 30s;

}  // namespace

AlertFollower::AlertFollower(Namespace& model, AlertTable& table, std::function<void()> changed, LogLine log)
    : _model(model), _table(table), _changed(std::move(changed)), _log(std::move(log)) {}

void AlertFollower::start() {
  _thread = std::thread([this] { run(); });
}

void AlertFollower::stop() {
  {
    const std::lock_guard lock(_mutex);
    _stop = true;
  }
  _wake.notify_all();
  if (_thread.joinable()) _thread.join();
}

void AlertFollower::receive(const std::string& element) {
  Arena arena;
  const PropertyView view(*readInstanceElement(element, arena, _model.repository(), kNameSpace));
  if (!concernsAlertmanager(view.text("EventID"))) return;
  _table.receive(element, AlertSender::timeOfDay());
  {
    const std::lock_guard lock(_mutex);
    _pending = true;
  }
  _wake.notify_all();
}

void AlertFollower::run() {
  std::unique_lock lock(_mutex);
  while (!_stop) {
    const bool failing = _failures > 0;  // what has come since has to wait as well
    if ((failing || !_pending) && Clock::now() < _due) {
      _wake.wait_until(lock, _due);
      continue;
    }
    _pending = false;
    lock.unlock();
    try {
      look();
    } catch (const std::exception& error) {
      failed(error.what());
    }
    lock.lock();
  }
}

void AlertFollower::failed(const std::string& why) {
  const auto pause = std::min<Clock::duration>(kFirstPause * (1U << std::min(_failures, 5U)), kLongestPause);
  _due = Clock::now() + pause;
  if (_failures++ == 0)
    _log("alerts for Alertmanager wait until the plug-in says what they are about: " + why);
}

void AlertFollower::look() {
  const std::vector<ReceivedIndication> received = _table.received();
  if (received.empty() && _table.open().empty()) {
    _due = Clock::now() + kPeriod;
    return;
  }
  const Tree machine = readTree(_model);
  if (std::exchange(_failures, 0U) > 0) _log("the plug-in says again what alerts are about");
  std::vector<AlertChange> changes = changesOf(received, machine);
  _table.apply(received.empty() ? 0 : received.back().id, changes);
  std::vector<AlertChange> over;
  nameOver(machine, Clock::now(), over);
  if (!over.empty()) _table.apply(0, over);
  if (!changes.empty() || !over.empty()) _changed();
  _due = Clock::now() + (_wellSince.empty() && received.empty() ? Clock::duration(kPeriod) : kSettling);
}

std::vector<AlertChange> AlertFollower::changesOf(const std::vector<ReceivedIndication>& received,
                                                  const Tree& machine) {
  for (const TreeCard& card : machine.cards) {
    for (const TreePort& port : card.ports) _ports.insert_or_assign(port.path, port.name);
  }
  std::vector<AlertChange> changes;
  for (const ReceivedIndication& each : received) {
    try {
      addChanges(each, changes);
    } catch (const ManagerError& error) {
      _log(std::string("an alert for Alertmanager cannot be read, and is left out: ") + error.what());
    }
  }
  return changes;
}

void AlertFollower::addChanges(const ReceivedIndication& received, std::vector<AlertChange>& changes) {
  Arena arena;
  const PropertyView view(*readInstanceElement(received.element, arena, _model.repository(), kNameSpace));
  const std::string path = view.text("AlertingManagedElement");
  const auto port = _ports.find(path);
  const std::string& name = port == _ports.end() || port->second.empty() ? path : port->second;
  for (AlertChange& change : ZebManager::changesOf(view, name, received.time)) {
    _wellSince.erase(change.identity);
    changes.push_back(std::move(change));
  }
}

/// A link that comes for a moment, while the machine is read, is none.
void AlertFollower::nameOver(const Tree& machine, Clock::time_point now, std::vector<AlertChange>& changes) {
  std::map<AlertIdentity, Clock::time_point> before = std::exchange(_wellSince, {});
  const DayTime time = AlertSender::timeOfDay();
  for (const OpenAlert& alert : _table.open()) {
    if (!isOver(alert, machine, time)) continue;
    const auto known = before.find(alert.identity);
    const auto since = known == before.end() ? now : known->second;
    if (now - since >= kSettling) {
      changes.push_back({alert.identity, false, {}, time});
    } else {
      _wellSince.emplace(alert.identity, since);
    }
  }
}

}  // namespace ZebManager
