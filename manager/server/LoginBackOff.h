// How long whoever guesses has to wait.
#pragma once

#include <chrono>
#include <map>
#include <string>

namespace ZebManager {

/// Failures by name: of a user, or of a client. The first few cost nothing; each further one in a row makes
/// the next attempt wait twice as long, up to a bound. What has not failed for a while is forgotten. For use
/// by one thread at a time.
class LoginBackOff {
 public:
  using Clock = std::chrono::steady_clock;
  using Seconds = std::chrono::seconds;

  explicit LoginBackOff(unsigned freeFailures) : _freeFailures(freeFailures) {}

  /// Until the next attempt is worth making; zero for now.
  Seconds pauseOf(const std::string& name, Clock::time_point now) const;
  /// True when this failure is the first that makes the next attempt wait.
  bool failed(const std::string& name, Clock::time_point now);
  void succeeded(const std::string& name) { _rows.erase(name); }

 private:
  struct Row {
    unsigned failures = 0;
    Clock::time_point last;
    Clock::time_point notBefore;
  };

  void forget(Clock::time_point now);

  const unsigned _freeFailures;
  std::map<std::string, Row> _rows;
};

}  // namespace ZebManager
