#include "Sqlite.h"

#include <sqlite3.h>

#include <array>
#include <system_error>
#include <thread>

namespace ZEB {

// The statements are right, so what makes no sense is the file's account of its tables.
bool SqliteError::damaged() const {
  const int primary = _code & 0xFF;
  return primary == SQLITE_CORRUPT || primary == SQLITE_NOTADB || primary == SQLITE_ERROR;
}

bool SqliteError::moved() const {
  return _code == SQLITE_READONLY_DBMOVED;
}

bool SqliteError::busy() const {
  return (_code & 0xFF) == SQLITE_BUSY;
}

bool SqliteError::needsWriting() const {
  const int primary = _code & 0xFF;
  return primary == SQLITE_READONLY || primary == SQLITE_CANTOPEN;
}

void SqliteDatabase::Close::operator()(sqlite3* database) const {
  sqlite3_close(database);
}

// Steady short sleeps, where SQLite's own waiting grows to 100 ms: two busy writers would starve each other.
int SqliteDatabase::waitForLock(void* patience, int times) {
  auto& self = *static_cast<Patience*>(patience);
  const auto now = std::chrono::steady_clock::now();
  if (times == 0) self.began = now;
  if (now - self.began >= self.limit) return 0;
  std::this_thread::sleep_for(std::chrono::microseconds(300 + times * 71 % 900));
  return 1;
}

SqliteDatabase::SqliteDatabase(const std::string& file, std::chrono::milliseconds patience, Access access)
    : _patience{patience} {
  sqlite3* opened = nullptr;
  const int mode =
      access == Access::Reading ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
  const int code = sqlite3_open_v2(file.c_str(), &opened, mode | SQLITE_OPEN_NOMUTEX, nullptr);
  _database.reset(opened);
  if (!opened) throw SqliteError(SQLITE_NOMEM, "out of memory");
  sqlite3_extended_result_codes(opened, 1);
  if (code == SQLITE_CANTOPEN) {
    throw std::system_error(sqlite3_system_errno(opened), std::generic_category(), sqlite3_errmsg(opened));
  }
  if (code != SQLITE_OK) fail();
  sqlite3_busy_handler(opened, waitForLock, &_patience);
}

SqliteDatabase::~SqliteDatabase() = default;

void SqliteDatabase::execute(const char* sql) {
  if (sqlite3_exec(_database.get(), sql, nullptr, nullptr, nullptr) != SQLITE_OK) fail();
}

void SqliteDatabase::rollBack() noexcept {
  // What keeps it from being taken back now does not keep the next reader from doing so.
  if (sqlite3_get_autocommit(_database.get()) == 0) {
    sqlite3_exec(_database.get(), "ROLLBACK", nullptr, nullptr, nullptr);
  }
}

std::int64_t SqliteDatabase::number(const char* sql) {
  SqliteStatement query(*this, sql);
  query.step();
  return query.number(0);
}

std::string SqliteDatabase::text(const char* sql) {
  SqliteStatement query(*this, sql);
  query.step();
  return query.text(0);
}

bool SqliteDatabase::readOnly() const {
  return sqlite3_db_readonly(_database.get(), "main") == 1;
}

// Through SQLite's own descriptor: closing another one of the file would let go of what SQLite has locked.
std::uint32_t SqliteDatabase::changes() const {
  constexpr sqlite3_int64 kPlace = 24;
  std::array<unsigned char, 4> bytes{};
  sqlite3_file* file = nullptr;
  sqlite3_file_control(_database.get(), "main", SQLITE_FCNTL_FILE_POINTER, &file);
  if (file && file->pMethods) file->pMethods->xRead(file, bytes.data(), bytes.size(), kPlace);
  std::uint32_t count = 0;
  for (const unsigned char byte : bytes) count = count << 8 | byte;
  return count;
}

void SqliteDatabase::fail() const {
  throw SqliteError(sqlite3_extended_errcode(_database.get()), sqlite3_errmsg(_database.get()));
}

void SqliteStatement::Finalize::operator()(sqlite3_stmt* statement) const {
  sqlite3_finalize(statement);
}

SqliteStatement::SqliteStatement(SqliteDatabase& database, const char* sql) : _database(database) {
  sqlite3_stmt* prepared = nullptr;
  const int code =
      sqlite3_prepare_v3(database._database.get(), sql, -1, SQLITE_PREPARE_PERSISTENT, &prepared, nullptr);
  _statement.reset(prepared);
  if (code != SQLITE_OK) database.fail();
}

void SqliteStatement::bind(int parameter, std::string_view text) {
  if (sqlite3_bind_text(_statement.get(), parameter, text.data(), static_cast<int>(text.size()),
                        SQLITE_TRANSIENT) != SQLITE_OK) {
    _database.fail();
  }
}

void SqliteStatement::bind(int parameter, std::int64_t number) {
  if (sqlite3_bind_int64(_statement.get(), parameter, number) != SQLITE_OK) _database.fail();
}

bool SqliteStatement::step() {
  const int code = sqlite3_step(_statement.get());
  if (code == SQLITE_ROW) return true;
  if (code != SQLITE_DONE) _database.fail();
  return false;
}

std::int64_t SqliteStatement::number(int column) const {
  return sqlite3_column_int64(_statement.get(), column);
}

std::string SqliteStatement::text(int column) const {
  const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(_statement.get(), column));
  return text ? text : "";
}

void SqliteStatement::reset() {
  sqlite3_reset(_statement.get());
}

}  // namespace ZEB
