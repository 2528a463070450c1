#include "alertmanager/AlertsText.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <ctime>
#include <nlohmann/json.hpp>

#include "alertmanager/AlertKinds.h"

namespace ZebManager {
namespace {

using Json = nlohmann::json;

std::string textOfTime(DayTime time) {
  constexpr DayTime kSecond = 1000;
  const std::time_t seconds = std::max<DayTime>(time, 0) / kSecond;
  std::tm parts{};
  gmtime_r(&seconds, &parts);
  std::array<char, 64> text{};
  const std::size_t length = std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S", &parts);
  std::snprintf(text.data() + length, text.size() - length, ".%03dZ",
                static_cast<int>(std::max<DayTime>(time, 0) % kSecond));
  return text.data();
}

Json labelsOf(const AlertIdentity& identity, const std::map<std::string, std::string>& site) {
  Json labels(site);
  labels["alertname"] = identity.name;
  labels["severity"] = severityOf(identity.name);
  if (!identity.interface.empty()) labels["interface"] = identity.interface;
  if (!identity.team.empty()) labels["team"] = identity.team;
  return labels;
}

}  // namespace

std::string alertsText(std::span<const OpenAlert> alerts, const std::map<std::string, std::string>& labels,
                       DayTime now, DayTime until) {
  Json all = Json::array();
  for (const OpenAlert& alert : alerts) {
    const DayTime last = std::min(alert.ends.value_or(now), now);
    all.push_back({{"labels", labelsOf(alert.identity, labels)},
                   {"annotations", alert.annotations},
                   {"startsAt", textOfTime(std::min(alert.starts, last))},
                   {"endsAt", textOfTime(alert.ends ? last : until)}});
  }
  return all.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace ZebManager
