#include "SqliteStore.h"

#include <utility>

#include "cmpicpp/CmpiStatus.h"

namespace ZEB {

using CmpiCpp::CmpiStatus;
using std::chrono::milliseconds;

namespace {

/// Another number when others have changed the file; the connection's own changes do not count.
std::int64_t versionOf(SqliteDatabase& database) {
  return database.number("PRAGMA data_version");
}

}  // namespace

SqliteStore::SqliteStore(std::string file, milliseconds patience, const Logger& logger, Report report)
    : _file(std::move(file)), _patience(patience), _logger(logger), _report(std::move(report)) {
  try {
    open(_patience);
    tryWriting();
    sayUnwritable();
  } catch (const NoStore&) {
    throw;
  } catch (const std::exception& error) {
    cannotRead(error);
  }
}

std::shared_ptr<const DataStore::Values> SqliteStore::values() {
  const std::lock_guard lock(_mutex);
  // Having waited in vain once is enough: a request must not wait again and again.
  follow(_unreadable.empty() ? _patience : milliseconds(0));
  return _content.values;
}

void SqliteStore::addDefaults(const Values& defaults) {
  const std::lock_guard lock(_mutex);
  follow(_unreadable.empty() ? _patience : milliseconds(0));
  Values missing;
  for (const auto& value : defaults) {
    if (!_content.values->contains(value.first)) missing.insert(value);
  }
  if (missing.empty() || !_unreadable.empty()) return;
  try {
    keep(missing, Existing::Keep);
  } catch (const std::exception& error) {
    noteUnwritable(error.what());
    sayUnwritable();
  }
}

void SqliteStore::set(const std::string& key, std::uint32_t value) {
  const std::lock_guard lock(_mutex);
  try {
    follow(_patience);
    keep({{key, value}}, Existing::Replace);
  } catch (const std::exception& error) {
    noteUnwritable(error.what());
    throw CmpiStatus(CMPI_RC_ERR_FAILED, "the store " + _file + " cannot keep a value: " + error.what());
  }
}

void SqliteStore::follow(milliseconds patience) {
  try {
    if (!_database || !_content.mark.holds(FileMark::of(_file, *_database))) open(patience);
    if (!_unwritable.empty()) tryWriting();
  } catch (const std::exception& error) {
    cannotRead(error);
  }
}

void SqliteStore::open(milliseconds patience) {
  _database.reset();
  OpenStore opened = openStoreFile(_file, patience, _content, _logger);
  _database = std::move(opened.database);
  _database->setPatience(_patience);
  _content = std::move(opened.content);
  if (!_unreadable.empty()) _logger.info("store %s can be used again", _file);
  _unreadable.clear();
  _report(_unwritable);
}

void SqliteStore::keep(const Values& values, Existing existing) {
  if (!_database) throw std::runtime_error(_unreadable);
  try {
    write(values, existing);
  } catch (const SqliteError& error) {
    // It is damaged where nothing was looked for, or another process has just put it aside for that.
    if (!error.damaged() && !error.moved()) throw;
    open(_patience);
    write(values, existing);
  }
  if (!_unwritable.empty()) noteUnwritable("");
}

void SqliteStore::write(const Values& values, Existing existing) {
  FileDescriptor turn = waitForTurn(_file, _patience);
  SqliteTransaction transaction(*_database, "BEGIN IMMEDIATE");
  turn = FileDescriptor();
  const bool current = _content.mark.sameTransactions(FileMark::of(_file, *_database));
  const std::int64_t version = versionOf(*_database);
  writeValues(*_database, values, existing);
  transaction.commit();
  remember(values, existing);
  if (current) markUnlessChanged(version);
}

void SqliteStore::remember(const Values& values, Existing existing) {
  auto all = std::make_shared<Values>(*_content.values);
  for (const auto& [key, number] : values) {
    if (existing == Existing::Replace) (*all)[key] = number;
    all->try_emplace(key, number);
  }
  _content.values = std::move(all);
}

// With the mark that it had before, the file is read whole by the next look.
void SqliteStore::markUnlessChanged(std::int64_t version) {
  try {
    const SqliteTransaction look(*_database, "BEGIN");
    if (versionOf(*_database) == version) _content.mark = FileMark::of(_file, *_database);
  } catch (const SqliteError&) {
    // Somebody else is writing already.
  }
}

// Whether a change could be kept. Who writes now is no reason why not.
void SqliteStore::tryWriting() {
  try {
    tryToWrite(_file);
    noteUnwritable("");
  } catch (const SqliteError& error) {
    if (!error.busy()) noteUnwritable(error.what());
  } catch (const std::exception& error) {
    // Reading does not need what is lacking here, such as another descriptor.
    noteUnwritable(error.what());
  }
}

void SqliteStore::cannotRead(const std::exception& error) {
  if (_unreadable.empty()) _logger.error("store %s cannot be opened: %s", _file, error.what());
  _unreadable = error.what();
  _report(_unreadable);
}

void SqliteStore::noteUnwritable(const std::string& failure) {
  _unwritable = failure;
  if (failure.empty()) _saidUnwritable = false;
  _report(_unreadable.empty() ? _unwritable : _unreadable);
}

// For what nobody has asked for: a client that is refused a change hears of it by that.
void SqliteStore::sayUnwritable() {
  if (_unwritable.empty() || std::exchange(_saidUnwritable, true)) return;
  _logger.error("store %s keeps no change: %s", _file, _unwritable);
}

}  // namespace ZEB
