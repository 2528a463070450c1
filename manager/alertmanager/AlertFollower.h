// From indications to open alerts.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <unordered_map>
#include <vector>

#include "alertmanager/AlertTable.h"
#include "broker/Namespace.h"
#include "tree/Tree.h"

namespace ZebManager {

/// Makes alerts of indications, in order, and holds what is open against the machine: soon after it starts,
/// soon after every indication, and once a minute. What the machine has called well for two seconds is over,
/// whether an indication said so or not: it may have come while no server ran, or not be wanted. Opening is
/// for indications alone.
///
/// The machine is read on a thread of this object's own, which alone waits for the plug-in.
class AlertFollower {
 public:
  /// `model` has to be safe from several threads. `changed` is called when the table has changed.
  AlertFollower(Namespace& model, AlertTable& table, std::function<void()> changed, LogLine log);
  AlertFollower(const AlertFollower&) = delete;
  AlertFollower& operator=(const AlertFollower&) = delete;
  ~AlertFollower() { stop(); }

  /// From here on the machine is read, until `stop`.
  void start();
  void stop();
  /// An indication has come: its INSTANCE element. It is in the table when this returns.
  void receive(const std::string& element);

 private:
  using Clock = std::chrono::steady_clock;

  void run();
  Clock::time_point nextLook() const;
  void look();
  std::vector<AlertChange> changesOf(const std::vector<ReceivedIndication>& received, const Tree& machine);
  void addChanges(const ReceivedIndication& received, std::vector<AlertChange>& changes);
  void nameOver(const Tree& machine, Clock::time_point now, std::vector<AlertChange>& changes);
  void failed(const std::string& why);

  Namespace& _model;
  AlertTable& _table;
  const std::function<void()> _changed;
  const LogLine _log;

  std::mutex _mutex;
  std::condition_variable _wake;
  bool _stop = false;
  bool _pending = true;  ///< something was received

  // Of the thread.
  Clock::time_point _due = Clock::time_point::min();
  std::unordered_map<std::string, std::string> _ports;    ///< names by path; those that are gone, too
  std::map<AlertIdentity, Clock::time_point> _wellSince;  ///< of what is open
  unsigned _failures = 0;
  std::thread _thread;
};

}  // namespace ZebManager
