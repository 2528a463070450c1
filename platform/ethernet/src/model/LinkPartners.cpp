#include "model/LinkPartners.h"

#include <nlohmann/json.hpp>

#include "model/LinkStatus.h"

namespace ZEB::ethernet {
namespace {

using Json = nlohmann::ordered_json;

void put(Json& object, const char* key, const std::optional<std::uint16_t>& number) {
  if (number) object[key] = *number;
}

/// What the other end offers is what it negotiates. One that does not is known by the one mode that its
/// signal is like; what it could do is not.
bool isOffer(const LinkModes& modes) {
  const std::size_t count = countOfModes(modes);
  return count > 1 || (count == 1 && modes[kLinkModeAutoneg]);
}

/// Drivers may say of a link that has gone what its other end offered.
void addPort(Json& ports, const LinkFacts& link) {
  constexpr std::uint64_t kMegabit = 1'000'000;
  const EthtoolFacts& facts = link.ethtool;
  if (!facts.partner || !hasCarrier(link).value_or(false) || !isOffer(*facts.partner)) return;
  const std::uint32_t speed = fastestSpeed(*facts.partner);
  Json port = {
      {"name", link.name}, {"speed", speed * kMegabit}, {"fullDuplex", hasFullDuplex(*facts.partner, speed)}};
  const std::uint32_t common = facts.supported ? fastestCommonSpeed(*facts.partner, *facts.supported) : 0;
  if (common > 0) port["common"] = common * kMegabit;
  ports.push_back(std::move(port));
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

std::string linkPartnersText(const Model& model) {
  Json partners = {{"ports", Json::array()}, {"teams", Json::array()}};
  for (const AdapterEntry& adapter : model.adapters) {
    for (const PortEntry& port : adapter.ports) addPort(partners["ports"], port.facts->link);
  }
  for (const TeamEntry& entry : model.teams) {
    const auto& bond = entry.facts->link.bond;
    if (bond && bond->aggregator) partners["teams"].push_back(teamJson(*entry.facts, *bond->aggregator));
  }
  return partners.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace ZEB::ethernet
