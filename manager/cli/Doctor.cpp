#include "cli/Doctor.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <ostream>

#include "cli/DoctorFindings.h"
#include "cli/DoctorReport.h"
#include "cli/DoctorSurroundings.h"
#include "local/RunFolder.h"
#include "posix/TemporaryFolder.h"
#include "tree/PropertyView.h"
#include "values/CallMemory.h"
#include "values/Values.h"

namespace ZebManager {
namespace {

class Doctor {
 public:
  explicit Doctor(const Options& options) : _options(options) {}

  DoctorFindings look() {
    const std::string runFolder = configuredRunFolder();
    lookAtThisMachine(_findings);
    lookInside();
    lookAtService(_findings, _options, runFolder);
    lookAtTheRunningOne(runFolder);
    lookAtObjectManagers(_findings);
    return std::move(_findings);
  }

 private:
  void lookInside() {
    std::unique_ptr<Session> session;
    const char* what = "schema";
    try {
      session = std::make_unique<Session>(_options, Session::Posts::AsConfigured);
      _findings.good(what, std::to_string(session->repository().classes().size()) + " classes");
      what = "plug-in";
      // Instead of the configured folder, so that a look leaves no traces there.
      const ZEB::TemporaryFolder temporary("zebcim");
      const std::string folder = (temporary / "").string();
      // It must not report in the place of the one that runs, nor do work that nobody asked for.
      setenv("ZEB_RUN_DIR", folder.c_str(), 1);
      setenv("ZEB_AUTOSTART", "0", 1);
      setenv("ZEB_LOOK", "1", 1);
      session->provider();
      _findings.good(what, "loads and starts");
      makeOnePass(*session);
      lookAtFiles(readReport(folder));
      session.reset();
    } catch (const std::exception& error) {
      _findings.bad(what, error.what());
    }
  }

  /// One pass makes the plug-in say what it found. Nobody listens, so nothing is sent.
  void makeOnePass(Session& session) {
    Arena arena;
    const ArenaScope scope(arena);
    const ProviderCalls& provider = session.provider();
    const ObjectPath& worker = *makePath(arena, provider.nameSpace(), "ZEB_AutoStartEthernetPort");
    std::move(provider.invokeMethod(worker, "PerformWork", *makeArgs(arena), *makeArgs(arena))).orThrow();
    const Reply reply = provider.enumerateInstances("ZEB_AutoStart").orThrow();
    for (const CMPIData& item : reply.items()) {
      _interval = PropertyView(*as<Instance>(item.value.inst)).number("WorkerPollInterval");
    }
  }

  void lookAtFiles(const std::optional<DoctorReport>& report) {
    if (!report) throw ManagerError("it has not reported");
    const std::string source = report->source.empty() ? "this machine" : "the recording " + report->source;
    _findings.add("reading", source, report->unread);
    for (const std::string& wrong : report->configuration) _findings.bad("settings", wrong);
    if (report->configuration.empty()) lookAtSettings(_findings);
    for (const DoctorFile& store : report->stores) {
      if (store.failure.empty() || geteuid() == 0) {
        _findings.add("store", store.file, store.failure);
      } else {
        _findings.note("store", store.file + ": " + store.failure + "; root sees more");
      }
    }
    _findings.add("records", report->records.file, report->records.failure);
  }

  void lookAtTheRunningOne(const std::string& runFolder) {
    try {
      const auto report = readReport(runFolder);
      if (!report) {
        _findings.note("running", runFolder.empty() ? "the run directory is none, in which would be reported"
                                                    : "no object manager has reported in " + runFolder);
        return;
      }
      _findings.report = report->json;
      const std::string where = "in " + report->process + ", process " + std::to_string(report->pid) +
                                (report->source.empty() ? "" : ", serving the recording " + report->source);
      _findings.add("running", where, isAlive(*report) ? "" : "it is gone and has not ended in good order");
      if (isAlive(*report)) lookAt(*report);
    } catch (const ManagerError& error) {
      geteuid() == 0 ? _findings.bad("running", error.what()) : _findings.note("running", error.what());
    }
  }

  void lookAt(const DoctorReport& report) {
    const std::int64_t age =
        std::chrono::duration_cast<std::chrono::seconds>(std::chrono::system_clock::now().time_since_epoch())
            .count() -
        report.passAt;
    _findings.reportAge = age;
    char took[32];
    std::snprintf(took, sizeof took, "%.1f ms", report.passSeconds * 1000);
    _findings.add("last pass",
                  std::to_string(age) + " s ago, " + report.passOutcome + ", took " + took + "; " +
                      std::to_string(report.passes) + " passes, " + std::to_string(report.failures) +
                      " failed",
                  report.passFailure);
    lookAtTimer(report, age);
    _findings.good("messages", std::to_string(report.linkMessages) + " seen");
    _findings.note("alerts", report.indications ? "somebody listens" : "nobody listens");
    if (!report.unread.empty()) _findings.bad("reading", "it could not be read: " + report.unread);
    for (const DoctorFile& store : report.stores) {
      if (!store.failure.empty()) _findings.bad("store", store.file + ": " + store.failure);
    }
    if (!report.records.failure.empty()) _findings.bad("records", report.records.failure);
  }

  void lookAtTimer(const DoctorReport& report, std::int64_t age) {
    if (!report.autostart || !_interval) {
      _findings.note("next pass", "whenever the object manager asks for it");
      return;
    }
    const auto left = static_cast<std::int64_t>(*_interval) - age;
    // A pass may take its time, but not as long as two intervals.
    const bool late = left < -2 * static_cast<std::int64_t>(*_interval);
    const std::string when =
        left >= 0 ? "in " + std::to_string(left) + " s" : "due " + std::to_string(-left) + " s ago";
    _findings.add("next pass", when, late ? "the timer has stopped, or a pass hangs" : "");
  }

  const Options& _options;
  DoctorFindings _findings;
  std::optional<std::uint64_t> _interval;  ///< seconds between passes
};

}  // namespace

int diagnose(const Options& options, const Output& output) {
  const DoctorFindings findings = Doctor(options).look();
  output.out << (options.json ? jsonOfFindings(findings) : textOfFindings(findings, output.colour));
  return findings.healthy() ? 0 : 1;
}

}  // namespace ZebManager
