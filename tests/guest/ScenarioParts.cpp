#include "ScenarioParts.h"

#include <gtest/gtest.h>

#include <map>
#include <nlohmann/json.hpp>

namespace ZEB::guest {

using nlohmann::json;

Action runs(std::string script) {
  return [script](Guest& guest) { guest.must(script); };
}
Action pulls(std::string card) {
  return [card](Guest& guest) { guest.setLink(card, false); };
}
Action putsBack(std::string card) {
  return [card](Guest& guest) { guest.setLink(card, true); };
}

Check port(std::string card, int status) {
  return [=](ServedModel& model) {
    EXPECT_EQ(model.port(card)["OperationalStatus"], json::array({status})) << card;
  };
}
Check team(int status) {
  return [=](ServedModel& model) {
    EXPECT_EQ(model.all("ZEB_EthernetTeam").at(0)["GroupOperationalStatus"], json::array({status}));
  };
}
Check number(std::string className, std::size_t count) {
  return [=](ServedModel& model) { EXPECT_EQ(model.all(className).size(), count) << className; };
}
Check addresses(std::vector<std::string> wanted) {
  return [=](ServedModel& model) {
    std::vector<std::string> found;
    for (const ServedInstance& endpoint : model.all("ZEB_IPProtocolEndpoint")) {
      const std::string property = endpoint.has("IPv4Address") ? "IPv4Address" : "IPv6Address";
      // Those that the kernel makes for itself are not asked for.
      const std::string address = endpoint[property];
      if (!address.starts_with("fe80:") && endpoint["Description"] == "slot4") found.push_back(address);
    }
    EXPECT_EQ(found, wanted);
  };
}

std::string bondOf(const std::string& mode, const std::vector<std::string>& members) {
  std::string script = "set -e\nip link add bond1 type bond miimon 100 mode " + mode + "\n";
  for (const std::string& member : members) script += "ip link set " + member + " master bond1\n";
  return script + "ip link set bond1 up\n";
}
std::string backupOf(const std::vector<std::string>& members) {
  const std::string& first = members.front();
  return bondOf("active-backup", members) + "until grep -qx up /sys/class/net/" + first +
         "/bonding_slave/mii_status; do sleep 0.05; done\nip link set bond1 type bond active_slave " + first +
         "\n";
}

ExpectedAlert memberRole(const std::string& member, const std::string& from, const std::string& to,
                         const std::string& comment) {
  return {9, "bond1", comment,
          "The role of member " + member + " of Ethernet Team bond1 has changed from " + from + " to " + to};
}
ExpectedAlert memberStatus(const std::string& member, const std::string& from, const std::string& to,
                           const std::string& comment) {
  return {
      10, "bond1", comment,
      "The status of member " + member + " of Ethernet Team bond1 has changed from " + from + " to " + to};
}
ExpectedAlert joined(const std::string& member, const std::string& comment) {
  return {7, "bond1", comment, "New Member " + member + " has been added into Ethernet Team bond1"};
}
ExpectedAlert dropped(const std::string& member, const std::string& comment) {
  return {8, "bond1", comment, "Member " + member + " has been dropped from Ethernet Team bond1"};
}
ExpectedAlert activeCount(int from, int to, const std::string& comment) {
  return {13, "bond1", comment,
          "Active Member Count of Ethernet Team bond1 Changed from " + std::to_string(from) + " to " +
              std::to_string(to)};
}

ExpectedAlert ofTeam(int event, const std::string& comment) {
  static const std::map<int, std::string> texts = {
      {1, "Ethernet Team bond1 has failed"},
      {2, "Ethernet Team bond1 has lost connectivity"},
      {3, "The connectivity of Ethernet Team bond1 has restored"},
      {4, "The redundancy of Ethernet Team bond1 has decreased"},
      {5, "The redundancy of Ethernet Team bond1 has lost"},
      {6, "The redundancy of Ethernet Team bond1 has increased"},
      {11, "New Ethernet Team bond1 is detected"},
      {12, "The Ethernet Team bond1 is no longer available"},
      {15, "The redundancy of Ethernet Team bond1 has fully restored"},
      {16, "The Ethernet Team bond1 has failed"},
      {20, "Ethernet Team bond1 has been activated"},
      {21, "Ethernet Team bond1 has been deactivated"},
  };
  return {event, "bond1", comment, texts.at(event)};
}

}  // namespace ZEB::guest
