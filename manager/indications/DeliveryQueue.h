// What waits for listeners, in a file.
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "indications/Sqlite.h"
#include "indications/Subscription.h"

namespace ZebManager {

struct DeliverySettings;

/// An indication on its way to one listener.
struct QueuedIndication {
  std::int64_t id = 0;  ///< grows with each that is queued
  std::string context;  ///< of the sequence that goes to the listener
  std::int64_t number = 0;
  std::string element;
};

/// For use by one thread at a time. A listener goes by the name of its handler. What is put here survives the
/// end of the process at any moment; a power failure may take the last second. Every member but `waiting`
/// throws SqliteError.
class DeliveryQueue {
 public:
  /// Throws ManagerError when the file cannot be opened.
  DeliveryQueue(const DeliverySettings& settings, LogLine log);

  /// Queues an indication once for each subscription, all or none.
  void put(const std::vector<const Subscription*>& subscriptions, std::string_view element);
  /// What is to be sent next. Drops what has waited too long.
  std::optional<QueuedIndication> oldest(const std::string& handler);
  void remove(const std::string& handler, std::int64_t id);
  /// Drops what waits for other subscriptions than these, and forgets the sequences of other listeners.
  void keepOnly(const std::set<std::string>& subscriptions, const std::set<std::string>& handlers);

  std::size_t waiting() const;

 private:
  void append(const Subscription& subscription, std::string_view element, std::int64_t now);
  void dropSurplus(const std::string& handler);
  void count();

  const std::size_t _mostWaiting;
  const std::chrono::seconds _longestWait;
  LogLine _log;
  SqliteFile _file;
  std::map<std::string, std::size_t> _waiting;  // by handler
  std::map<std::string, std::size_t> _dropped;  // by handler, since it was full first
};

}  // namespace ZebManager
