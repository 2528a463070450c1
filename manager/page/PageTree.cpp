#include "page/PageTree.h"

#include <algorithm>

#include "cli/TreeJson.h"

namespace ZebManager {
namespace {

using Json = nlohmann::ordered_json;

std::string lineOf(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

template <class Part>
std::vector<PagePart> partsOf(const std::vector<Part>& all) {
  std::vector<PagePart> parts;
  parts.reserve(all.size());
  for (const Part& one : all) parts.push_back({one.path, lineOf(jsonOf(one))});
  return parts;
}

std::string listOf(const std::vector<PagePart>& parts) {
  std::string json = "[";
  for (const PagePart& part : parts) json.append(json.size() > 1 ? "," : "").append(part.json);
  return json + "]";
}

std::string documentOf(const std::string& host, const std::vector<PagePart>& cards,
                       const std::vector<PagePart>& teams) {
  return "{\"host\":" + lineOf(host) + ",\"cards\":" + listOf(cards) + ",\"teams\":" + listOf(teams) + "}";
}

bool samePaths(const std::vector<PagePart>& one, const std::vector<PagePart>& other) {
  return std::ranges::equal(one, other, {}, &PagePart::path, &PagePart::path);
}

/// Of two lists with the same paths.
std::vector<PagePart> changed(const std::vector<PagePart>& now, const std::vector<PagePart>& before) {
  std::vector<PagePart> parts;
  for (std::size_t i = 0; i < now.size(); ++i) {
    if (now[i] != before[i]) parts.push_back(now[i]);
  }
  return parts;
}

}  // namespace

std::string PageTree::json() const {
  return documentOf(host, cards, teams);
}

bool PageTree::hasShapeOf(const PageTree& other) const {
  return samePaths(cards, other.cards) && samePaths(teams, other.teams) && ports == other.ports;
}

std::string PageTree::changesSince(const PageTree& before) const {
  const auto newCards = changed(cards, before.cards);
  const auto newTeams = changed(teams, before.teams);
  return newCards.empty() && newTeams.empty() ? "" : documentOf(host, newCards, newTeams);
}

PageTree pageTree(const Tree& tree) {
  PageTree page{tree.host, partsOf(tree.cards), partsOf(tree.teams), {}};
  for (const TreeCard& card : tree.cards) {
    for (const TreePort& port : card.ports) page.ports.push_back(port.path);
  }
  return page;
}

}  // namespace ZebManager
