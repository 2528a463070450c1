// What all pages are shown.
#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "broker/Namespace.h"
#include "metrics/LinkPartners.h"
#include "page/Events.h"
#include "page/PageTree.h"
#include "page/Rates.h"

namespace ZebManager {

/// Reads the machine once for all pages that are open, and tells them what changes; while none is, it reads
/// nothing. Alerts are kept from the start. Safe from any thread.
class LiveModel {
 public:
  /// `model` has to be safe from several threads. `askPartners`: called by one of its own. `source`: what is
  /// played, empty for this machine.
  LiveModel(Namespace& model, AskPartners askPartners, std::string source);
  LiveModel(const LiveModel&) = delete;
  LiveModel& operator=(const LiveModel&) = delete;
  ~LiveModel() { stop(); }

  /// From now on nothing is read. `model` may go then.
  void stop();

  /// An alert has come: its INSTANCE element. Waits for nothing.
  void alert(const std::string& element);
  /// A page that has just come, or that was away since the event of that id.
  std::shared_ptr<EventQueue> open(const std::string& lastEventId);

 private:
  using Clock = std::chrono::steady_clock;

  /// Reads the tree and counters while pages are open.
  void read();
  /// Reads what alerts are about.
  void followAlerts();
  void readTree();
  void readCounters();
  void readChanged(const std::string& path);
  void admit();
  void failed(const std::string& why);
  std::string state() const;
  Clock::time_point nextReading() const;

  Namespace& _model;
  const AskPartners _askPartners;
  const std::string _source;
  std::mutex _mutex;
  std::condition_variable _wake, _alerted;
  bool _stop = false;
  Events _events;
  std::deque<std::string> _alerts;  ///< JSON, the newest first
  std::uint64_t _alertCount = 0;
  std::vector<std::string> _concerned;  ///< paths of what alerts are about
  std::vector<std::shared_ptr<EventQueue>> _newcomers;
  PageTree _tree;
  std::uint64_t _version = 0;  ///< of the shape of the tree
  bool _read = false;          ///< the tree is known, and pages have followed it since
  bool _stale = false;         ///< something has happened since the tree was read
  Clock::time_point _treeDue, _countersDue;
  std::string _failure;
  Rates _rates;  ///< of the thread that reads; its texts are kept for others
  std::string _history = "{}";
  std::thread _reader, _follower;
};

}  // namespace ZebManager
