#include "alertmanager/AlertTable.h"

#include <algorithm>
#include <utility>

namespace ZebManager {
namespace {

/// Whether the end of what is said of a team is meant for an alert, too.
bool covers(const AlertIdentity& said, const AlertIdentity& alert) {
  const bool ofTeam = said.interface.empty() && !said.team.empty();
  return said == alert || (ofTeam && said.name == alert.name && said.team == alert.team);
}

template <class Items>
auto pointersTo(const Items& items) {
  std::vector<const typename Items::value_type*> pointers;
  pointers.reserve(items.size());
  for (const auto& item : items) pointers.push_back(&item);
  return pointers;
}

}  // namespace

AlertTable::AlertTable(const std::string& directory, LogLine log)
    : _log(std::move(log)), _file(directory, _log) {
  const auto takeReceived = [this](ReceivedIndication received) {
    _lastId = received.id;
    _received.push_back(std::move(received));
  };
  const auto takeAlert = [this](OpenAlert alert) {
    alert.changed = ++_revision;
    _alerts[alert.identity] = alert;
  };
  try {
    _file.read(takeReceived, takeAlert);
  } catch (const SqliteError& error) {
    beginAnew(error.what());
  }
}

void AlertTable::beginAnew(const std::string& why) {
  _behind = true;
  _file.beginAnew(why);
}

/// What cannot be kept now is kept with the next change that can.
template <class Work>
void AlertTable::keep(const Work& work) {
  try {
    if (!_behind) return work();
    std::vector<const OpenAlert*> alerts;
    for (const auto& [identity, alert] : _alerts) alerts.push_back(&alert);
    _file.replace(pointersTo(_received), alerts);
    _behind = false;
  } catch (const SqliteError& error) {
    if (!std::exchange(_behind, true))
      _log(std::string("open alerts are kept in memory alone: ") + error.what());
    if (!error.damaged()) return;
    try {
      beginAnew(error.what());
    } catch (const ManagerError& damage) {
      _log(damage.what());
    }
  }
}

void AlertTable::receive(std::string element, DayTime time) {
  const std::lock_guard lock(_mutex);
  if (_received.size() >= kMostReceived) {
    if (!std::exchange(_behindPlugin, true))
      _log(
          "too many alerts wait for the plug-in to say what they are about: further ones are not sent to "
          "Alertmanager");
    return;
  }
  _behindPlugin = false;
  _received.push_back({++_lastId, time, std::move(element)});
  keep([this] { _file.add(_received.back()); });
}

std::vector<ReceivedIndication> AlertTable::received() const {
  const std::lock_guard lock(_mutex);
  return {_received.begin(), _received.end()};
}

void AlertTable::end(OpenAlert& alert, DayTime time, std::vector<const OpenAlert*>& changed) {
  if (alert.ends) return;
  alert.ends = std::max(time, alert.starts);
  alert.changed = ++_revision;
  changed.push_back(&alert);
}

void AlertTable::take(const AlertChange& change, std::vector<const OpenAlert*>& changed) {
  if (!change.opens) {
    for (auto& [identity, alert] : _alerts) {
      if (covers(change.identity, identity)) end(alert, change.time, changed);
    }
    return;
  }
  if (!_alerts.contains(change.identity) && _alerts.size() >= kMostAlerts) {
    if (!std::exchange(_full, true))
      _log("too many alerts are open: further ones are not sent to Alertmanager");
    return;
  }
  OpenAlert& alert = _alerts[change.identity];
  const bool wasOpen = alert.changed != 0 && !alert.ends;
  alert = {.identity = change.identity,
           .annotations = change.annotations,
           .starts = wasOpen ? alert.starts : change.time,
           .changed = ++_revision};
  changed.push_back(&alert);
}

void AlertTable::apply(std::int64_t lastId, const std::vector<AlertChange>& changes) {
  const std::lock_guard lock(_mutex);
  std::vector<const OpenAlert*> changed;
  for (const AlertChange& change : changes) take(change, changed);
  while (!_received.empty() && _received.front().id <= lastId) _received.pop_front();
  keep([&] { _file.apply(lastId, changed, {}); });
}

std::uint64_t AlertTable::revision() const {
  const std::lock_guard lock(_mutex);
  return _revision;
}

std::vector<OpenAlert> AlertTable::open() const {
  const std::lock_guard lock(_mutex);
  std::vector<OpenAlert> open;
  for (const auto& [identity, alert] : _alerts) {
    if (!alert.ends) open.push_back(alert);
  }
  return open;
}

AlertTable::Extract AlertTable::since(std::uint64_t revision, bool all) const {
  const std::lock_guard lock(_mutex);
  Extract extract{_revision, {}};
  for (const auto& [identity, alert] : _alerts) {
    if (alert.changed > revision || (all && !alert.ends)) extract.alerts.push_back(alert);
  }
  std::ranges::sort(extract.alerts, {}, &OpenAlert::changed);
  return extract;
}

void AlertTable::acknowledged(std::uint64_t revision, DayTime now) {
  constexpr DayTime kDay = 24LL * 3600 * 1000;
  const std::lock_guard lock(_mutex);
  std::vector<AlertIdentity> gone;
  for (const auto& [identity, alert] : _alerts) {
    if (alert.ends && (alert.changed <= revision || now - *alert.ends > kDay)) gone.push_back(identity);
  }
  for (const AlertIdentity& identity : gone) _alerts.erase(identity);
  if (_alerts.size() < kMostAlerts) _full = false;
  if (!gone.empty() || _behind) keep([&] { _file.apply(0, {}, gone); });
}

}  // namespace ZebManager
