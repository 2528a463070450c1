#pragma once

#include <mutex>
#include <optional>

#include "StoreFile.h"
#include "common/DataStore.h"

namespace ZEB {

/// A data store in a SQLite file.
class SqliteStore : public DataStore {
 public:
  /// Throws what `openStoreFile` throws.
  SqliteStore(std::string file, std::chrono::milliseconds patience, const Logger& logger);

  bool exists(const std::string& key) override;
  std::uint32_t getUInt32(const std::string& key) override;
  bool getBool(const std::string& key) override;
  std::optional<bool> findBool(const std::string& key) override;
  void setUInt32(const std::string& key, std::uint32_t value) override;
  void setBool(const std::string& key, bool value) override;

 protected:
  void beginBatch() override;
  void endBatch() override;

 private:
  struct Connection {
    explicit Connection(std::unique_ptr<SqliteDatabase> theDatabase);
    std::unique_ptr<SqliteDatabase> database;
    SqliteStatement select;
    SqliteStatement insert;
  };

  std::optional<std::uint32_t> find(const std::string& key);
  void write(const std::string& key, std::uint32_t number);
  void insert(const std::string& key, std::uint32_t number);
  void beginWriting();
  void connect();
  void rollback();

  const std::string _file;
  const std::chrono::milliseconds _patience;
  const Logger _logger;

  // Held by a batch for its lifetime, so that nobody else's write gets into its transaction.
  std::recursive_mutex _mutex;
  std::unique_ptr<Connection> _connection;
  int _batches = 0;
  bool _writing = false;  // a transaction for writing is under way
  // What made the current batch worthless; later writes of it fail at once, without waiting for a lock again.
  std::string _batchFailure;
};

}  // namespace ZEB
