#include "recorded/Timeline.h"

#include <algorithm>

namespace ZEB::ethernet {
namespace {

using Json = nlohmann::json;

Failure bad(const std::string& place, const char* expected) {
  return Failure{0, place + "expected " + expected};
}

/// Each moment is a snapshot of its own in memory, so a long list of large ones is more than any test needs.
constexpr std::size_t kMostSteps = 10000;
constexpr std::size_t kMostLinksInAll = 1000000;

Json* linkOf(Json& links, const Json& index) {
  const auto found = std::ranges::find_if(links, [&](const Json& link) {
    return link.is_object() && link.contains("index") && link["index"] == index;
  });
  return found == links.end() ? nullptr : &*found;
}

/// Links are merged into those of their number, null removing a value; lists of addresses and routes replace
/// the ones before.
std::string applyChange(Json& snapshot, const Json& change) {
  if (!change.is_object()) return "change: expected an object";
  if (!snapshot.is_object()) return "snapshot before: expected an object";
  for (const char* list : {"links", "removed"}) {
    if (change.contains(list) && !change[list].is_array())
      return std::string("change.") + list + ": expected a list";
  }
  Json& links = snapshot["links"];
  if (links.is_null()) links = Json::array();
  if (!links.is_array()) return "links: expected a list";
  for (const Json& link : change.value("links", Json::array())) {
    if (!link.is_object() || !link.contains("index")) return "change.links: expected objects with an index";
    Json* known = linkOf(links, link["index"]);
    if (!known) known = &links.emplace_back(Json::object());
    known->merge_patch(link);
  }
  for (const Json& index : change.value("removed", Json::array())) {
    if (const Json* known = linkOf(links, index)) links.erase(links.begin() + (known - &links[0]));
  }
  for (const char* list : {"time", "addresses", "routes", "rules"}) {
    if (change.contains(list)) snapshot[list] = change[list];
  }
  return "";
}

}  // namespace

Outcome<std::vector<TimelineStep>> unfoldTimeline(const Json& root) {
  const auto list = root.find("steps");
  if (list == root.end() || !list->is_array() || list->empty())
    return bad("steps: ", "a list of at least one");
  if (list->size() > kMostSteps) return bad("steps: ", "fewer");
  std::vector<TimelineStep> steps;
  Json current;
  std::size_t linksInAll = 0;
  for (std::size_t i = 0; i < list->size(); ++i) {
    const std::string place = "steps[" + std::to_string(i) + "].";
    const Json& step = (*list)[i];
    if (!step.is_object()) return bad(place, "an object");
    const auto at = step.find("at");
    const double earliest = steps.empty() ? 0 : steps.back().at;
    if (at == step.end() || !at->is_number() || !(at->get<double>() >= earliest)) {
      return bad(place + "at: ", "seconds, not before the step before");
    }
    if (step.contains("snapshot") == step.contains("change"))
      return bad(place, "either a snapshot or a change");
    if (step.contains("snapshot")) {
      current = step["snapshot"];
    } else if (steps.empty()) {
      return bad(place, "a snapshot to begin with");
    } else if (const std::string problem = applyChange(current, step["change"]); !problem.empty()) {
      return Failure{0, place + problem};
    }
    linksInAll += current.is_object() && current.contains("links") ? current["links"].size() : 0;
    if (linksInAll > kMostLinksInAll) return bad("steps: ", "fewer interfaces in all");
    steps.push_back({at->get<double>(), current, place});
  }
  return steps;
}

}  // namespace ZEB::ethernet
