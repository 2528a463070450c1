#include "metrics/LacpReading.h"

#include <nlohmann/json.hpp>

namespace ZebManager {
namespace {

using Json = nlohmann::json;

std::string textAt(const Json& object, const char* key) {
  const auto found = object.find(key);
  return found != object.end() && found->is_string() ? found->get<std::string>() : std::string();
}

std::optional<std::uint64_t> numberAt(const Json& object, const char* key) {
  const auto found = object.find(key);
  if (found == object.end() || !found->is_number_unsigned()) return std::nullopt;
  return found->get<std::uint64_t>();
}

}  // namespace

LacpReading readLacp(std::string_view text) {
  LacpReading reading;
  const Json teams = Json::parse(text, nullptr, false);
  if (!teams.is_array()) return reading;
  for (const Json& team : teams) {
    if (!team.is_object()) continue;
    const std::string device = textAt(team, "name");
    reading.teams.push_back({device, numberAt(team, "aggregator"), numberAt(team, "ports"),
                             numberAt(team, "actorKey"), numberAt(team, "partnerKey"),
                             textAt(team, "partner")});
    for (const Json& member : team.value("members", Json::array())) {
      if (member.is_object())
        reading.members.push_back({device, textAt(member, "name"), numberAt(member, "aggregator"),
                                   numberAt(member, "actorState"), numberAt(member, "partnerState")});
    }
  }
  return reading;
}

}  // namespace ZebManager
