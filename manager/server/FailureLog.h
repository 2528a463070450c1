// What the log says of those who are refused.
#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <string>
#include <utility>

namespace ZebManager {

/// A client that is refused again and again has a few lines a minute. For use by one thread at a time.
class FailureLog {
 public:
  using Clock = std::chrono::steady_clock;
  using LogLine = std::function<void(const std::string&)>;

  explicit FailureLog(LogLine log) : _log(std::move(log)) {}

  /// `client`: whose lines are counted.
  void add(const std::string& what, const std::string& client, Clock::time_point now);

 private:
  struct Row {
    Clock::time_point begin;
    unsigned lines = 0;
  };

  const LogLine _log;
  std::map<std::string, Row> _rows;
};

}  // namespace ZebManager
