// What waits for listeners, in a file.
#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "indications/QueueFile.h"
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
/// end of the process at any moment; a power failure may take the last second. What the file cannot take is
/// kept in memory, within bounds, and goes into the file as soon as it can. A damaged file is put aside, with
/// what waits in it. Whatever is dropped or lost leaves a gap in the numbers of its sequence. Ages go by the
/// time that the machine has been running, which does not count while it is off.
class DeliveryQueue {
 public:
  /// Throws ManagerError when there is a file that cannot be read.
  DeliveryQueue(const DeliverySettings& settings, LogLine log);
  DeliveryQueue(const DeliveryQueue&) = delete;
  DeliveryQueue& operator=(const DeliveryQueue&) = delete;
  /// Tries for the last time to bring the file up to date.
  ~DeliveryQueue();

  /// Queues an indication once for each subscription.
  void put(const std::vector<const Subscription*>& subscriptions, std::string_view element);
  /// What is to be sent next. Drops what has waited too long. Throws SqliteError when it cannot be read.
  std::optional<QueuedIndication> oldest(const std::string& handler);
  void remove(const std::string& handler, std::int64_t id);
  /// Drops what waits for other subscriptions than these, and forgets the sequences of other listeners.
  void keepOnly(const std::set<std::string_view>& subscriptions, const std::set<std::string_view>& handlers);

  std::size_t waiting() const;

 private:
  struct Waiting {
    std::int64_t id;
    std::int64_t number;
    std::int64_t queued;
    std::size_t bytes;
    const std::string* subscription;               ///< one of its line's
    std::shared_ptr<const std::string> held = {};  ///< the element, while the file has it not
  };
  struct Line {
    Sequence sequence;
    std::deque<Waiting> waiting = {};
    std::set<std::string> subscriptions = {};
    std::size_t bytes = 0;
    std::size_t held = 0;     ///< bytes that the file has not
    std::size_t dropped = 0;  ///< since there were too many first
  };
  using Entry = std::deque<Waiting>::iterator;

  void read();
  void shiftTimes();
  Line& lineOf(const std::string& handler);
  void add(const std::string& handler, QueueFile::Row row, std::shared_ptr<const std::string> held);
  Entry erase(const std::string& handler, Line& line, Entry entry);
  void dropSurplus(const std::string& handler);
  void drop(const std::string& handler, Line& line, Entry entry, const std::string& why);
  void dropExpired(const std::string& handler, Line& line);
  static Entry firstHeld(Line& line);
  void dropHeld();
  void save();
  QueueFile::Change unsaved();
  void noteSaved();
  void noteStuck(const std::exception& error);
  void beginAnew(const std::string& why);
  std::int64_t now() const;

  const DeliverySettings& _settings;
  LogLine _log;
  QueueFile _file;
  std::map<std::string, Line> _lines;  // by handler
  std::size_t _bytes = 0;              // of all lines
  std::size_t _held = 0;
  std::int64_t _lastId = 0;

  // What the file does not have yet.
  std::int64_t _shift = 0;             // of all its times
  std::vector<std::int64_t> _removed;  // ids
  std::set<std::string> _changed;      // handlers
  std::int64_t _savedTime = 0;
  bool _stuck = false;  // it takes nothing
  std::int64_t _nextTry = 0;
};

}  // namespace ZebManager
