#include "page/LiveModel.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "broker/Broker.h"
#include "cimxml/AnswerReader.h"
#include "cli/TreeJson.h"
#include "page/AlertText.h"
#include "tree/PropertyView.h"
#include "tree/TreeParts.h"
#include "values/ObjectPathText.h"
#include "values/Values.h"

namespace ZebManager {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t kMostAlerts = 200;
/// Beyond so many at once the whole tree is read sooner.
constexpr std::size_t kMostConcerned = 16;
constexpr auto kCounterPeriod = 2s;
constexpr auto kTreePeriod = 5s;
constexpr auto kAfterAlert = 150ms;
/// The part of time that reading the tree may take, changes aside.
constexpr int kRest = 200;
constexpr int kRestAfterAlert = 4;

using Json = nlohmann::ordered_json;

std::string lineOf(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

Json counted(const PropertyView& view, const char* name) {
  const auto number = view.number(name);
  return number.value_or(0) == 0 ? Json(nullptr) : Json(*number);
}

/// What an alert may have changed of a port or a team, under the names that the tree has for it.
Json changesOf(const Instance& instance) {
  const PropertyView view(instance);
  const bool team = instance.body().classDef->name == "ZEB_EthernetTeam";
  Json changes = {{"status", jsonOf(team ? statusOf(view, "GroupOperationalStatus")
                                         : statusOf(view, "OperationalStatus", "StatusDescriptions"))},
                  {"speed", counted(view, "Speed")},
                  {"mtu", counted(view, "ActiveMaximumTransmissionUnit")}};
  if (team) changes["redundancy"] = view.meaning("RedundancyStatus");
  if (!team) changes["maxSpeed"] = counted(view, "MaxSpeed");
  if (!team && view.flag("FullDuplex")) changes["fullDuplex"] = *view.flag("FullDuplex");
  return changes;
}

}  // namespace

LiveModel::LiveModel(Namespace& model, AskPartners askPartners, std::string source)
    : _model(model),
      _askPartners(std::move(askPartners)),
      _source(std::move(source)),
      _rates(model),
      _reader([this] { read(); }),
      _follower([this] { followAlerts(); }) {}

void LiveModel::stop() {
  {
    const std::lock_guard lock(_mutex);
    _stop = true;
  }
  _wake.notify_all();
  _alerted.notify_all();
  if (_reader.joinable()) _reader.join();
  if (_follower.joinable()) _follower.join();
}

void LiveModel::alert(const std::string& element) {
  Arena arena;
  const Instance* const alert = readInstanceElement(element, arena, _model.repository(), kNameSpace);
  const std::lock_guard lock(_mutex);
  _alerts.push_front(jsonOfAlert(*alert, std::chrono::system_clock::now(), ++_alertCount));
  if (_alerts.size() > kMostAlerts) _alerts.pop_back();
  _events.publish("alert", _alerts.front());
  if (_concerned.size() < kMostConcerned)
    _concerned.push_back(PropertyView(*alert).text("AlertingManagedElement"));
  _stale = true;
  _treeDue = std::min(_treeDue, Clock::now() + kAfterAlert);
  _wake.notify_all();
  _alerted.notify_all();
}

std::shared_ptr<EventQueue> LiveModel::open(const std::string& lastEventId) {
  auto page = std::make_shared<EventQueue>();
  const std::lock_guard lock(_mutex);
  if (_events.pages() == 0) _read = false;
  if (!_read || !_events.catchUp(*page, lastEventId)) _newcomers.push_back(page);
  _events.add(page);
  if (_read) {
    admit();
  } else {
    _treeDue = _countersDue = Clock::now();
    _wake.notify_all();
  }
  return page;
}

std::string LiveModel::state() const {
  std::string json = "{\"version\":" + std::to_string(_version) + ",\"source\":" + lineOf(_source) +
                     ",\"tree\":" + _tree.json() + ",\"alerts\":[";
  for (const std::string& alert : _alerts) json.append(json.back() == '[' ? "" : ",").append(alert);
  return json + "],\"history\":" + _history + "}";
}

void LiveModel::admit() {
  if (_newcomers.empty()) return;
  const std::string now = state();
  for (const auto& page : _newcomers) _events.tell(*page, "state", now);
  _newcomers.clear();
}

LiveModel::Clock::time_point LiveModel::nextReading() const {
  return std::min(_treeDue, _countersDue);
}

void LiveModel::failed(const std::string& why) {
  const std::lock_guard lock(_mutex);
  _treeDue = std::max(_treeDue, Clock::now() + 1s);
  _countersDue = std::max(_countersDue, Clock::now() + kCounterPeriod);
  if (why != _failure) _events.publish("trouble", lineOf({{"text", why}}));
  _failure = why;
}

void LiveModel::read() {
  std::unique_lock lock(_mutex);
  while (!_stop) {
    if (_events.pages() == 0) {
      _wake.wait_for(lock, 1h);
      continue;
    }
    if (Clock::now() < nextReading()) {
      _wake.wait_until(lock, nextReading());
      continue;
    }
    const bool tree = Clock::now() >= _treeDue || !_read;
    lock.unlock();
    try {
      tree ? readTree() : readCounters();
    } catch (const std::exception& error) {
      failed(error.what());
    }
    lock.lock();
  }
}

void LiveModel::readTree() {
  {
    const std::lock_guard lock(_mutex);
    _stale = false;
  }
  const auto begun = Clock::now();
  PageTree tree = pageTree(ZebManager::readTree(_model), _askPartners());
  const bool sameShape = _read && tree.hasShapeOf(_tree);
  if (!sameShape) _rates.follow(tree.ports);
  const auto took = Clock::now() - begun;
  const std::lock_guard lock(_mutex);
  const auto rest = took * (_stale ? kRestAfterAlert : kRest);
  _treeDue = Clock::now() + (_stale ? std::max<Clock::duration>(kAfterAlert, rest)
                                    : std::max<Clock::duration>(kTreePeriod, rest));
  const std::string changes = sameShape ? tree.changesSince(_tree) : "";
  _tree = std::move(tree);
  if (!sameShape) ++_version;
  if (!sameShape && _read)
    _events.publish("tree", "{\"version\":" + std::to_string(_version) + ",\"tree\":" + _tree.json() + "}");
  if (!changes.empty()) _events.publish("parts", changes);
  if (!_failure.empty()) _events.publish("trouble", R"({"text":""})");
  _failure.clear();
  _read = true;
  if (!sameShape) _history = _rates.history();
  admit();
}

void LiveModel::readCounters() {
  _rates.read();
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  const std::string newest = _rates.newest();
  const std::string history = _rates.history();
  const std::lock_guard lock(_mutex);
  _history = history;
  _countersDue = Clock::now() + kCounterPeriod;
  _events.publish("rates",
                  "{\"version\":" + std::to_string(_version) + ",\"time\":" +
                      std::to_string(std::chrono::duration_cast<std::chrono::milliseconds>(now).count()) +
                      ",\"ports\":" + newest + "}");
}

void LiveModel::followAlerts() {
  std::unique_lock lock(_mutex);
  while (!_stop) {
    if (_concerned.empty()) {
      _alerted.wait(lock);
      continue;
    }
    std::vector<std::string> paths;
    paths.swap(_concerned);
    if (_events.pages() == 0) continue;
    lock.unlock();
    std::ranges::sort(paths);
    paths.erase(std::unique(paths.begin(), paths.end()), paths.end());
    for (const std::string& path : paths) readChanged(path);
    lock.lock();
  }
}

void LiveModel::readChanged(const std::string& path) {
  try {
    Arena arena;
    const ObjectPath& named = *parsePath(arena, _model.repository(), kNameSpace, path);
    const Reply reply = _model.getInstance(named, nullptr);
    if (reply.code != CMPI_RC_OK || reply.items().empty()) return;
    const Json changes = changesOf(*as<Instance>(reply.items()[0].value.inst));
    const std::lock_guard lock(_mutex);
    _events.publish("change", lineOf({{"path", path}, {"set", changes}}));
  } catch (const std::exception&) {
    // The tree, which is read next, says it or fails.
  }
}

}  // namespace ZebManager
