#pragma once

#include <functional>
#include <mutex>

#include "StoreFile.h"
#include "common/DataStore.h"

namespace ZEB {

/// A data store in a SQLite file.
class SqliteStore : public DataStore {
 public:
  /// Told what is wrong with the store whenever that changes; nothing is wrong when the text is empty.
  using Report = std::function<void(const std::string& failure)>;

  /// Throws `NoStore`.
  SqliteStore(
      std::string file, std::chrono::milliseconds patience, const Logger& logger,
      Report report = [](const std::string&) {});

  std::shared_ptr<const Values> values() override;
  void addDefaults(const Values& defaults) override;

 protected:
  void set(const std::string& key, std::uint32_t value) override;

 private:
  /// Brings what is known up to date with the file; the file may stay what it is when that fails.
  void follow(std::chrono::milliseconds patience);
  void open(std::chrono::milliseconds patience);
  void keep(const Values& values, Existing existing);
  void write(const Values& values, Existing existing);
  void remember(const Values& values, Existing existing);
  void markUnlessChanged(std::int64_t version);
  void tryWriting();
  void cannotRead(const std::exception& error);
  void noteUnwritable(const std::string& failure);
  void sayUnwritable();

  const std::string _file;
  const std::chrono::milliseconds _patience;
  const Logger _logger;
  const Report _report;

  std::mutex _mutex;
  std::unique_ptr<SqliteDatabase> _database;  ///< null while the file cannot be used
  StoreContent _content;                      ///< what is known of the file, which a fresh one begins with
  std::string _unreadable;                    ///< why the file could last not be used; empty when it could
  std::string _unwritable;                    ///< why the last change was not kept; empty when it was
  bool _saidUnwritable = false;
};

}  // namespace ZEB
