#include "cli/TreeJson.h"

#include "cli/TreeModel.h"

namespace ZebManager {

using Json = nlohmann::ordered_json;

namespace {

Json known(const std::string& text) {
  return text.empty() ? Json(nullptr) : Json(text);
}

template <class Number>
Json known(const std::optional<Number>& value) {
  return value ? Json(*value) : Json(nullptr);
}

/// A number that is 0 when it is not known.
Json counted(std::uint64_t number) {
  return number == 0 ? Json(nullptr) : Json(number);
}

template <class Item, class Function>
Json listOf(const std::vector<Item>& items, Function function) {
  Json list = Json::array();
  for (const Item& item : items) list.push_back(function(item));
  return list;
}

Json statusJson(const TreeStatus& status) {
  return {{"code", known(status.code)}, {"text", known(status.words)}};
}

Json addressJson(const TreeAddress& address) {
  return {{"address", address.address},
          {"prefixLength", known(address.prefixLength)},
          {"mask", known(address.mask)},
          {"origin", known(address.origin)},
          {"gateway", known(address.gateway)}};
}

Json interfaceJson(const TreeInterface& interface) {
  return {{"name", known(interface.name)},
          {"path", interface.path},
          {"status", statusJson(interface.status)},
          {"macAddress", known(interface.macAddress)},
          {"addresses", listOf(interface.addresses, addressJson)}};
}

Json vlanJson(const TreeVlan& vlan) {
  Json json = {{"id", vlan.id}};
  json.update(interfaceJson(vlan));
  return json;
}

Json portJson(const TreePort& port) {
  Json json = interfaceJson(port);
  json["number"] = counted(port.number);
  json["speed"] = counted(port.speed);
  json["maxSpeed"] = counted(port.maxSpeed);
  json["fullDuplex"] = known(port.fullDuplex);
  json["mtu"] = counted(port.mtu);
  json["team"] = known(port.team);
  json["role"] = known(port.role);
  json["vlans"] = listOf(port.vlans, vlanJson);
  return json;
}

Json memberJson(const TreeMember& member) {
  return {{"port", known(member.port)},
          {"role", known(member.role)},
          {"portStatus", statusJson(member.portStatus)},
          {"memberStatus", statusJson(member.memberStatus)}};
}

}  // namespace

Json jsonOf(const TreeStatus& status) {
  return statusJson(status);
}

Json jsonOf(const TreeCard& card) {
  return {{"product", known(card.product)},
          {"path", card.path},
          {"manufacturer", known(card.manufacturer)},
          {"location", known(card.location)},
          {"status", statusJson(card.status)},
          {"driver", {{"name", known(card.driver)}, {"version", known(card.driverVersion)}}},
          {"firmware", known(card.firmware)},
          {"ports", listOf(card.ports, portJson)}};
}

Json jsonOf(const TreeTeam& team) {
  Json json = interfaceJson(team);
  json["mode"] = known(team.mode);
  json["redundancy"] = known(team.redundancy);
  json["speed"] = counted(team.speed);
  json["mtu"] = counted(team.mtu);
  json["members"] = listOf(team.members, memberJson);
  json["vlans"] = listOf(team.vlans, vlanJson);
  return json;
}

std::string jsonOfTree(const Tree& tree) {
  const auto one = [](const auto& part) { return jsonOf(part); };
  const Json json = {
      {"host", tree.host}, {"cards", listOf(tree.cards, one)}, {"teams", listOf(tree.teams, one)}};
  return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace ZebManager
