#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace ZEB {

/// A small persistent store of values under text keys, which several processes may have open. Safe from
/// several threads. Reads always answer, with the newest content that could be read: what another process
/// has written is seen at once, and a damaged or lost file is replaced by a fresh one with all that this
/// process knows. Trouble is said once in the process's log, and is over when its cause is.
class DataStore {
 public:
  using Values = std::unordered_map<std::string, std::uint32_t>;

  virtual ~DataStore() = default;

  /// All that is kept. The same object again for as long as nothing has changed.
  virtual std::shared_ptr<const Values> values() = 0;

  bool exists(const std::string& key) { return values()->contains(key); }
  /// Zero or false for a key that is not there.
  std::uint32_t getUInt32(const std::string& key);
  bool getBool(const std::string& key) { return getUInt32(key) != 0; }

  /// The value is on disk when the call returns. Throws `CmpiStatus` with `CMPI_RC_ERR_FAILED` and the reason
  /// when it is not kept.
  void setUInt32(const std::string& key, std::uint32_t value) { set(key, value); }
  void setBool(const std::string& key, bool value) { set(key, value ? 1 : 0); }

  /// Keeps those of the values whose keys are not there, all of them or none. Throws nothing.
  virtual void addDefaults(const Values& defaults) = 0;

 protected:
  virtual void set(const std::string& key, std::uint32_t value) = 0;
};

/// Opens the store of that name in the configured directory, and makes both when they are not there. Null,
/// with the reason in the process's log, when there is no such file and there can be none. One that only
/// cannot be used as yet (it is locked, of a newer format, or the disk is full) is a store that has nothing
/// to read and refuses what is to be kept.
std::unique_ptr<DataStore> makeDataStore(const std::string& name);

/// How a store is.
struct DataStoreState {
  std::string name;
  std::string file;
  std::string failure;  ///< why it cannot be read, or keeps no change; empty when all is well
};

/// Of every store that the process has asked for, in the order of their names.
std::vector<DataStoreState> dataStoreStates();

}  // namespace ZEB
