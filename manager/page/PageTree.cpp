#include "page/PageTree.h"

#include <algorithm>
#include <unordered_map>

#include "cli/TreeJson.h"

namespace ZebManager {
namespace {

using Json = nlohmann::ordered_json;

std::string lineOf(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

template <class Value>
Json known(const std::optional<Value>& value) {
  return value ? Json(*value) : Json(nullptr);
}

/// What is known of other ends, by whose they are.
class Partners {
 public:
  explicit Partners(const LinkPartners& partners) {
    for (const PortPartner& port : partners.ports) _ports.emplace(port.device, &port);
    for (const LacpTeamReading& team : partners.teams) _teams.emplace(team.device, &team);
    for (const LacpMemberReading& member : partners.members)
      _members.emplace(inTeam(member.team, member.device), &member);
  }

  void addTo(Json& json, const TreeCard& card) const {
    for (std::size_t i = 0; i < card.ports.size(); ++i) {
      const auto port = _ports.find(card.ports[i].name);
      if (port == _ports.end()) continue;
      json["ports"][i]["partner"] = {{"speed", port->second->speed},
                                     {"fullDuplex", known(port->second->fullDuplex)}};
    }
  }

  void addTo(Json& json, const TreeTeam& team) const {
    const auto own = _teams.find(team.name);
    if (own == _teams.end()) return;
    const std::string& partner = own->second->partner;
    json["lacp"] = {{"partner", partner.empty() ? Json(nullptr) : Json(partner)}};
    for (std::size_t i = 0; i < team.members.size(); ++i) {
      const auto member = _members.find(inTeam(team.name, team.members[i].port));
      if (member == _members.end()) continue;
      json["members"][i]["lacp"] = {{"partner", known(member->second->hasPartner())},
                                    {"synchronized", known(member->second->isSynchronized())}};
    }
  }

 private:
  /// No name of an interface has a slash.
  static std::string inTeam(const std::string& team, const std::string& device) {
    return team + "/" + device;
  }

  std::unordered_map<std::string, const PortPartner*> _ports;
  std::unordered_map<std::string, const LacpTeamReading*> _teams;
  std::unordered_map<std::string, const LacpMemberReading*> _members;
};

template <class Part>
std::vector<PagePart> partsOf(const std::vector<Part>& all, const Partners& partners) {
  std::vector<PagePart> parts;
  parts.reserve(all.size());
  for (const Part& one : all) {
    Json json = jsonOf(one);
    partners.addTo(json, one);
    parts.push_back({one.path, lineOf(json)});
  }
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

PageTree pageTree(const Tree& tree, const LinkPartners& partners) {
  const Partners others(partners);
  PageTree page{tree.host, partsOf(tree.cards, others), partsOf(tree.teams, others), {}};
  for (const TreeCard& card : tree.cards) {
    for (const TreePort& port : card.ports) page.ports.push_back(port.path);
  }
  return page;
}

}  // namespace ZebManager
