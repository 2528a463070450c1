#include "StoreFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <filesystem>
#include <system_error>
#include <thread>

#include "posix/FileDescriptor.h"

namespace ZEB {
namespace {

namespace fs = std::filesystem;

constexpr std::int64_t kApplication = 0x5A454253;  // "ZEBS", where SQLite keeps whose file it is

/// What brings a file from one format version to the next; the first makes an empty file version 1.
constexpr std::array kUpgrades = {
    "CREATE TABLE value (key TEXT PRIMARY KEY NOT NULL,"
    " number INTEGER NOT NULL CHECK (number BETWEEN 0 AND 4294967295)) STRICT, WITHOUT ROWID;",
};
constexpr std::int64_t kFormat = kUpgrades.size();

/// A file that is sound for SQLite and yet no store.
class ForeignFile : public std::runtime_error {
  using runtime_error::runtime_error;
};

[[noreturn]] void throwErrno(const std::string& what) {
  throw std::system_error(errno, std::generic_category(), what);
}

void syncDirectory(const fs::path& directory) {
  const FileDescriptor opened(open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (opened) fsync(opened.get());
}

/// Makes the directory and what is lacking above it. Each is on disk with its entry before the next.
void makeDirectory(const fs::path& directory) {
  if (mkdir(directory.c_str(), S_IRWXU) != 0) {
    if (errno == EEXIST) return;
    if (errno != ENOENT || !directory.has_relative_path()) throwErrno(directory);
    makeDirectory(directory.parent_path());
    if (mkdir(directory.c_str(), S_IRWXU) != 0 && errno != EEXIST) throwErrno(directory);
  }
  syncDirectory(directory.parent_path());
}

/// Holds the directory for one process at a time, so that two that find the same file damaged do not put
/// aside each other's fresh one.
FileDescriptor lockDirectory(const fs::path& directory, std::chrono::milliseconds patience) {
  FileDescriptor held(open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!held) throwErrno(directory);
  const auto end = std::chrono::steady_clock::now() + patience;
  while (flock(held.get(), LOCK_EX | LOCK_NB) != 0) {
    if (errno != EWOULDBLOCK && errno != EINTR) throwErrno(directory);
    if (std::chrono::steady_clock::now() >= end) throwErrno(directory.string() + " is locked");
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return held;
}

std::int64_t queryNumber(SqliteDatabase& database, const char* sql) {
  SqliteStatement query(database, sql);
  query.step();
  return query.number(0);
}

void checkSound(SqliteDatabase& database) {
  SqliteStatement check(database, "PRAGMA quick_check(1)");
  check.step();
  if (check.text(0) != "ok") throw ForeignFile(check.text(0));
}

std::int64_t checkedFormat(SqliteDatabase& database) {
  const std::int64_t format = queryNumber(database, "PRAGMA user_version");
  const std::int64_t application = queryNumber(database, "PRAGMA application_id");
  const bool fresh = format == 0 && queryNumber(database, "SELECT count(*) FROM sqlite_schema") == 0;
  if (!fresh && application != kApplication) throw ForeignFile("the file of another program");
  if (format > kFormat) {
    throw std::runtime_error("its format " + std::to_string(format) + " is newer than " +
                             std::to_string(kFormat) + ", which is the newest that is known here");
  }
  return format;
}

void upgrade(SqliteDatabase& database) {
  database.execute("BEGIN IMMEDIATE");
  try {
    for (auto format = checkedFormat(database); format < kFormat; ++format) {
      database.execute(kUpgrades[static_cast<std::size_t>(format)]);
    }
    database.execute(("PRAGMA application_id = " + std::to_string(kApplication)).c_str());
    database.execute(("PRAGMA user_version = " + std::to_string(kFormat)).c_str());
    database.execute("COMMIT");
  } catch (const SqliteError&) {
    if (database.inTransaction()) database.execute("ROLLBACK");
    throw;
  }
}

std::unique_ptr<SqliteDatabase> openChecked(const std::string& file, std::chrono::milliseconds patience) {
  auto database = std::make_unique<SqliteDatabase>(file, patience);
  // With "extra", the end of the journal is on disk too when a write returns: no power cut takes it back.
  database->execute("PRAGMA journal_mode = DELETE; PRAGMA synchronous = EXTRA;");
  const std::int64_t format = checkedFormat(*database);
  checkSound(*database);
  if (format < kFormat) upgrade(*database);
  return database;
}

/// A journal goes with its file: it would be played into the fresh one.
void putAside(const std::string& file, const char* reason, const Logger& logger) {
  int number = 1;
  std::string aside;
  do {
    aside = file + ".damaged-" + std::to_string(number++);
  } while (fs::exists(aside));
  fs::rename(file, aside);
  if (fs::exists(file + "-journal")) fs::rename(file + "-journal", aside + "-journal");
  syncDirectory(fs::path(file).parent_path());
  logger.error("store %s is damaged (%s): it is kept as %s, and a fresh one begins", file, reason, aside);
}

}  // namespace

FileDescriptor waitForTurn(const std::string& file, std::chrono::milliseconds patience) {
  return lockDirectory(fs::path(file).parent_path(), patience);
}

std::unique_ptr<SqliteDatabase> openStoreFile(const std::string& file, std::chrono::milliseconds patience,
                                              const Logger& logger) {
  const fs::path directory = fs::path(file).parent_path();
  makeDirectory(directory);
  const FileDescriptor lock = lockDirectory(directory, patience);
  try {
    return openChecked(file, patience);
  } catch (const SqliteError& error) {
    if (!error.damaged()) throw;
    putAside(file, error.what(), logger);
  } catch (const ForeignFile& error) {
    putAside(file, error.what(), logger);
  }
  return openChecked(file, patience);
}

}  // namespace ZEB
