// What the plug-in has reported, as the process that takes over needs it.
//
// The plug-in notes it as lines in a file that the variable ZEB_HANDOVER names: '=' or '+', a subject, a
// blank, any text; or '-' and a subject that is gone. A line that begins with '+' is true once the alert has
// been taken that follows it. The file begins with what the process before has reported.
#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <string_view>

#include "posix/FileDescriptor.h"

namespace ZebManager {

/// The last line of each subject.
class Handover {
 public:
  /// What is no such line, or too much, is left out.
  void apply(std::string_view lines);
  void clear() { _texts.clear(); }
  std::string text() const;

 private:
  void applyLine(std::string_view line);

  std::map<std::string, std::string, std::less<>> _texts;  // by subject
  std::size_t _bytes = 0;
};

/// The file, which is in memory. Safe from any thread; the plug-in writes meanwhile.
class HandoverFile {
 public:
  /// Without memory, or anything else that it takes, there is no file, and the plug-in notes nothing.
  explicit HandoverFile(std::string_view begin);

  /// The lines that came since the last call of this or the next.
  std::string takeAll();
  /// Everything from the beginning up to the first line whose alert has not been taken.
  std::string takeWhole();

 private:
  std::string read() const;
  std::string settled() const;
  std::string taken(std::string lines);

  const ZEB::FileDescriptor _file;
  std::mutex _mutex;         // guards the rest
  std::int64_t _offset = 0;  // of what was not taken yet
  std::int64_t _given = 0;   // back to the system
  Handover _all;
};

}  // namespace ZebManager
