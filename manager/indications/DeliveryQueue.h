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

#include "indications/BootClock.h"
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
/// end of the process at any moment; a power failure may take the last second. A damaged file is put aside,
/// with what waits in it. Whatever is dropped, and whatever could not be put, leaves a gap in the numbers of
/// its sequence. Ages go by the time since the machine started; one that was queued before that counts as
/// younger than it is.
class DeliveryQueue {
 public:
  /// Throws ManagerError when the file cannot be opened.
  DeliveryQueue(const DeliverySettings& settings, LogLine log);

  /// Queues an indication once for each subscription, all or none. Throws SqliteError.
  void put(const std::vector<const Subscription*>& subscriptions, std::string_view element);
  /// What is to be sent next. Drops what has waited too long. Throws SqliteError.
  std::optional<QueuedIndication> oldest(const std::string& handler);
  /// Of the oldest: it comes no more, even when the file cannot be changed now.
  void remove(const std::string& handler, std::int64_t id);
  /// Drops what waits for other subscriptions than these, and forgets the sequences of other listeners.
  /// Throws SqliteError.
  void keepOnly(const std::set<std::string>& subscriptions, const std::set<std::string>& handlers);

  std::size_t waiting() const;

 private:
  /// What is known of a listener without looking into the file.
  struct Line {
    std::size_t count = 0;
    std::size_t bytes = 0;
    std::int64_t done = 0;    ///< number of the last that is to come no more
    std::size_t lost = 0;     ///< that could not be put since the last that was
    std::size_t dropped = 0;  ///< since there were too many first
  };

  template <class Work>
  auto onFile(const Work& work);
  void open();
  void write(const std::vector<const Subscription*>& subscriptions, std::string_view element);
  void beginLine(const std::string& handler);
  void append(const Subscription& subscription, std::string_view element);
  void dropSurplus(const std::string& handler);
  void dropOldest(const std::string& handler, const std::string& why);
  template <class... Values>
  std::size_t erase(const std::string& condition, const Values&... values);
  void cleanUp(const std::string& handler);
  std::int64_t now() const;
  std::int64_t oldestTime() const;

  const DeliverySettings& _settings;
  LogLine _log;
  SqliteFile _file;
  std::map<std::string, Line> _lines;                  // by handler
  std::map<std::string, std::size_t> _ofSubscription;  // how many wait
  std::size_t _bytes = 0;                              // of all elements
  bool _stuck = false;                                 // the file could not be changed lately
};

}  // namespace ZebManager
