#include "cli/DoctorReport.h"

#include <signal.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "values/ManagerError.h"

namespace ZebManager {
namespace {

using Json = nlohmann::json;

constexpr char kReportFile[] = "health.json";

std::string textAt(const Json& json, const char* key) {
  const Json& value = json.at(key);
  return value.is_null() ? std::string() : value.get<std::string>();
}

DoctorReport parseReport(const std::string& text) {
  const Json json = Json::parse(text);
  DoctorReport report;
  report.json = text;
  report.pid = json.at("pid");
  report.process = textAt(json, "process");
  report.started = json.at("started");
  report.autostart = json.at("autostart");
  const Json& pass = json.at("pass");
  report.passAt = pass.at("at");
  report.passOutcome = textAt(pass, "outcome");
  report.passFailure = textAt(pass, "failure");
  report.passSeconds = pass.at("seconds");
  report.passes = json.at("passes");
  report.failures = json.at("failures");
  report.linkMessages = json.at("linkMessages");
  report.indications = json.at("indications");
  report.source = textAt(json, "source");
  report.unread = textAt(json, "unread");
  report.configuration = json.value("configuration", std::vector<std::string>());
  for (const Json& store : json.at("stores")) {
    report.stores.push_back({textAt(store, "file"), textAt(store, "failure")});
  }
  report.records = {textAt(json.at("records"), "file"), textAt(json.at("records"), "failure")};
  return report;
}

}  // namespace

std::optional<DoctorReport> readReport(const std::string& folder) {
  if (folder.empty()) return std::nullopt;
  const std::string file = folder + kReportFile;
  std::ifstream in(file);
  if (!in && errno == ENOENT) return std::nullopt;
  if (!in) throw ManagerError("'" + file + "' cannot be read: " + std::strerror(errno) + "; root can");
  std::ostringstream text;
  text << in.rdbuf();
  try {
    return parseReport(text.str());
  } catch (const Json::exception& mistake) {
    throw ManagerError("'" + file + "' is no health report: " + mistake.what());
  }
}

bool isAlive(const DoctorReport& report) {
  if (kill(report.pid, 0) != 0 && errno != EPERM) return false;
  // The number may belong to somebody else by now.
  std::string name;
  std::getline(std::ifstream("/proc/" + std::to_string(report.pid) + "/comm"), name);
  return report.process.empty() || name == report.process;
}

}  // namespace ZebManager
