#include "indications/Sqlite.h"

#include <filesystem>

namespace ZebManager {
namespace {

namespace fs = std::filesystem;

constexpr int kPatience = 5000;  // milliseconds, for another process that has the file

[[noreturn]] void fail(sqlite3* database, int code) {
  throw SqliteError(code & 0xff, database ? sqlite3_errmsg(database) : sqlite3_errstr(code));
}

void makeDirectory(const std::string& directory) {
  std::error_code error;
  if (fs::create_directories(directory, error)) {
    fs::permissions(directory, fs::perms::owner_all | fs::perms::group_read | fs::perms::group_exec, error);
  }
  if (error) throw ManagerError("cannot make the directory " + directory + ": " + error.message());
}

/// Renames a file and what SQLite keeps beside it. The first free name is taken.
std::string putAside(const std::string& path) {
  std::string aside;
  for (int number = 1; aside.empty() || fs::exists(aside); ++number) {
    aside = path + ".damaged-" + std::to_string(number);
  }
  fs::rename(path, aside);
  std::error_code missing;
  for (const char* suffix : {"-wal", "-shm"}) fs::rename(path + suffix, aside + suffix, missing);
  return aside;
}

}  // namespace

SqliteStatement::SqliteStatement(sqlite3* database, const char* text) {
  sqlite3_stmt* statement = nullptr;
  const int code = sqlite3_prepare_v2(database, text, -1, &statement, nullptr);
  _statement.reset(statement);
  if (code != SQLITE_OK) fail(database, code);
}

void SqliteStatement::check(int code) const {
  if (code != SQLITE_OK) fail(sqlite3_db_handle(_statement.get()), code);
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

SqliteFile::SqliteFile(const std::string& directory, const std::string& name,
                       std::span<const char* const> upgrades, const LogLine& log) {
  makeDirectory(directory);
  const std::string path = (fs::path(directory) / name).string();
  try {
    try {
      open(path, upgrades);
    } catch (const SqliteError& error) {
      if (!error.damaged()) throw;
      _database.reset();
      const std::string aside = putAside(path);
      log(path + " is damaged (" + error.what() + "): it is now " + aside + ", and a fresh one is begun");
      open(path, upgrades);
    }
  } catch (const std::exception& error) {
    throw ManagerError("cannot open " + path + ": " + error.what());
  }
}

void SqliteFile::open(const std::string& path, std::span<const char* const> upgrades) {
  sqlite3* database = nullptr;
  const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX;
  const int code = sqlite3_open_v2(path.c_str(), &database, flags, nullptr);
  _database.reset(database);
  if (code != SQLITE_OK) fail(database, code);
  sqlite3_busy_timeout(database, kPatience);
  execute("PRAGMA journal_mode = WAL; PRAGMA synchronous = FULL; PRAGMA secure_delete = OFF");
  SqliteStatement soundness = prepare("PRAGMA quick_check(1)");
  if (!soundness.step() || soundness.text(0) != "ok") throw SqliteError(SQLITE_CORRUPT, soundness.text(0));
  SqliteStatement version = prepare("PRAGMA user_version");
  version.step();
  const auto format = static_cast<std::size_t>(version.number(0));
  version.run();
  if (format > upgrades.size()) throw ManagerError("it was written by a later version");
  if (format == upgrades.size()) return;
  soundness.run();
  SqliteTransaction upgrade(*this);
  for (std::size_t from = format; from < upgrades.size(); ++from) execute(upgrades[from]);
  execute(("PRAGMA user_version = " + std::to_string(upgrades.size())).c_str());
  upgrade.commit();
}

void SqliteFile::execute(const char* statements) {
  const int code = sqlite3_exec(_database.get(), statements, nullptr, nullptr, nullptr);
  if (code != SQLITE_OK) fail(_database.get(), code);
}

SqliteTransaction::~SqliteTransaction() {
  if (!_open) return;
  try {
    _file.execute("ROLLBACK");
  } catch (const SqliteError&) {
    // It was rolled back with the error that led here.
  }
}

void SqliteTransaction::commit() {
  _file.execute("COMMIT");
  _open = false;
}

}  // namespace ZebManager
