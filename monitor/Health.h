#pragma once

#include <chrono>
#include <string>

#include "common/HealthReport.h"
#include "common/Logger.h"

namespace ZEB {

/// Posts how the worker is doing as `health.json` in the run directory, after every pass, for whoever looks
/// after the server. Used by one thread at a time. The file goes with the object: one that is left behind
/// belongs to a process that did not end in good order.
class Health {
 public:
  using Clock = std::chrono::steady_clock;

  /// What is around a pass.
  struct Surroundings {
    std::uint64_t linkMessages = 0;
    bool indications = false;
    std::string unread;
  };

  explicit Health(const Logger& logger);
  ~Health();
  Health(const Health&) = delete;
  Health& operator=(const Health&) = delete;

  void passBegins();
  void passEnded(bool skipped, const Surroundings& around);
  void passFailed(const std::string& why, const Surroundings& around);

 private:
  void post(const Surroundings& around);

  Logger _logger;
  Clock::time_point _begun;
  HealthReport _report;
  bool _posted = false;
  bool _complained = false;
};

}  // namespace ZEB
