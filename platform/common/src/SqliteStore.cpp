#include "SqliteStore.h"

#include <utility>

#include "cmpicpp/CmpiStatus.h"

namespace ZEB {

using CmpiCpp::CmpiStatus;

SqliteStore::Connection::Connection(std::unique_ptr<SqliteDatabase> theDatabase)
    : database(std::move(theDatabase)),
      select(*database, "SELECT number FROM value WHERE key = ?1"),
      insert(*database,
             "INSERT INTO value (key, number) VALUES (?1, ?2)"
             " ON CONFLICT (key) DO UPDATE SET number = excluded.number") {}

SqliteStore::SqliteStore(std::string file, std::chrono::milliseconds patience, const Logger& logger)
    : _file(std::move(file)), _patience(patience), _logger(logger) {
  connect();
  if (_connection->database->readOnly()) _logger.warn("store %s can be read only: no change is kept", _file);
}

void SqliteStore::connect() {
  _writing = false;
  _connection.reset();
  _connection = std::make_unique<Connection>(openStoreFile(_file, _patience, _logger));
}

bool SqliteStore::exists(const std::string& key) {
  return find(key).has_value();
}
std::uint32_t SqliteStore::getUInt32(const std::string& key) {
  return find(key).value_or(0);
}
bool SqliteStore::getBool(const std::string& key) {
  return getUInt32(key) != 0;
}
std::optional<bool> SqliteStore::findBool(const std::string& key) {
  const auto number = find(key);
  return number ? std::optional(*number != 0) : std::nullopt;
}
void SqliteStore::setUInt32(const std::string& key, std::uint32_t value) {
  write(key, value);
}
void SqliteStore::setBool(const std::string& key, bool value) {
  write(key, value ? 1 : 0);
}

std::optional<std::uint32_t> SqliteStore::find(const std::string& key) {
  const std::lock_guard lock(_mutex);
  if (!_connection) throw CmpiStatus(CMPI_RC_ERR_FAILED, "the store " + _file + " is not open");
  SqliteStatement& select = _connection->select;
  try {
    if (_batches > 0 && !_connection->database->inTransaction()) _connection->database->execute("BEGIN");
    select.bind(1, key);
    std::optional<std::uint32_t> number;
    if (select.step()) number = static_cast<std::uint32_t>(select.number(0));
    select.reset();
    return number;
  } catch (const SqliteError& error) {
    select.reset();
    throw CmpiStatus(CMPI_RC_ERR_FAILED, "the store " + _file + " cannot be read: " + error.what());
  }
}

void SqliteStore::write(const std::string& key, std::uint32_t number) {
  const std::lock_guard lock(_mutex);
  try {
    if (!_batchFailure.empty()) throw std::runtime_error(_batchFailure);
    if (!_connection) connect();
    const bool alone = !_writing;
    try {
      insert(key, number);
    } catch (const SqliteError& error) {
      // The file was damaged while it was open, or another process has put it aside for that.
      if (!alone || !(error.moved() || error.damaged())) throw;
      connect();
      insert(key, number);
    }
  } catch (const std::exception& error) {
    rollback();
    if (_batches > 0) _batchFailure = error.what();
    throw CmpiStatus(CMPI_RC_ERR_FAILED, "the store " + _file + " cannot keep a value: " + error.what());
  }
}

void SqliteStore::insert(const std::string& key, std::uint32_t number) {
  beginWriting();
  SqliteStatement& statement = _connection->insert;
  try {
    statement.bind(1, key);
    statement.bind(2, std::int64_t{number});
    statement.step();
  } catch (const SqliteError&) {
    statement.reset();
    throw;
  }
  statement.reset();
  if (_batches > 0) return;
  _connection->database->execute("COMMIT");
  _writing = false;
}

// A batch reads in a transaction that keeps nobody from reading, and takes one for writing with its first
// write: most batches find that there is nothing to write. The first is ended for it, because two processes
// that both held one and wanted to write would wait for each other.
void SqliteStore::beginWriting() {
  if (_writing) return;
  SqliteDatabase& database = *_connection->database;
  if (database.inTransaction()) database.execute("COMMIT");
  const FileDescriptor turn = waitForTurn(_file, _patience);
  database.execute("BEGIN IMMEDIATE");
  _writing = true;
}

void SqliteStore::rollback() {
  _writing = false;
  if (!_connection || !_connection->database->inTransaction()) return;
  try {
    _connection->database->execute("ROLLBACK");
  } catch (const SqliteError&) {
    _connection.reset();  // closing rolls back, and the next write opens anew
  }
}

void SqliteStore::beginBatch() {
  _mutex.lock();
  ++_batches;
}

void SqliteStore::endBatch() {
  const std::unique_lock lock(_mutex, std::adopt_lock);
  if (--_batches > 0) return;
  _writing = false;
  std::string failure = std::exchange(_batchFailure, {});
  if (failure.empty() && _connection && _connection->database->inTransaction()) {
    try {
      _connection->database->execute("COMMIT");
    } catch (const SqliteError& error) {
      failure = error.what();
      rollback();
    }
  }
  if (!failure.empty()) {
    throw CmpiStatus(CMPI_RC_ERR_FAILED, "the store " + _file + " cannot keep a batch: " + failure);
  }
}

}  // namespace ZEB
