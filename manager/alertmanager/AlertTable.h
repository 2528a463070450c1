// Which alerts are open, and which have just ended.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "alertmanager/AlertFile.h"
#include "alertmanager/OpenAlert.h"

namespace ZebManager {

/// What every Alertmanager is told, in memory and in a file. An indication is in it from `receive` on, and
/// becomes alerts in `apply`. One that has ended stays until every Alertmanager knows, for a day at most:
/// by then it has ended everywhere by itself. What the file does not take is kept in memory and goes into
/// the file when it can be written again. Safe from any thread.
class AlertTable {
 public:
  static constexpr std::size_t kMostAlerts = 10'000;
  static constexpr std::size_t kMostReceived = 10'000;

  /// Throws ManagerError when there is a file that cannot be read.
  AlertTable(const std::string& directory, LogLine log);

  void receive(std::string element, DayTime time);
  /// In the order in which they came.
  std::vector<ReceivedIndication> received() const;
  /// Indications up to an id, 0 for none, have come to these changes. What opens while it is open keeps its
  /// start; what ends and is not open changes nothing.
  void apply(std::int64_t lastId, const std::vector<AlertChange>& changes);

  /// Grows with each change.
  std::uint64_t revision() const;
  /// That are open, in no particular order.
  std::vector<OpenAlert> open() const;
  struct Extract {
    std::uint64_t revision;  ///< of the table
    std::vector<OpenAlert> alerts;
  };
  /// What has changed after a revision; with `all`, also whatever is open.
  Extract since(std::uint64_t revision, bool all) const;
  /// Every Alertmanager knows what was so then. What ended too long ago goes, too.
  void acknowledged(std::uint64_t revision, DayTime now);

 private:
  using Alerts = std::map<AlertIdentity, OpenAlert>;

  void take(const AlertChange& change, std::vector<const OpenAlert*>& changed);
  void end(OpenAlert& alert, DayTime time, std::vector<const OpenAlert*>& changed);
  template <class Work>
  void keep(const Work& work);
  void beginAnew(const std::string& why);

  const LogLine _log;
  mutable std::mutex _mutex;
  AlertFile _file;
  std::deque<ReceivedIndication> _received;
  Alerts _alerts;
  std::int64_t _lastId = 0;
  std::uint64_t _revision = 0;
  bool _behind = false;  ///< the file lacks something
  bool _full = false;
  bool _behindPlugin = false;  ///< more was received than is kept
};

}  // namespace ZebManager
