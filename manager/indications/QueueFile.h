// What waits for listeners, as a file keeps it.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "indications/SqliteFile.h"

namespace ZebManager {

/// Where a listener's sequence stands.
struct Sequence {
  std::string context;    ///< the same for all that goes to the listener
  std::int64_t next = 0;  ///< number
};

/// For use by one thread at a time. A change is in the file when the call returns; a power failure may take
/// the last second of it.
class QueueFile {
 public:
  struct Row {
    std::int64_t id = 0;  ///< grows with each that is queued
    std::string handler;
    std::string subscription;
    std::int64_t number = 0;
    std::int64_t queued = 0;  ///< when, in seconds
    std::size_t bytes = 0;    ///< of the element
  };
  /// An element that is in memory while the file has it not.
  struct Addition {
    Row row;
    std::string_view element;
  };
  struct Change {
    std::int64_t shift = 0;  ///< that all times in the file lose first
    std::vector<Addition> added;
    std::vector<std::int64_t> removed;                 ///< ids
    std::map<std::string, const Sequence*> sequences;  ///< by handler; null: of a listener that is gone
    std::int64_t time = 0;                             ///< now, in seconds
  };

  /// Throws ManagerError when there is a file that cannot be read.
  QueueFile(const std::string& directory, LogLine log);

  /// What is in the file, in order; the time is that of the last change. Throws SqliteError.
  void read(const std::function<void(const std::string& handler, Sequence sequence)>& takeSequence,
            const std::function<void(Row row)>& takeRow, std::int64_t& time);
  /// Throws SqliteError.
  std::string element(std::int64_t id);
  /// All or nothing. Throws SqliteError.
  void apply(const Change& change);
  /// After damage: from here on the file is empty. Throws ManagerError.
  void beginAnew(const std::string& why) { _file.beginAnew(why); }

 private:
  SqliteFile _file;
};

}  // namespace ZebManager
