#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace ZEB {

/// A small persistent store of values under text keys. What a write put there is on disk when the call
/// returns, but inside a batch when the batch is committed. Safe from several threads and several processes
/// at once.
class DataStore {
 public:
  virtual ~DataStore() = default;

  virtual bool exists(const std::string& key) = 0;

  /// Zero or false for a key that is not there.
  virtual std::uint32_t getUInt32(const std::string& key) = 0;
  virtual bool getBool(const std::string& key) = 0;

  /// Throw `CmpiStatus` with `CMPI_RC_ERR_FAILED` when the value could not be kept.
  virtual void setUInt32(const std::string& key, std::uint32_t value) = 0;
  virtual void setBool(const std::string& key, bool value) = 0;

  /// Makes the writes during its lifetime one transaction. Commits at the end of the scope unless it was
  /// committed before; a commit that fails throws from `commit` alone.
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

/// Opens the store of that name in the configured directory, and makes both when they are not there. Null
/// when it cannot be opened.
std::unique_ptr<DataStore> makeDataStore(const std::string& name);

}  // namespace ZEB
