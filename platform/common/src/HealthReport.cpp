#include "common/HealthReport.h"

#include <unistd.h>

#include <fstream>
#include <nlohmann/json.hpp>

#include "common/Configuration.h"

namespace ZEB {
namespace {

using Json = nlohmann::ordered_json;

Json known(const std::string& text) {
  return text.empty() ? Json(nullptr) : Json(text);
}

std::string processName() {
  std::string name;
  std::getline(std::ifstream("/proc/self/comm"), name);
  return name;
}

Json storesJson(const std::vector<DataStoreState>& stores) {
  Json list = Json::array();
  for (const DataStoreState& store : stores) {
    list.push_back({{"name", store.name}, {"file", store.file}, {"failure", known(store.failure)}});
  }
  return list;
}

}  // namespace

std::string healthText(const HealthReport& report) {
  const auto configuration = Configuration::current();
  const Json json = {
      {"pid", getpid()},
      {"process", known(processName())},
      {"started", report.started},
      {"source", known(configuration->sourceFile)},
      {"autostart", configuration->autostart},
      {"configuration", configuration->warnings},
      {"pass",
       {{"at", report.passAt},
        {"outcome", report.passOutcome},
        {"failure", known(report.passFailure)},
        {"seconds", report.passSeconds}}},
      {"passes", report.passes},
      {"failures", report.failures},
      {"linkMessages", report.linkMessages},
      {"indications", report.indications},
      {"unread", known(report.unread)},
      {"stores", storesJson(report.stores)},
      {"records", {{"file", report.records.file}, {"failure", known(report.records.failure)}}}};
  return json.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

}  // namespace ZEB
