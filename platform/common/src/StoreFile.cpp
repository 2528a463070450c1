#include "StoreFile.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>

#include "StoreDirectory.h"

namespace ZEB {
namespace {

namespace fs = std::filesystem;

constexpr const char* kCompanions[] = {"-journal", "-wal", "-shm"};

/// Trouble that goes by, or that somebody can end while the object manager runs.
bool passes(const std::system_error& error) {
  constexpr int kPassing[] = {ENOSPC, EDQUOT, EMFILE, ENFILE, ENOMEM, EIO, EWOULDBLOCK};
  return std::ranges::find(kPassing, error.code().value()) != std::end(kPassing);
}

template <class Open>
auto orNoStore(Open&& open) {
  try {
    return open();
  } catch (const std::system_error& error) {
    if (passes(error)) throw;
    throw NoStore(error.what());
  }
}

OpenStore openChecked(const std::string& file, std::chrono::milliseconds patience,
                      const StoreContent& known) {
  auto database = orNoStore([&] { return std::make_unique<SqliteDatabase>(file, patience); });
  // With "extra", the end of the journal is on disk too when a write returns: no power cut takes it back.
  database->execute("PRAGMA synchronous = EXTRA");
  if (database->text("PRAGMA journal_mode = DELETE") != "delete") {
    throw std::runtime_error("another program works on it and keeps another kind of journal");
  }
  auto content = readStore(*database, file, known);
  if (!content) {
    upgradeStore(*database, *known.values);
    content = readStore(*database, file, known);
  }
  if (database->readOnly() && access(file.c_str(), W_OK) == 0) {
    throw DamagedStore("its header forbids changes");
  }
  return {std::move(database), std::move(content).value()};
}

/// What SQLite keeps beside a file goes with it: it would be played into the fresh one.
void putAside(const std::string& file, const char* reason, const StoreContent& known, const Logger& logger) {
  int number = 1;
  std::string aside;
  do {
    aside = file + ".damaged-" + std::to_string(number++);
  } while (fs::exists(aside));
  fs::rename(file, aside);
  for (const char* companion : kCompanions) {
    if (fs::exists(file + companion)) fs::rename(file + companion, aside + companion);
  }
  syncStoreDirectory(fs::path(file).parent_path());
  logger.error("store %s is damaged (%s): it is kept as %s, and a fresh one begins%s", file, reason, aside,
               known.values->empty() ? "" : " with the values that are known");
}

OpenStore openOrReplace(const std::string& file, std::chrono::milliseconds patience,
                        const StoreContent& known, const Logger& logger) {
  try {
    return openChecked(file, patience, known);
  } catch (const SqliteError& error) {
    if (!error.damaged()) throw;
    putAside(file, error.what(), known, logger);
  } catch (const DamagedStore& error) {
    putAside(file, error.what(), known, logger);
  }
  return openChecked(file, patience, known);
}

}  // namespace

FileDescriptor waitForTurn(const std::string& file, std::chrono::milliseconds patience) {
  return lockStoreDirectory(fs::path(file).parent_path(), patience);
}

// The directory is held, so that two processes that find the same file damaged do not put aside each other's
// fresh one.
OpenStore openStoreFile(const std::string& file, std::chrono::milliseconds patience,
                        const StoreContent& known, const Logger& logger) {
  const FileDescriptor turn = orNoStore([&] {
    makeStoreDirectory(fs::path(file).parent_path());
    return waitForTurn(file, patience);
  });
  std::error_code missing;
  const bool empty = fs::file_size(file, missing) == 0;
  const bool gone = missing && known.mark.isOfAFile();
  auto opened = openOrReplace(file, patience, known, logger);
  if (empty || gone) {
    logger.error("store %s was %s: a fresh one begins%s", file, empty ? "empty" : "gone",
                 known.values->empty() ? "" : " with the values that are known");
  }
  return opened;
}

}  // namespace ZEB
