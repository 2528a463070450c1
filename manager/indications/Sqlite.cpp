#include "indications/Sqlite.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>

namespace ZebManager {
namespace {

namespace fs = std::filesystem;

/// Free pages that are worth to be given back.
constexpr std::int64_t kIncremental = 2;  // what SQLite calls a file that can be shrunk
constexpr std::int64_t kManyPages = 256;
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

ManagerError cannotOpen(const std::string& path, const std::exception& error) {
  return ManagerError("cannot open " + path + ": " + error.what());
}

/// What stands in the header beside the number of a format.
std::int64_t sealOf(std::int64_t format) {
  return 0x5a454200 + format;
}

std::string schemaOf(sqlite3* database) {
  SqliteStatement select(
      database, "SELECT type || ' ' || name || ' ' || coalesce(sql, '') FROM sqlite_schema ORDER BY 1");
  std::string all;
  while (select.step()) all += select.text(0) + "\n";
  return all;
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
                       std::span<const char* const> upgrades, LogLine log)
    : _path((fs::path(directory) / name).string()), _upgrades(upgrades), _log(std::move(log)) {
  makeDirectory(directory);
  try {
    open();
  } catch (const SqliteError& error) {
    if (!error.damaged()) throw cannotOpen(_path, error);
    beginAnew(error.what());
  } catch (const std::exception& error) {
    throw cannotOpen(_path, error);
  }
}

void SqliteFile::beginAnew(const std::string& why) {
  try {
    _database.reset();
    const std::string aside = putAside(_path);
    _log(_path + " is damaged (" + why + "): it is now " + aside + ", and a fresh one is begun");
    open();
  } catch (const std::exception& error) {
    throw cannotOpen(_path, error);
  }
}

/// The statements are right, so what they cannot be used with is no file of this kind.
void SqliteFile::open() {
  try {
    openOrRefuse();
  } catch (const SqliteError& error) {
    constexpr std::array kOfContent = {SQLITE_ERROR, SQLITE_TOOBIG, SQLITE_CONSTRAINT, SQLITE_MISMATCH};
    if (std::ranges::find(kOfContent, error.code) == kOfContent.end()) throw;
    throw SqliteError(SQLITE_CORRUPT, error.what());
  }
}

void SqliteFile::openOrRefuse() {
  sqlite3* database = nullptr;
  const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX;
  const int code = sqlite3_open_v2(_path.c_str(), &database, flags, nullptr);
  _database.reset(database);
  if (code != SQLITE_OK) fail(database, code);
  sqlite3_busy_timeout(database, kPatience);
  checkHeader();
  execute("PRAGMA journal_mode = WAL; PRAGMA synchronous = FULL; PRAGMA secure_delete = OFF");
  upgrade();
  checkContent();
  if (numberOf("PRAGMA auto_vacuum") != kIncremental) execute("PRAGMA auto_vacuum = INCREMENTAL; VACUUM");
  execute("PRAGMA journal_size_limit = 1048576");
}

/// What a header says that SQLite takes for granted. A number of the format that the second number does not
/// confirm is no later version's.
void SqliteFile::checkHeader() {
  const std::int64_t format = numberOf("PRAGMA user_version"), seal = numberOf("PRAGMA application_id");
  const auto known = static_cast<std::int64_t>(_upgrades.size());
  if (format > known && seal == sealOf(format)) throw ManagerError("it was written by a later version");
  if (format < 0 || format > known || (seal != 0 && seal != sealOf(format))) {
    throw SqliteError(SQLITE_CORRUPT, "its header contradicts itself");
  }
  const bool writable = access(_path.c_str(), W_OK) == 0;
  if (writable && sqlite3_db_readonly(_database.get(), "main") != 0) {
    throw SqliteError(SQLITE_CORRUPT, "its header forbids changes");
  }
}

void SqliteFile::upgrade() {
  const auto format = static_cast<std::size_t>(numberOf("PRAGMA user_version"));
  const auto known = static_cast<std::int64_t>(_upgrades.size());
  if (format == _upgrades.size() && numberOf("PRAGMA application_id") == sealOf(known)) return;
  SqliteTransaction whole(*this);
  for (std::size_t from = format; from < _upgrades.size(); ++from) execute(_upgrades[from]);
  execute(("PRAGMA user_version = " + std::to_string(known)).c_str());
  execute(("PRAGMA application_id = " + std::to_string(sealOf(known))).c_str());
  whole.commit();
}

void SqliteFile::shrink() {
  if (numberOf("PRAGMA freelist_count") < kManyPages) return;
  execute("PRAGMA incremental_vacuum; PRAGMA wal_checkpoint(TRUNCATE)");
}

/// The tables as the upgrades make them, and every page of them.
void SqliteFile::checkContent() {
  SqliteStatement soundness = prepare("PRAGMA integrity_check(1)");
  if (!soundness.step() || soundness.text(0) != "ok") throw SqliteError(SQLITE_CORRUPT, soundness.text(0));
  sqlite3* database = nullptr;
  const int code = sqlite3_open_v2(":memory:", &database, SQLITE_OPEN_READWRITE, nullptr);
  const std::unique_ptr<sqlite3, Close> fresh(database);
  if (code != SQLITE_OK) fail(database, code);
  for (const char* const statements : _upgrades)
    sqlite3_exec(database, statements, nullptr, nullptr, nullptr);
  if (schemaOf(_database.get()) != schemaOf(database)) {
    throw SqliteError(SQLITE_CORRUPT, "its tables are not those that were made");
  }
}

std::int64_t SqliteFile::numberOf(const char* question) {
  SqliteStatement statement = prepare(question);
  return statement.step() ? statement.number(0) : -1;
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
