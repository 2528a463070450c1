#pragma once

#include <algorithm>
#include <mutex>
#include <string>
#include <vector>

#include "common/Logger.h"

namespace ZEB::test {

/// Keeps every line that is written to it. Safe from several threads.
class RecordingLogSink : public LogSink {
 public:
  struct Line {
    LogLevel level;
    std::string source;
    std::string text;
    friend bool operator==(const Line&, const Line&) = default;
  };

  void write(LogLevel level, std::string_view source, std::string_view text) override {
    const std::lock_guard lock(_mutex);
    _lines.push_back({level, std::string(source), std::string(text)});
  }

  std::vector<Line> lines() const {
    const std::lock_guard lock(_mutex);
    return _lines;
  }

  std::vector<std::string> texts() const {
    std::vector<std::string> found;
    for (Line& line : lines()) found.push_back(std::move(line.text));
    return found;
  }

  std::size_t count(std::string_view text) const {
    const auto all = texts();
    return static_cast<std::size_t>(std::count(all.begin(), all.end(), text));
  }

  bool has(LogLevel level, std::string_view text) const {
    const auto all = lines();
    return std::any_of(all.begin(), all.end(),
                       [&](const Line& line) { return line.level == level && line.text == text; });
  }

  /// Whether a line of that level has `part` in it.
  bool mentions(LogLevel level, std::string_view part) const {
    const auto all = lines();
    return std::any_of(all.begin(), all.end(), [&](const Line& line) {
      return line.level == level && line.text.find(part) != std::string::npos;
    });
  }

  void clear() {
    const std::lock_guard lock(_mutex);
    _lines.clear();
  }

 private:
  mutable std::mutex _mutex;
  std::vector<Line> _lines;
};

/// A logger of its own with everything that it says.
struct RecordedLogger {
  std::shared_ptr<RecordingLogSink> sink = std::make_shared<RecordingLogSink>();
  Logger logger{"Test", sink, LogLevel::Info};
};

}  // namespace ZEB::test
