#include "indications/SqliteFile.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <utility>

namespace ZebManager {
namespace {

namespace fs = std::filesystem;

constexpr std::int64_t kIncremental = 2;  // what SQLite calls a file that can be shrunk
constexpr std::int64_t kManyPages = 256;  // that are worth to be given back
constexpr int kWhole = -1;                // of a copy, in one step
constexpr int kPatience = 5000;           // milliseconds, for another process that has the file

void makeDirectory(const fs::path& directory) {
  std::error_code error;
  if (fs::create_directories(directory, error)) {
    fs::permissions(directory, fs::perms::owner_all | fs::perms::group_read | fs::perms::group_exec, error);
  }
  if (!error) return;
  throw SqliteError(SQLITE_CANTOPEN,
                    "cannot make the directory " + directory.string() + ": " + error.message());
}

/// Renames a file and what SQLite keeps beside it. The first free name is taken.
std::string putAside(const std::string& path, std::error_code& error) {
  std::string aside;
  for (int number = 1; aside.empty() || fs::exists(aside); ++number) {
    aside = path + ".damaged-" + std::to_string(number);
  }
  fs::rename(path, aside, error);
  if (error) return "";
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

/// The statements are right, so what they cannot be used with is no file of this kind.
template <class Work>
void asContent(const Work& work) {
  try {
    work();
  } catch (const SqliteError& error) {
    constexpr std::array kOfContent = {SQLITE_ERROR, SQLITE_TOOBIG, SQLITE_CONSTRAINT, SQLITE_MISMATCH};
    if (std::ranges::find(kOfContent, error.code) == kOfContent.end()) throw;
    throw SqliteError(SQLITE_CORRUPT, error.what());
  }
}

/// As it stands in a URI.
std::string percentEncoded(const std::string& path) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string encoded;
  for (const char c : path) {
    if (c != '%' && c != '?' && c != '#') {
      encoded += c;
      continue;
    }
    const auto byte = static_cast<unsigned char>(c);
    encoded += {'%', kDigits[byte / 16], kDigits[byte % 16]};
  }
  return encoded;
}

}  // namespace

SqliteFile::SqliteFile(const std::string& directory, const std::string& name, const SqliteFormat& format,
                       LogLine log)
    : _path((fs::path(directory) / name).string()), _format(format), _log(std::move(log)) {
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
    _writable = false;
    std::error_code error;
    const std::string aside = putAside(_path, error);
    if (error) {
      if (!std::exchange(_abandoned, true))
        _log(_path + " is damaged (" + why + ") and cannot be put aside (" + error.message() +
             "): what should be in it is not kept");
      return;
    }
    _abandoned = false;
    _log(_path + " is damaged (" + why + "): it is now " + aside + ", and a fresh one is begun");
    open();
  } catch (const std::exception& error) {
    throw cannotOpen(_path, error);
  }
}

void SqliteFile::open() {
  std::string why;
  try {
    return openForWriting();
  } catch (const SqliteError& error) {
    if (!error.unwritable()) throw;
    why = error.what();
  }
  _database.reset();
  openForReading();
  _log(_path + " cannot be written (" + why +
       "): " + (_database ? "it is only read" : "what should be in it is not kept"));
}

void SqliteFile::requireWritable() {
  if (_writable) return;
  Database before = std::move(_database);
  try {
    openForWriting();
  } catch (const SqliteError&) {
    _database = std::move(before);
    throw;
  }
  _log(_path + " can be written");
}

void SqliteFile::openForWriting() {
  makeDirectory(fs::path(_path).parent_path());
  connect(_path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
  asContent([this] {
    checkHeader();
    checkWritable();
    execute("PRAGMA journal_mode = WAL; PRAGMA synchronous = FULL; PRAGMA secure_delete = OFF");
    upgrade();
    checkContent();
    makeShrinkable();
    execute("PRAGMA journal_size_limit = 1048576");
    execute(_format.settings);
  });
  _writable = true;
}

/// Without what SQLite keeps beside the file, which cannot be made now, it is read as it is.
void SqliteFile::openForReading() {
  std::error_code error;
  const bool there = fs::exists(_path, error);
  if (error) throw SqliteError(SQLITE_CANTOPEN, error.message());
  if (!there || fs::file_size(_path, error) == 0) return;
  const std::string uri = "file:" + percentEncoded(_path) + "?mode=ro";
  try {
    connect(uri, SQLITE_OPEN_READONLY);
    numberOf("PRAGMA user_version");
  } catch (const SqliteError&) {
    connect(uri + "&immutable=1", SQLITE_OPEN_READONLY);
  }
  asContent([this] {
    checkHeader();
    if (numberOf("PRAGMA user_version") != formatNumber()) {
      copyToMemory();
      upgrade();
    }
    checkContent();
  });
}

/// Where what an earlier version wrote can be brought to this one.
void SqliteFile::copyToMemory() {
  const Database file = std::move(_database);
  connect(":memory:", SQLITE_OPEN_READWRITE);
  sqlite3_backup* const copy = sqlite3_backup_init(_database.get(), "main", file.get(), "main");
  if (!copy) failSqlite(_database.get(), sqlite3_errcode(_database.get()));
  sqlite3_backup_step(copy, kWhole);
  const int code = sqlite3_backup_finish(copy);
  if (code != SQLITE_OK) failSqlite(_database.get(), code);
}

void SqliteFile::connect(const std::string& name, int flags) {
  sqlite3* database = nullptr;
  const int code =
      sqlite3_open_v2(name.c_str(), &database, flags | SQLITE_OPEN_URI | SQLITE_OPEN_NOMUTEX, nullptr);
  _database.reset(database);
  if (code != SQLITE_OK) failSqlite(database, code);
  sqlite3_busy_timeout(database, kPatience);
}

/// What a header says that SQLite takes for granted. A number of the format that the second number does not
/// confirm is no later version's.
void SqliteFile::checkHeader() {
  const std::int64_t format = numberOf("PRAGMA user_version"), seal = numberOf("PRAGMA application_id");
  const std::int64_t known = formatNumber();
  if (format > known && seal == sealOf(format)) throw ManagerError("it was written by a later version");
  if (format < 0 || format > known || (seal != 0 && seal != sealOf(format))) {
    throw SqliteError(SQLITE_CORRUPT, "its header contradicts itself");
  }
}

void SqliteFile::checkWritable() {
  if (sqlite3_db_readonly(_database.get(), "main") == 0) return;
  if (access(_path.c_str(), W_OK) != 0) throw SqliteError(SQLITE_READONLY, std::strerror(errno));
  throw SqliteError(SQLITE_CORRUPT, "its header forbids changes");
}

std::int64_t SqliteFile::formatNumber() const {
  return static_cast<std::int64_t>(_format.upgrades.size());
}

void SqliteFile::upgrade() {
  const std::int64_t format = numberOf("PRAGMA user_version"), known = formatNumber();
  if (format == known && numberOf("PRAGMA application_id") == sealOf(known)) return;
  execute("BEGIN IMMEDIATE");
  for (const char* const statements : _format.upgrades.subspan(static_cast<std::size_t>(format)))
    execute(statements);
  execute(("PRAGMA user_version = " + std::to_string(known)).c_str());
  execute(("PRAGMA application_id = " + std::to_string(sealOf(known))).c_str());
  execute("COMMIT");
}

/// Files of before it was so have to be written anew as a whole, which may wait.
void SqliteFile::makeShrinkable() {
  if (numberOf("PRAGMA auto_vacuum") == kIncremental) return;
  try {
    execute("PRAGMA auto_vacuum = INCREMENTAL; VACUUM");
  } catch (const SqliteError& error) {
    if (!error.unwritable()) throw;
  }
}

void SqliteFile::shrink() {
  if (numberOf("PRAGMA freelist_count") < kManyPages) return;
  try {
    execute("PRAGMA incremental_vacuum; PRAGMA wal_checkpoint(TRUNCATE)");
  } catch (const SqliteError& error) {
    if (!error.unwritable()) throw;
  }
}

/// The tables as the upgrades make them, and every page of them.
void SqliteFile::checkContent() {
  SqliteStatement soundness = prepare("PRAGMA integrity_check(1)");
  if (!soundness.step() || soundness.text(0) != "ok") throw SqliteError(SQLITE_CORRUPT, soundness.text(0));
  sqlite3* database = nullptr;
  const int code = sqlite3_open_v2(":memory:", &database, SQLITE_OPEN_READWRITE, nullptr);
  const Database fresh(database);
  if (code != SQLITE_OK) failSqlite(database, code);
  for (const char* const statements : _format.upgrades)
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
  if (code != SQLITE_OK) failSqlite(_database.get(), code);
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
