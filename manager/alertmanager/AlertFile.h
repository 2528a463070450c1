// The file in which alerts outlive the server.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "alertmanager/OpenAlert.h"
#include "indications/SqliteFile.h"

namespace ZebManager {

/// An indication that has not been looked at yet.
struct ReceivedIndication {
  std::int64_t id = 0;  ///< grows with each
  DayTime time = 0;
  std::string element;
};

/// For use by one thread at a time. A change is in the file when the call returns; a power failure may take
/// the last second of it. Changes throw SqliteError, and nothing is changed then.
class AlertFile {
 public:
  /// Throws ManagerError when there is a file that cannot be read.
  AlertFile(const std::string& directory, LogLine log);

  void read(const std::function<void(ReceivedIndication)>& takeReceived,
            const std::function<void(OpenAlert)>& takeAlert);
  void add(const ReceivedIndication& received);
  /// Indications up to an id have become alerts; some are gone.
  void apply(std::int64_t lastId, const std::vector<const OpenAlert*>& put,
             const std::vector<AlertIdentity>& gone);
  /// From here on the file is empty. Throws ManagerError.
  void beginAnew(const std::string& why) { _file.beginAnew(why); }
  /// In the place of whatever is in the file.
  void replace(const std::vector<const ReceivedIndication*>& received,
               const std::vector<const OpenAlert*>& alerts);

 private:
  void put(const std::vector<const OpenAlert*>& alerts);
  void insert(const ReceivedIndication& received);

  SqliteFile _file;
};

}  // namespace ZebManager
