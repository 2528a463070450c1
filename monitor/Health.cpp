#include "monitor/Health.h"

#include <utility>

#include "common/RunFile.h"

namespace ZEB {
namespace {

std::int64_t secondsSinceEpoch() {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  return std::chrono::duration_cast<std::chrono::seconds>(now).count();
}

}  // namespace

Health::Health(const Logger& logger) : _logger(logger) {
  _report.started = secondsSinceEpoch();
}

Health::~Health() {
  if (_posted) removeRunFile(kHealthFile);
}

void Health::passBegins() {
  _begun = Clock::now();
}

void Health::passEnded(bool skipped, const Surroundings& around) {
  _report.passOutcome = skipped ? "skipped" : "done";
  _report.passFailure.clear();
  post(around);
}

void Health::passFailed(const std::string& why, const Surroundings& around) {
  _report.passOutcome = "failed";
  _report.passFailure = why;
  ++_report.failures;
  post(around);
}

void Health::post(const Surroundings& around) {
  _report.passAt = secondsSinceEpoch();
  _report.passSeconds = std::chrono::duration<double>(Clock::now() - _begun).count();
  ++_report.passes;
  _report.linkMessages = around.linkMessages;
  _report.indications = around.indications;
  _report.unread = around.unread;
  _report.stores = dataStoreStates();
  _report.records = IndicationDB::state();
  try {
    replaceRunFile(kHealthFile, healthText(_report));
    _posted = true;
    _complained = false;
  } catch (const std::exception& error) {
    // Twice a minute the same line would hide others.
    if (!std::exchange(_complained, true))
      _logger.warn("the health report cannot be posted: %s", error.what());
  }
}

}  // namespace ZEB
