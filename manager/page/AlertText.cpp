#include "page/AlertText.h"

#include <nlohmann/json.hpp>

#include "cli/WatchLine.h"
#include "tree/PropertyView.h"

namespace ZebManager {

std::string jsonOfAlert(const Instance& alert, std::chrono::system_clock::time_point arrival,
                        std::uint64_t number) {
  using Json = nlohmann::ordered_json;
  const PropertyView view(alert);
  const auto time = std::chrono::duration_cast<std::chrono::milliseconds>(arrival.time_since_epoch());
  const Json json = {
      {"number", number},
      {"time", time.count()},
      {"path", view.text("AlertingManagedElement")},
      {"severity", {{"code", view.number("PerceivedSeverity").value_or(0)}, {"text", severityOf(view)}}},
      {"summary", view.text("Summary")},
      {"description", view.text("Description")},
      {"comment", view.text("UserComment")},
      {"place", placeOf(view)},
      {"advice", view.texts("RecommendedActions")}};
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace ZebManager
