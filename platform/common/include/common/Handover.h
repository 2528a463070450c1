#pragma once

#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>

#include "posix/FileDescriptor.h"

namespace ZEB {

/// What instances have reported, for a process that takes the place of this one and must neither report it
/// again nor leave out what has changed meanwhile. Whoever runs such processes names a file, whose first
/// lines are what the process before reported; what this one reports is written behind them: '=' and a
/// subject, a blank and a text, or '+' in place of '=' where an alert follows that tells the same, or '-' and
/// a subject that is gone. Without a file nothing is handed over. Safe from several threads.
class Handover {
 public:
  /// The process's.
  static Handover& current();

  /// Reads what is in the file; lines that are none are left out. Null: there is no file.
  void open(const char* file);

  /// Whether a process before has left something that nobody has taken over.
  bool pending() const;
  /// What it left of a subject.
  std::optional<std::string> of(const std::string& subject) const;
  /// All that was left has been taken over. Until then nothing is noted.
  void taken();

  enum class Alert { None, Follows };
  void note(const std::string& subject, const std::string& text, Alert alert = Alert::None);
  /// Forgets the subjects that `exists` does not know.
  template <class Exists>
  void keepOnly(const Exists& exists);

 private:
  using Texts = std::unordered_map<std::string, std::string>;

  void write(char kind, const std::string& line);

  mutable std::mutex _mutex;
  FileDescriptor _file;
  Texts _left;
  Texts _noted;
};

template <class Exists>
void Handover::keepOnly(const Exists& exists) {
  const std::lock_guard lock(_mutex);
  std::erase_if(_noted, [&](const auto& entry) {
    const bool gone = !exists(entry.first);
    if (gone) write('-', entry.first);
    return gone;
  });
}

}  // namespace ZEB
