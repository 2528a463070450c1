#include <algorithm>
#include <utility>

#include "broker/HostName.h"
#include "tree/Links.h"
#include "tree/TreeParts.h"

namespace ZebManager {
namespace {

class Reader {
 public:
  explicit Reader(Namespace& model) : _model(model) {}

  Tree read(TreeAddresses addresses) {
    _tree.host = hostName();
    _endpoints = readEndpoints(_model, addresses);
    _tree.cards = readCards(_model);
    readPorts();
    readTeams();
    readMembers();
    takePortsToCards();
    return std::move(_tree);
  }

 private:
  /// Gives a port or team what its endpoints say. A port has one endpoint for each of its addresses on the
  /// network, all alike, so the first tells everything.
  template <class Carrier>
  void takeEndpoints(Carrier& carrier, const Links& toEndpoint) const {
    bool first = true;
    for (const std::string& path : follow(toEndpoint, carrier.path)) {
      const TreeEndpoint* const endpoint = findByPath(_endpoints, path);
      if (!endpoint) continue;
      if (endpoint->isVlan) {
        carrier.vlans.push_back(endpoint->interface);
      } else if (std::exchange(first, false)) {
        carrier.name = endpoint->interface.name;
        carrier.addresses = endpoint->interface.addresses;
        if (carrier.macAddress.empty()) carrier.macAddress = endpoint->interface.macAddress;
      }
    }
  }

  void readPorts() {
    const Links toEndpoint = readLinks(_model, "ZEB_EthernetPortToLANEndpoint", "Antecedent", "Dependent");
    const auto take = [&](const PropertyView& view) {
      TreePort port;
      port.path = view.path();
      port.number = view.number("PortNumber").value_or(0);
      port.macAddress = withColons(view.text("PermanentAddress"));
      port.status = statusOf(view, "OperationalStatus", "StatusDescriptions");
      port.speed = view.number("Speed").value_or(0);
      port.maxSpeed = view.number("MaxSpeed").value_or(0);
      port.fullDuplex = view.flag("FullDuplex");
      port.mtu = view.number("ActiveMaximumTransmissionUnit").value_or(0);
      port.lastStateChange = view.time("TimeOfLastStateChange");
      takeEndpoints(port, toEndpoint);
      _portPlaces[port.path] = _ports.size();
      _ports.push_back(std::move(port));
    };
    forEachInstance(_model, "ZEB_EthernetPort",
                    {"PortNumber", "PermanentAddress", "OperationalStatus", "StatusDescriptions", "Speed",
                     "MaxSpeed", "FullDuplex", "ActiveMaximumTransmissionUnit", "TimeOfLastStateChange"},
                    take);
  }

  void readTeams() {
    const auto take = [&](const PropertyView& view) {
      TreeTeam team;
      team.path = view.path();
      team.status = statusOf(view, "GroupOperationalStatus");
      team.redundancy = view.meaning("RedundancyStatus");
      team.redundancyCode = view.number("RedundancyStatus");
      team.speed = view.number("Speed").value_or(0);
      team.mtu = view.number("ActiveMaximumTransmissionUnit").value_or(0);
      team.mode = modeOf(view);
      team.name = view.text("ElementName");
      _teamPlaces[team.path] = _tree.teams.size();
      _tree.teams.push_back(std::move(team));
    };
    forEachInstance(_model, "ZEB_EthernetTeam",
                    {"GroupOperationalStatus", "RedundancyStatus", "Speed", "ActiveMaximumTransmissionUnit",
                     "LoadBalanceAlgorithm", "OtherLoadBalanceAlgorithm", "TypeOfSet", "ElementName"},
                    take);
    const Links toEndpoint =
        readLinksIfAny(_tree.teams, _model, "ZEB_EthernetTeamToLANEndpoint", "Antecedent", "Dependent");
    for (TreeTeam& team : _tree.teams) {
      const std::string own = team.name;
      takeEndpoints(team, toEndpoint);
      if (team.name.empty()) team.name = own;
    }
  }

  /// The mode by its usual name. Two modes without load balancing look alike until the members are known.
  static std::string modeOf(const PropertyView& team) {
    enum : std::uint64_t { kNotKnown = 0, kOther = 1, kRoundRobin = 3 };
    constexpr std::uint64_t kSpare = 2;
    const auto algorithm = team.number("LoadBalanceAlgorithm").value_or(kNotKnown);
    const std::string other = team.text("OtherLoadBalanceAlgorithm");
    if (algorithm == kRoundRobin) return "balance-rr";
    if (algorithm == kOther && !other.empty()) return other == "8023ad" ? "802.3ad" : other;
    return team.number("TypeOfSet") == kSpare ? "failover" : "";
  }

  /// Members that wait mean that one is active at a time; several active ones, that all send everything.
  static void tellFailoverApart(TreeTeam& team) {
    if (team.mode != "failover") return;
    const auto count = [&](const char* role) {
      return std::ranges::count(team.members, role, &TreeMember::role);
    };
    if (count("Backup") > 0) team.mode = "active-backup";
    if (count("Active") > 1) team.mode = "broadcast";
  }

  void readMembers() {
    if (_tree.teams.empty()) return;
    const auto take = [&](const PropertyView& view) {
      const auto team = _teamPlaces.find(view.reference("Collection"));
      const auto port = _portPlaces.find(view.reference("Member"));
      if (team == _teamPlaces.end() || port == _portPlaces.end()) return;
      TreeTeam& carrier = _tree.teams[team->second];
      TreePort& member = _ports[port->second];
      member.team = carrier.name;
      member.role = view.meaning("Role");
      carrier.members.push_back(
          {.path = member.path,
           .port = member.name,
           .role = member.role,
           .roleCode = view.number("Role"),
           .portStatus = member.status,
           .memberStatus = statusOf(view, "MemberOperationalStatus", "MemberStatusDescriptions")});
    };
    forEachInstance(_model, "ZEB_EthernetTeamMember",
                    {"Collection", "Member", "Role", "MemberOperationalStatus", "MemberStatusDescriptions"},
                    take);
    for (TreeTeam& team : _tree.teams) tellFailoverApart(team);
  }

  void takePortsToCards() {
    const Links toPort =
        readLinksIfAny(_ports, _model, "ZEB_EthernetPortControllerEthernetPort", "Antecedent", "Dependent");
    for (TreeCard& card : _tree.cards) {
      for (const std::string& path : follow(toPort, card.path)) {
        const auto port = _portPlaces.find(path);
        if (port != _portPlaces.end()) card.ports.push_back(std::move(_ports[port->second]));
      }
    }
  }

  Namespace& _model;
  Tree _tree;
  std::unordered_map<std::string, TreeEndpoint> _endpoints;
  std::vector<TreePort> _ports;
  std::unordered_map<std::string, std::size_t> _portPlaces;
  std::unordered_map<std::string, std::size_t> _teamPlaces;
};

}  // namespace

Tree readTree(Namespace& model, TreeAddresses addresses) {
  return Reader(model).read(addresses);
}

}  // namespace ZebManager
