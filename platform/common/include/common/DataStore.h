#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ZEB {

/// A small persistent store of values under text keys. What a write put there is on disk when the call
/// returns, but inside a batch when the batch is committed. Safe from several threads and several processes
/// at once. Every operation throws `CmpiStatus` with `CMPI_RC_ERR_FAILED` when the file cannot be read, or
/// the value not be kept; the store goes on working when the cause is gone.
class DataStore {
 public:
  virtual ~DataStore() = default;

  virtual bool exists(const std::string& key) = 0;

  /// Zero or false for a key that is not there.
  virtual std::uint32_t getUInt32(const std::string& key) = 0;
  virtual bool getBool(const std::string& key) = 0;
  /// Nothing for a key that is not there: `exists` and `getBool` in one look.
  virtual std::optional<bool> findBool(const std::string& key) = 0;

  virtual void setUInt32(const std::string& key, std::uint32_t value) = 0;
  virtual void setBool(const std::string& key, bool value) = 0;

  /// Makes the writes of this thread during its lifetime one transaction; other threads' operations wait.
  /// When one of the writes fails, none is kept and the later ones fail at once. Commits at the end of the
  /// scope unless it was committed before; a failure is thrown by `commit` alone.
  class Batch {
   public:
    explicit Batch(DataStore& store) : _store(&store) { store.beginBatch(); }
    ~Batch();
    Batch(const Batch&) = delete;
    Batch& operator=(const Batch&) = delete;
    void commit();

   private:
    DataStore* _store;
  };

 protected:
  virtual void beginBatch() = 0;
  virtual void endBatch() = 0;
};

/// Opens the store of that name in the configured directory, and makes both when they are not there. A
/// damaged file is put aside and a fresh one begun. Null when the store cannot be opened; the process's log
/// says why.
std::unique_ptr<DataStore> makeDataStore(const std::string& name);

/// How the last opening of a store went.
struct DataStoreState {
  std::string name;
  std::string file;
  std::string failure;  ///< why it could not be opened; empty when it could
};

/// Of every store that the process has asked for, in the order of their names.
std::vector<DataStoreState> dataStoreStates();

}  // namespace ZEB
