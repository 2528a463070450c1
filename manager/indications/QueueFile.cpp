#include "indications/QueueFile.h"

#include <array>

namespace ZebManager {
namespace {

constexpr std::array kUpgrades = {
    "CREATE TABLE listener (handler TEXT PRIMARY KEY NOT NULL, context TEXT NOT NULL, next INTEGER NOT NULL)"
    " STRICT, WITHOUT ROWID;"
    "CREATE TABLE indication (id INTEGER PRIMARY KEY AUTOINCREMENT, handler TEXT NOT NULL,"
    " subscription TEXT NOT NULL, number INTEGER NOT NULL, queued INTEGER NOT NULL, element TEXT NOT NULL) "
    "STRICT;"
    "CREATE INDEX of_listener ON indication (handler, id);",
    "DROP INDEX of_listener;"
    "CREATE TABLE clock (time INTEGER NOT NULL) STRICT;"
    "INSERT INTO clock VALUES (0);",
};

}  // namespace

// A burst of alerts has to get into the file without waiting for the disk once for each: SQLite writes them
// at once, which is enough for the end of the process, and waits for the disk at its checkpoints.
QueueFile::QueueFile(const std::string& directory, LogLine log)
    : _file(directory, "delivery.db", {kUpgrades, "PRAGMA synchronous = NORMAL"}, std::move(log)) {}

void QueueFile::read(const std::function<void(const std::string&, Sequence)>& takeSequence,
                     const std::function<void(Row)>& takeRow, std::int64_t& time) {
  if (!_file.readable()) return;
  SqliteStatement clock = _file.prepare("SELECT time FROM clock");
  if (clock.step()) time = clock.number(0);
  SqliteStatement sequences = _file.prepare("SELECT handler, context, next FROM listener");
  while (sequences.step()) takeSequence(sequences.text(0), {sequences.text(1), sequences.number(2)});
  SqliteStatement rows = _file.prepare(
      "SELECT id, handler, subscription, number, queued, length(CAST(element AS BLOB)) FROM indication"
      " ORDER BY id");
  while (rows.step()) {
    takeRow({rows.number(0), rows.text(1), rows.text(2), rows.number(3), rows.number(4),
             static_cast<std::size_t>(rows.number(5))});
  }
}

std::string QueueFile::element(std::int64_t id) {
  SqliteStatement select = _file.prepare("SELECT element FROM indication WHERE id = ?1");
  if (!select.with(id).step()) throw SqliteError(SQLITE_CORRUPT, "an indication is missing");
  return select.text(0);
}

void QueueFile::apply(const Change& change) {
  {
    SqliteTransaction whole(_file);
    if (change.shift != 0)
      _file.prepare("UPDATE indication SET queued = queued - ?1").with(change.shift).run();
    SqliteStatement forget = _file.prepare("DELETE FROM indication WHERE id = ?1");
    for (const std::int64_t id : change.removed) forget.with(id).run();
    SqliteStatement insert =
        _file.prepare("INSERT OR REPLACE INTO indication VALUES (?1, ?2, ?3, ?4, ?5, ?6)");
    for (const auto& [row, element] : change.added) {
      insert.with(row.id, row.handler, row.subscription, row.number, row.queued, element).run();
    }
    SqliteStatement forgetSequence = _file.prepare("DELETE FROM listener WHERE handler = ?1");
    SqliteStatement setSequence = _file.prepare("INSERT OR REPLACE INTO listener VALUES (?1, ?2, ?3)");
    for (const auto& [handler, sequence] : change.sequences) {
      if (sequence) setSequence.with(handler, sequence->context, sequence->next).run();
      if (!sequence) forgetSequence.with(handler).run();
    }
    _file.prepare("UPDATE clock SET time = ?1").with(change.time).run();
    whole.commit();
  }
  if (!change.removed.empty()) _file.shrink();
}

}  // namespace ZebManager
