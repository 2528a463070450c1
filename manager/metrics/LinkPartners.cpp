#include "metrics/LinkPartners.h"

#include <nlohmann/json.hpp>

namespace ZebManager {
namespace {

using Json = nlohmann::json;

/// Bits of the state of a port in LACP.
enum : std::uint64_t { kSynchronized = 8, kDefaulted = 64, kExpired = 128 };

std::string textAt(const Json& object, const char* key) {
  const auto found = object.find(key);
  return found != object.end() && found->is_string() ? found->get<std::string>() : std::string();
}

std::optional<std::uint64_t> numberAt(const Json& object, const char* key) {
  const auto found = object.find(key);
  if (found == object.end() || !found->is_number_unsigned()) return std::nullopt;
  return found->get<std::uint64_t>();
}

std::optional<bool> flagAt(const Json& object, const char* key) {
  const auto found = object.find(key);
  return found != object.end() && found->is_boolean() ? std::optional(found->get<bool>()) : std::nullopt;
}

template <class Take>
void forEachObject(const Json& object, const char* key, const Take& take) {
  const auto list = object.find(key);
  if (list == object.end() || !list->is_array()) return;
  for (const Json& item : *list) {
    if (item.is_object()) take(item);
  }
}

}  // namespace

/// What a port says of a partner it has heard lately, or made up.
std::optional<bool> LacpMemberReading::hasPartner() const {
  if (!actorState) return std::nullopt;
  return (*actorState & (kDefaulted | kExpired)) == 0;
}

std::optional<bool> LacpMemberReading::isSynchronized() const {
  if (!actorState || !partnerState) return std::nullopt;
  return (*actorState & *partnerState & kSynchronized) != 0 && *hasPartner();
}

LinkPartners readPartners(std::string_view text) {
  LinkPartners partners;
  const Json all = Json::parse(text, nullptr, false);
  if (!all.is_object()) return partners;
  forEachObject(all, "ports", [&](const Json& port) {
    if (const auto speed = numberAt(port, "speed"))
      partners.ports.push_back(
          {textAt(port, "name"), *speed, flagAt(port, "fullDuplex"), numberAt(port, "common").value_or(0)});
  });
  forEachObject(all, "teams", [&](const Json& team) {
    const std::string device = textAt(team, "name");
    partners.teams.push_back({device, numberAt(team, "aggregator"), numberAt(team, "ports"),
                              numberAt(team, "actorKey"), numberAt(team, "partnerKey"),
                              textAt(team, "partner")});
    forEachObject(team, "members", [&](const Json& member) {
      partners.members.push_back({device, textAt(member, "name"), numberAt(member, "aggregator"),
                                  numberAt(member, "actorState"), numberAt(member, "partnerState")});
    });
  });
  return partners;
}

}  // namespace ZebManager
