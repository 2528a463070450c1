#include "model/LinkAggregation.h"

#include <nlohmann/json.hpp>

namespace ZEB::ethernet {
namespace {

using Json = nlohmann::ordered_json;

void put(Json& object, const char* key, const std::optional<std::uint16_t>& number) {
  if (number) object[key] = *number;
}

Json memberJson(const TeamMember& member) {
  Json json = {{"name", member.slave.name}};
  put(json, "aggregator", member.bonding.aggregatorId);
  put(json, "actorState", member.bonding.actorState);
  put(json, "partnerState", member.bonding.partnerState);
  return json;
}

Json teamJson(const TeamFacts& team, const AggregatorFacts& aggregator) {
  Json json = {{"name", team.link.name}};
  put(json, "aggregator", aggregator.id);
  put(json, "ports", aggregator.ports);
  put(json, "actorKey", aggregator.actorKey);
  put(json, "partnerKey", aggregator.partnerKey);
  if (aggregator.partner) json["partner"] = toText(*aggregator.partner);
  json["members"] = Json::array();
  for (const TeamMember& member : team.members) json["members"].push_back(memberJson(member));
  return json;
}

}  // namespace

std::string linkAggregationText(const Model& model) {
  Json teams = Json::array();
  for (const TeamEntry& entry : model.teams) {
    const auto& bond = entry.facts->link.bond;
    if (bond && bond->aggregator) teams.push_back(teamJson(*entry.facts, *bond->aggregator));
  }
  return teams.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace ZEB::ethernet
