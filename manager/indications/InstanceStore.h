// The file that keeps the instances of "root/interop".
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "indications/SqliteFile.h"
#include "indications/StoredInstance.h"

namespace ZebManager {

/// For use by one thread at a time. A change is on disk when the call returns; it throws SqliteError when
/// that cannot be done, and nothing is changed then.
class InstanceStore {
 public:
  /// Throws ManagerError when there is a file that cannot be read.
  InstanceStore(const std::string& directory, const InstanceNames& names, LogLine log);

  /// Reads every instance. What no longer fits its class is left in the file, with a line in the log.
  void load(const std::function<void(std::unique_ptr<StoredInstance>)>& take);
  /// After damage: what was there has to be put anew.
  void beginAnew(const std::string& why) { _file.beginAnew(why); }
  void put(const std::string& name, const StoredInstance& stored);
  void remove(const std::string& name);

 private:
  std::unique_ptr<StoredInstance> read(const std::string& name, const std::string& className);
  void writeProperty(SqliteStatement& insert, const std::string& name, const NamedValue& property);
  void drop(const std::string& name);

  const InstanceNames& _names;
  LogLine _log;
  SqliteFile _file;
};

}  // namespace ZebManager
