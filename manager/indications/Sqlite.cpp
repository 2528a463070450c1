#include "indications/Sqlite.h"

namespace ZebManager {

bool SqliteError::unwritable() const {
  return code == SQLITE_READONLY || code == SQLITE_CANTOPEN || code == SQLITE_FULL || code == SQLITE_IOERR;
}

void failSqlite(sqlite3* database, int code) {
  throw SqliteError(code & 0xff, database ? sqlite3_errmsg(database) : sqlite3_errstr(code));
}

SqliteStatement::SqliteStatement(sqlite3* database, const char* text) {
  sqlite3_stmt* statement = nullptr;
  const int code = sqlite3_prepare_v2(database, text, -1, &statement, nullptr);
  _statement.reset(statement);
  if (code != SQLITE_OK) failSqlite(database, code);
}

void SqliteStatement::check(int code) const {
  if (code != SQLITE_OK) failSqlite(sqlite3_db_handle(_statement.get()), code);
}

void SqliteStatement::bind(int position, std::int64_t value) {
  check(sqlite3_bind_int64(_statement.get(), position, value));
}

void SqliteStatement::bind(int position, std::string_view value) {
  const char* const text = value.empty() ? "" : value.data();
  check(sqlite3_bind_text64(_statement.get(), position, text, value.size(), SQLITE_TRANSIENT, SQLITE_UTF8));
}

bool SqliteStatement::step() {
  const int code = sqlite3_step(_statement.get());
  if (code == SQLITE_ROW) return true;
  sqlite3* const database = sqlite3_db_handle(_statement.get());
  if (code != SQLITE_DONE) {
    const SqliteError error(code & 0xff, sqlite3_errmsg(database));
    sqlite3_reset(_statement.get());
    throw error;
  }
  sqlite3_reset(_statement.get());
  return false;
}

void SqliteStatement::run() {
  while (step()) {
  }
}

std::string SqliteStatement::text(int column) const {
  const auto* const text = reinterpret_cast<const char*>(sqlite3_column_text(_statement.get(), column));
  return text ? std::string(text, static_cast<std::size_t>(sqlite3_column_bytes(_statement.get(), column)))
              : std::string();
}

}  // namespace ZebManager
