#include "alertmanager/AlertFile.h"

#include <array>
#include <nlohmann/json.hpp>
#include <utility>

namespace ZebManager {
namespace {

using Json = nlohmann::json;

constexpr std::array kUpgrades = {
    "CREATE TABLE received (id INTEGER PRIMARY KEY, time INTEGER NOT NULL, element TEXT NOT NULL) STRICT;"
    "CREATE TABLE alert (name TEXT NOT NULL, interface TEXT NOT NULL, team TEXT NOT NULL,"
    " starts INTEGER NOT NULL, over INTEGER NOT NULL, ends INTEGER NOT NULL, annotations TEXT NOT NULL,"
    " PRIMARY KEY (name, interface, team)) STRICT, WITHOUT ROWID;",
};

std::string textOf(const std::map<std::string, std::string>& annotations) {
  return Json(annotations).dump(-1, ' ', false, Json::error_handler_t::replace);
}

/// Nothing for what is no such text.
std::map<std::string, std::string> annotationsIn(const std::string& text) {
  const Json json = Json::parse(text, nullptr, false);
  std::map<std::string, std::string> annotations;
  if (!json.is_object()) return annotations;
  for (const auto& [name, value] : json.items()) {
    if (value.is_string()) annotations[name] = value.get<std::string>();
  }
  return annotations;
}

}  // namespace

// A burst of alerts must not wait for the disk once for each, as in the queue of listeners.
AlertFile::AlertFile(const std::string& directory, LogLine log)
    : _file(directory, "alertmanager.db", {kUpgrades, "PRAGMA synchronous = NORMAL"}, std::move(log)) {}

void AlertFile::read(const std::function<void(ReceivedIndication)>& takeReceived,
                     const std::function<void(OpenAlert)>& takeAlert) {
  if (!_file.readable()) return;
  SqliteStatement received = _file.prepare("SELECT id, time, element FROM received ORDER BY id");
  while (received.step()) takeReceived({received.number(0), received.number(1), received.text(2)});
  SqliteStatement rows =
      _file.prepare("SELECT name, interface, team, starts, over, ends, annotations FROM alert");
  while (rows.step()) {
    OpenAlert alert{.identity = {rows.text(0), rows.text(1), rows.text(2)},
                    .annotations = annotationsIn(rows.text(6)),
                    .starts = rows.number(3)};
    if (rows.number(4) != 0) alert.ends = rows.number(5);
    takeAlert(std::move(alert));
  }
}

void AlertFile::insert(const ReceivedIndication& received) {
  _file.prepare("INSERT INTO received VALUES (?1, ?2, ?3)")
      .with(received.id, received.time, received.element)
      .run();
}

void AlertFile::add(const ReceivedIndication& received) {
  SqliteTransaction whole(_file);
  insert(received);
  whole.commit();
}

void AlertFile::put(const std::vector<const OpenAlert*>& alerts) {
  SqliteStatement put = _file.prepare("INSERT OR REPLACE INTO alert VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7)");
  for (const OpenAlert* const alert : alerts) {
    const AlertIdentity& identity = alert->identity;
    put.with(identity.name, identity.interface, identity.team, alert->starts,
             std::int64_t{alert->ends ? 1 : 0}, alert->ends.value_or(0), textOf(alert->annotations))
        .run();
  }
}

void AlertFile::apply(std::int64_t lastId, const std::vector<const OpenAlert*>& changed,
                      const std::vector<AlertIdentity>& gone) {
  {
    SqliteTransaction whole(_file);
    _file.prepare("DELETE FROM received WHERE id <= ?1").with(lastId).run();
    put(changed);
    SqliteStatement forget =
        _file.prepare("DELETE FROM alert WHERE name = ?1 AND interface = ?2 AND team = ?3");
    for (const AlertIdentity& identity : gone)
      forget.with(identity.name, identity.interface, identity.team).run();
    whole.commit();
  }
  _file.shrink();
}

void AlertFile::replace(const std::vector<const ReceivedIndication*>& received,
                        const std::vector<const OpenAlert*>& alerts) {
  SqliteTransaction whole(_file);
  _file.execute("DELETE FROM received; DELETE FROM alert");
  for (const ReceivedIndication* const each : received) insert(*each);
  put(alerts);
  whole.commit();
}

}  // namespace ZebManager
